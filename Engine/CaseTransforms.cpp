#include "Engine/CaseTransforms.h"

#include "Engine/Support/LazyTable.h"
#include "Engine/Support/Unicode.h"

#include <algorithm>
#include <array>

namespace ravlin::TextTransforms {
namespace {

// --- titleCase -------------------------------------------------------------------------------------------------------

enum class WordPart : std::uint8_t { unknown, outside, start, inside };

/// Ignored between cased letters by Unicode, but here the end of a word: full stops, colons and their kin, and the
/// opening quotation mark U+2018.
constexpr auto kWordEnds = std::to_array<char32_t>({
    0x2E,
    0x3A,
    0xB7,
    0x387,
    0x55F,
    0x5F4,
    0x2018,
    0x2024,
    0x2027,
    0xFE13,
    0xFE52,
    0xFE55,
    0xFF07,
    0xFF0E,
    0xFF1A,
});

WordPart computeWordPart(char32_t scalar) noexcept {
    if (Unicode::isMark(scalar)) return WordPart::inside;
    if (Unicode::isLetter(scalar) || Unicode::isNumber(scalar)) return WordPart::start;
    const bool isEnd = std::find(kWordEnds.begin(), kWordEnds.end(), scalar) != kWordEnds.end();
    return Unicode::isCaseIgnorable(scalar) && !isEnd ? WordPart::inside : WordPart::outside;
}

WordPart wordPart(char32_t scalar) noexcept {
    static constinit LazyTable<WordPart, 0x110000, computeWordPart> parts;
    return parts[scalar];
}

/// The first place from `at` on whose code point satisfies `isWanted`, or the end of the text.
template <typename IsWanted>
std::size_t find(std::string_view text, std::size_t at, IsWanted isWanted) {
    while (at < text.size()) {
        const Unicode::Scalar scalar = Unicode::decode(text, at);
        if (isWanted(wordPart(scalar.value))) break;
        at += scalar.byteSize;
    }
    return at;
}

}  // namespace

std::string titleCase(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = find(text, at, [](WordPart part) { return part == WordPart::start; });
        result += text.substr(at, start - at);
        if (start == text.size()) break;

        const Unicode::Scalar first = Unicode::decode(text, start);
        Unicode::appendTitleCased(result, first.value);
        at = find(text, start + first.byteSize, [](WordPart part) { return part == WordPart::outside; });
        Unicode::appendLowerCased(result, text, start + first.byteSize, at);
    }
    return result;
}

}  // namespace ravlin::TextTransforms
