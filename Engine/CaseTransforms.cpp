#include "Engine/CaseTransforms.h"

#include "Engine/Support/ASCII.h"
#include "Engine/Support/LazyTable.h"
#include "Engine/Support/Unicode.h"

#include <algorithm>
#include <array>

namespace ravlin::TextTransforms {
namespace {

// --- titleCase -------------------------------------------------------------------------------------------------------

/// What a code point does to words: ends one, goes on with one, or starts one where none is.
enum class WordPart : std::uint8_t { unknown, outside, inside, start };

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

/// The same for ASCII as tables by byte, so that its loop needs no branches, which would be mispredicted at every word.
struct ASCIIWords {
    std::array<std::array<char, 128>, 2> mapped = {};  // [is in word]
    std::array<std::uint8_t, 128> starts = {};
    std::array<std::uint8_t, 128> goesOn = {};
};

constexpr ASCIIWords kASCIIWords = [] {
    ASCIIWords words;
    for (std::size_t i = 0; i < 128; ++i) {
        const char byte = static_cast<char>(i);
        const bool isLetter = ASCII::toLower(byte) != byte || ASCII::toUpper(byte) != byte;
        words.mapped[0][i] = ASCII::toUpper(byte);
        words.mapped[1][i] = ASCII::toLower(byte);
        words.starts[i] = static_cast<std::uint8_t>(isLetter || (byte >= '0' && byte <= '9'));
        words.goesOn[i] = static_cast<std::uint8_t>(words.starts[i] != 0 || byte == '\'' || byte == '^' || byte == '`');
    }
    return words;
}();

}  // namespace

std::string titleCase(std::string_view text) {
    bool isInWord = false;
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t asciiEnd = Unicode::asciiRunEnd(text, at);
        ASCII::appendMapped(result, text.substr(at, asciiEnd - at), [&isInWord](char character) {
            const auto byte = static_cast<unsigned char>(character);
            const char mapped = kASCIIWords.mapped[static_cast<std::size_t>(isInWord)][byte];
            isInWord = (kASCIIWords.starts[byte] | (static_cast<unsigned>(isInWord) & kASCIIWords.goesOn[byte])) != 0;
            return mapped;
        });
        for (at = asciiEnd; at < text.size() && !Unicode::isASCII(text[at]);) {
            const Unicode::Scalar scalar = Unicode::decode(text, at);
            const WordPart part = wordPart(scalar.value);
            const bool isFirst = !isInWord && part == WordPart::start;
            isInWord = isFirst || (isInWord && part != WordPart::outside);
            if (isFirst)
                Unicode::appendTitleCased(result, scalar.value);
            else if (isInWord)
                Unicode::appendLowerCased(result, text, at, at + scalar.byteSize);
            else
                result += text.substr(at, scalar.byteSize);
            at += scalar.byteSize;
        }
    }
    return result;
}

}  // namespace ravlin::TextTransforms
