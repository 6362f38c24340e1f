// The first byte says how to read the rest: as Markdown, or as numbers of tokens. The scanners survive any bytes, and
// give the same results as their regular expressions.

#include "Engine/MarkdownTransforms.h"
#include "fuzz/Fuzz.h"
#include "tests/engine/oracles/PatternOracle.h"
#include "tests/engine/texts/HTMLTokens.h"

namespace {

using namespace ravlin;
using Fuzz::expect;

// The expressions take time that grows with the square of the size.
constexpr std::size_t kMaxOracleSize = 1'000;  // bytes

void check(std::string_view text) {
    const std::string html = TextTransforms::markdownToHTML(text);
    expect(Unicode::isValidUTF8(html), "a valid text gives a valid text");
    expect(html.empty() || (html.front() == '<' && html.back() == '>'), "every line is an element");
    if (text.size() <= kMaxOracleSize)
        expect(html == PatternOracle::markdownToHTML(text), "markdownToHTML does what its expressions say");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes = Fuzz::text(data + 1, size - 1);
    const bool isTokens = data[0] == 'T';
    const std::string text = isTokens ? Fuzz::tokens(bytes, tests::kMarkdownTokens) : Fuzz::validText(bytes);
    check(text);
    if (!isTokens && text != bytes) TextTransforms::markdownToHTML(bytes);
    return 0;
}
