#pragma once

#include <cstdint>
#include <string_view>

/// What the control words of rich text mean for its characters.
namespace ravlin::RichText {

enum class Effect : std::uint8_t {
    character,    // the code point `value`
    paragraph,    // ends one, as do table cells
    unicode,      // the UTF-16 unit or code point that is its number
    fallback,     // how many units of fallback follow a \u
    skipped,      // the rest of the group is not the document's text
    destination,  // the rest of the group is, even though readers may ignore it
    eitherOr,     // of the two groups that follow, the second is for those who know Unicode
    hidden,
    deleted,
    plain,      // back to the default font, neither hidden nor deleted
    font,       // in a font table: the one that the next words are about
    fontTable,  // the group is one
    fontCharset,
    fontCodePage,
    defaultFont,       // by number
    documentCodePage,  // by number, or `value` where it has none
    endOfTable,        // as AbiWord marks it
};

struct Word {
    std::string_view name;
    Effect effect;
    char32_t value = 0;
};

/// The word of this name; null for words that mean nothing for the text, as most of them do.
///     findWord("par")->effect  ->  Effect::paragraph
const Word* findWord(std::string_view name) noexcept;

}  // namespace ravlin::RichText
