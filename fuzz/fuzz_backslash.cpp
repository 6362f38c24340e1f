// Backslash escapes: the same as character by character, and reading undoes writing unless a character joins an escape.
// The first byte says how to read the rest: as text, or as numbers of characters.

#include "Engine/EncodingTransforms.h"
#include "fuzz/Fuzz.h"
#include "tests/engine/oracles/PlainEncodings.h"

#include <array>

namespace {

using namespace ravlin;
using Fuzz::expect;

constexpr auto kCharacters = std::to_array<std::string_view>({
    "\\",     "n",      "t",      "r",      "\"",     "'",      "b",       "f",          "0",      "x",
    "\n",     "\r",     "\r\n",   "\t",     "\b",     "\f",     {"\0", 1}, "\\\\",       "\\n",    "\u0301",
    "\u0338", "\u200d", "\ufe0f", "\u0600", "\u0903", "\u094d", "\u0915",  "\U0001f1e6", "\u00e9", "\U0001f600",
});

bool isPlain(std::string_view text) {
    return Unicode::asciiRunEnd(text, 0) == text.size();
}

void check(std::string_view text) {
    const std::vector<std::string> characters = tests::engineCharacters(text);
    const std::string escaped = TextTransforms::backslashEscape(text);
    const std::string unescaped = TextTransforms::backslashUnescape(text);
    expect(escaped == tests::plainBackslashEscape(characters), "escapes as the plain version does");
    expect(unescaped == tests::plainBackslashUnescape(characters), "unescapes as the plain version does");
    expect(escaped.size() >= text.size() && unescaped.size() <= text.size(), "escapes are longer than characters");
    if (isPlain(text)) expect(TextTransforms::backslashUnescape(escaped) == text, "unescaping undoes escaping");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes = Fuzz::text(data + 1, size - 1);
    if (data[0] == 'T') {
        check(Fuzz::tokens(bytes, kCharacters));
        return 0;
    }
    const std::string text = Fuzz::validText(bytes);
    check(text);
    if (text == bytes) return 0;
    TextTransforms::backslashEscape(bytes);
    TextTransforms::backslashUnescape(bytes);
    return 0;
}
