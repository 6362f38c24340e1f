#pragma once

#include <cstdint>
#include <string_view>

/// What the control words of rich text mean for its characters.
namespace ravlin::RichText {

enum class Effect : std::uint8_t {
    character,    // the code point `value`
    paragraph,    // ends one, or a table cell
    unicode,      // the UTF-16 unit or code point given by its number
    fallback,     // how many units of fallback follow a \u
    skipped,      // the rest of the group is not the document's text
    destination,  // the rest of the group is, although readers may ignore it
    eitherOr,     // of the two groups that follow, the second is for readers that know Unicode
    hidden,
    deleted,
    plain,      // back to the default font, neither hidden nor deleted
    font,       // in a font table: the one that the next words describe
    fontTable,  // the group is a font table
    fontCharset,
    fontCodePage,
    defaultFont,       // by number
    documentCodePage,  // by number, or `value` if it has none
    endOfTable,        // as AbiWord marks it
};

struct Word {
    std::string_view name;
    Effect effect;
    char32_t value = 0;
};

/// The word of this name; null for words that mean nothing for the text, as most do.
///     findWord("par")->effect  ->  Effect::paragraph
const Word* findWord(std::string_view name) noexcept;

}  // namespace ravlin::RichText
