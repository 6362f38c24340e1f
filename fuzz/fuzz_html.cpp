// The first byte says how to read the rest: as HTML, or as numbers of tokens. The scanners survive any bytes, and give
// the same results as their regular expressions.

#include "Engine/HTMLTransforms.h"
#include "fuzz/Fuzz.h"
#include "tests/engine/oracles/PatternOracle.h"
#include "tests/engine/texts/HTMLTokens.h"

namespace {

using namespace ravlin;
using Fuzz::expect;

// The expressions take time that grows with the third power of the size.
constexpr std::size_t kMaxOracleSize = 400;  // bytes

void checkClean(std::string_view result) {
    expect(Unicode::isValidUTF8(result), "a valid text gives a valid text");
    expect(result == Unicode::trimWhitespacesAndNewlines(result), "the result is trimmed");
    expect(result.find("\n\n\n") == std::string_view::npos, "the result has no two empty lines");
}

void check(std::string_view text) {
    const std::string plain = TextTransforms::stripHTML(text);
    const std::string markdown = TextTransforms::htmlToMarkdown(text);
    const std::string decoded = TextTransforms::decodeEntities(text);
    checkClean(plain);
    checkClean(markdown);
    expect(Unicode::isValidUTF8(decoded), "a valid text gives a valid text");
    expect(decoded.size() <= text.size(), "a reference is longer than its character");
    if (text.size() > kMaxOracleSize) return;
    expect(plain == PatternOracle::stripHTML(text), "stripHTML does what its expressions say");
    expect(markdown == PatternOracle::htmlToMarkdown(text), "htmlToMarkdown does what its expressions say");
    expect(decoded == PatternOracle::decodeEntities(text), "decodeEntities does what its expressions say");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes = Fuzz::text(data + 1, size - 1);
    const bool isTokens = data[0] == 'T';
    const std::string text = isTokens ? Fuzz::tokens(bytes, tests::kHTMLTokens) : Fuzz::validText(bytes);
    if (text.size() > TextTransforms::kMaxHTMLSize) return 0;
    check(text);
    if (isTokens || text == bytes) return 0;
    TextTransforms::stripHTML(bytes);
    TextTransforms::htmlToMarkdown(bytes);
    TextTransforms::decodeEntities(bytes);
    return 0;
}
