// JSON: the same as the plain version, which is recursive, and only white space changes. The first byte says how to
// read the rest: as text, or as numbers of tokens.

#include "Engine/JSONReformatter.h"
#include "fuzz/Fuzz.h"
#include "tests/engine/oracles/PlainJSON.h"

#include <algorithm>
#include <array>

namespace {

using namespace ravlin;
using Fuzz::expect;

constexpr auto kTokens = std::to_array<std::string_view>({
    "{",        "}",
    "[",        "]",
    ",",        ":",
    "\"",       "\\",
    "\"\"",     "\"key\":",
    "\"text\"", "\"\\\"\"",
    "\"\\u",    "0",
    "-",        "12",
    ".5",       "e+1",
    "1.5E-3",   "-0",
    "true",     "false",
    "null",     "nul",
    " ",        "\n",
    "\r\n",     "\t",
    "[[[",      "]]]",
    "{}",       "[]",
    ",1,",      "\u00a0",
    "\u00e9",   "\x1f",
    "\uFEFF",   "\"0123456789012345678901234567890123456789\"",
});

/// Whether the stack has room for the plain version's recursion, with what sanitizers put there.
bool isForPlainVersion(std::string_view text) {
    constexpr std::ptrdiff_t kMostLevels = 1'000;
    return std::ranges::count(text, '[') + std::ranges::count(text, '{') <= kMostLevels;
}

void check(std::string_view text) {
    const std::string pretty = TextTransforms::jsonReformat(text, true);
    const std::string compact = TextTransforms::jsonReformat(text, false);
    if (isForPlainVersion(text)) {
        expect(pretty == tests::PlainJSON::reformat(text, true), "indents as the plain version does");
        expect(compact == tests::PlainJSON::reformat(text, false), "minifies as the plain version does");
    }
    expect(TextTransforms::jsonReformat(pretty, true) == pretty, "what is indented stays");
    expect(TextTransforms::jsonReformat(compact, false) == compact, "what is minified stays");
    expect(TextTransforms::jsonReformat(pretty, false) == compact, "minifying undoes indenting");
    expect(TextTransforms::jsonReformat(compact, true) == pretty, "and indenting undoes minifying");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes = Fuzz::text(data + 1, size - 1);
    check(data[0] == 'T' ? Fuzz::tokens(bytes, kTokens) : std::string(bytes));
    return 0;
}
