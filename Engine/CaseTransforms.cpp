#include "Engine/CaseTransforms.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/CharacterKind.h"
#include "Engine/Support/Characters/Diacritics.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/JoinedWords.h"
#include "Engine/Support/LazyTable.h"
#include "Engine/Support/Sentences.h"
#include "Engine/Support/Words.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace ravlin::TextTransforms {
namespace {

using CharacterKind::isSeparator;
using CharacterKind::Kind;

void appendLowerCased(std::string& result, std::string_view text) {
    Unicode::appendLowerCased(result, text, 0, text.size());
}

// --- slugify ---------------------------------------------------------------------------------------------------------

/// Joins the letters and numbers of folded texts, with "-" for anything between them.
class Slug {
public:
    explicit Slug(std::size_t size) { slug_.reserve(size); }

    void append(std::string_view text) {
        for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
            const auto [piece, isPlain] = pieces.next();
            if (!isPlain)
                append(piece, CharacterKind::of(Unicode::decode(piece, 0).value));
            else
                for (std::size_t i = 0; i < piece.size(); ++i) append(piece.substr(i, 1), CharacterKind::of(piece[i]));
        }
    }

    std::string take() && { return std::move(slug_); }

private:
    void append(std::string_view character, Kind kind) {
        if (isSeparator(kind)) {
            isAfterSeparator_ = true;
            return;
        }
        if (isAfterSeparator_ && !slug_.empty()) slug_ += '-';
        slug_ += character;
        isAfterSeparator_ = false;
    }

    std::string slug_;
    bool isAfterSeparator_ = false;
};

// --- titleCase -------------------------------------------------------------------------------------------------------

/// What a code point does to words: ends one, continues one, or starts one if there is none.
enum class WordPart : std::uint8_t { unknown, outside, inside, start };

/// Unicode ignores these between cased letters, but here they end a word.
constexpr auto kWordEnds = std::to_array<char32_t>({
    '.', 0x2024, 0xFE52, 0xFF0E,  // full stop, one dot leader, small and full-width full stop
    ':', 0xFE13, 0xFE55, 0xFF1A,  // colon, its vertical, small and full-width forms
    0x00B7, 0x0387, 0x2027,       // middle dot, Greek ano teleia, hyphenation point
    0x055F, 0x05F4,               // Armenian abbreviation mark, Hebrew gershayim
    0x2018, 0xFF07,               // opening single quotation mark, full-width apostrophe
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
        words.mapped[0][i] = ASCII::toUpper(byte);
        words.mapped[1][i] = ASCII::toLower(byte);
        words.starts[i] = static_cast<std::uint8_t>(ASCII::isAlphanumeric(byte));
        words.goesOn[i] = static_cast<std::uint8_t>(words.starts[i] != 0 || byte == '\'' || byte == '^' || byte == '`');
    }
    return words;
}();

}  // namespace

std::string titleCase(std::string_view text) {
    bool isInWord = false;
    std::string result;
    result.reserve(text.size());
    const auto takeASCII = [&](std::string_view run) {
        ASCII::appendMapped(result, run, [&isInWord](char character) {
            const auto byte = static_cast<unsigned char>(character);
            const char mapped = kASCIIWords.mapped[static_cast<std::size_t>(isInWord)][byte];
            isInWord = (kASCIIWords.starts[byte] | (static_cast<unsigned>(isInWord) & kASCIIWords.goesOn[byte])) != 0;
            return mapped;
        });
    };
    Unicode::forEachRun(text, 0, takeASCII, [&](char32_t scalar, std::string_view bytes) {
        const WordPart part = wordPart(scalar);
        const bool isFirst = !isInWord && part == WordPart::start;
        isInWord = isFirst || (isInWord && part != WordPart::outside);
        const auto at = static_cast<std::size_t>(bytes.data() - text.data());
        if (isFirst)
            Unicode::appendTitleCased(result, scalar);
        else if (isInWord)
            Unicode::appendLowerCased(result, text, at, at + bytes.size());
        else
            result += bytes;
    });
    return result;
}

std::string sentenceCase(std::string_view text) {
    return Sentences::capitalised(Unicode::lowerCased(text));
}

std::string capitalizeWords(std::string_view text) {
    std::string result;
    result.reserve(Unicode::roomForMapped(text.size()));
    bool isAfterSeparator = true;
    for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
        const auto [piece, isPlain] = pieces.next();
        if (isPlain) {
            ASCII::appendMapped(result, piece, [&isAfterSeparator](char byte) {
                const char mapped = isAfterSeparator ? ASCII::toUpper(byte) : byte;
                isAfterSeparator = isSeparator(CharacterKind::of(byte));
                return mapped;
            });
            continue;
        }
        const Kind kind = CharacterKind::of(Unicode::decode(piece, 0).value);
        if (isAfterSeparator && (kind & CharacterKind::kLetter) != 0)
            Unicode::appendUpperCased(result, piece);
        else
            result += piece;
        isAfterSeparator = isSeparator(kind);
    }
    return result;
}

std::vector<std::string> tokenizeWords(std::string_view text) {
    std::vector<std::string> words;
    Words::forEach(text, [&](std::string_view word) { words.emplace_back(word); });
    return words;
}

std::string camelCase(std::string_view text) {
    return Words::capitalised(text, /*isFirstCapitalised=*/false);
}

std::string pascalCase(std::string_view text) {
    return Words::capitalised(text, /*isFirstCapitalised=*/true);
}

std::string snakeCase(std::string_view text) {
    return Words::joined(text, '_', appendLowerCased);
}

std::string kebabCase(std::string_view text) {
    return Words::joined(text, '-', appendLowerCased);
}

std::string constantCase(std::string_view text) {
    return Words::joined(text, '_', Unicode::appendUpperCased);
}

std::string slugify(std::string_view text) {
    // In parts, because neither the folded nor the lower-cased text is needed as a whole.
    constexpr std::size_t kPartSize = 0x10000;  // bytes
    Slug slug(text.size());
    while (!text.empty()) {
        const std::size_t size = Unicode::independentPartEnd(text, kPartSize);
        slug.append(Unicode::lowerCased(Unicode::withoutDiacritics(text.substr(0, size))));
        text.remove_prefix(size);
    }
    return std::move(slug).take();
}

}  // namespace ravlin::TextTransforms
