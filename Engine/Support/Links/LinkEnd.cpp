#include "Engine/Support/Links/LinkEnd.h"

#include "Engine/Support/Bytes.h"
#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Links/CharacterReference.h"
#include "Engine/Support/Links/LinkCharacters.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <optional>

namespace ravlin::Links {
namespace {

using Scan::between;
using Scan::peek;

// --- Trailing punctuation --------------------------------------------------------------------------------------------

std::size_t sizeOfTypographicMark(std::string_view link) noexcept {
    for (const std::string_view mark : {"\u2019", "\u2018", "\u2013"})
        if (link.ends_with(mark)) return mark.size();
    return 0;
}

/// The size of the punctuation mark or reference that ends before byte `end`, except an apostrophe, or 0.
std::size_t sizeOfPunctuation(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    switch (const char last = text[end - 1]) {
        case ';': return std::max<std::size_t>(sizeOfReferenceBefore(text, begin, end), 1);
        case '.':
        case ',':
        case ':':
        case '!':
        case '?':
        case '|': return 1;
        case '*':
        case '_':
        case '~': return begin > 0 && text[begin - 1] == last ? 1 : 0;
        default: return sizeOfTypographicMark(between(text, begin, end));
    }
}

// --- Escapes and placeholders ----------------------------------------------------------------------------------------

/// Whether the `count` bytes at byte `at`, an even number, are hexadecimal digits for a character that a link may hold.
bool isEscapedPart(std::string_view text, std::size_t at, std::size_t count) noexcept {
    char32_t scalar = 0;
    for (const std::size_t end = at + count; at < end; at += 2) {
        const std::optional<unsigned> byte = Bytes::hexByte(peek(text, at), peek(text, at + 1));
        if (!byte) return false;
        scalar = scalar * 256 + *byte;
    }
    return !isBoundary(scalar);
}

/// Whether the link that ended before the backslash at byte `at` continues after it, as an escape of some programming
/// or markup language: "\u0026", "\x26", "\&", "\_". Not for "\n" or an escaped quotation mark.
bool goesOnAfterBackslash(std::string_view text, std::size_t at) noexcept {
    const std::size_t escaped = std::min(text.find_first_not_of('\\', at), text.size());
    const char letter = peek(text, escaped);
    if (letter == 'u') return isEscapedPart(text, escaped + 1, 4);
    if (letter == 'x') return isEscapedPart(text, escaped + 1, 2);
    return Unicode::isASCII(letter) && !ASCII::isAlphanumeric(letter) && !isASCIIBoundary(letter) && letter != '\'';
}

/// Whether `link` ends with the "=" after a query item's name, so that the value is missing. Values may end with "=" as
/// well: Base64 is padded with it.
bool endsWithNameOfItem(std::string_view link) noexcept {
    if (!link.ends_with('=')) return false;
    const std::size_t item = link.find_last_of("?&");
    return item != std::string_view::npos && link.find('=', item) == link.size() - 1;
}

/// Whether the "<" or "[" at byte `at` starts markup that often follows a link: a closing tag, a line break.
bool startsMarkup(std::string_view text, std::size_t at) noexcept {
    constexpr std::string_view kLineBreak = "br";
    if (peek(text, at + 1) == '/') return true;
    return ASCII::hasWordAt(text, at + 1, kLineBreak) && !ASCII::isAlphanumeric(peek(text, at + 1 + kLineBreak.size()));
}

}  // namespace

std::size_t trimmedEnd(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    const std::string_view link = between(text, begin, end);
    bool hasOddApostrophe = std::count(link.begin(), link.end(), '\'') % 2 != 0;
    while (end > begin) {
        const bool endsWithApostrophe = text[end - 1] == '\'';
        const std::size_t size = endsWithApostrophe ? (hasOddApostrophe ? 1 : 0) : sizeOfPunctuation(text, begin, end);
        if (size == 0) break;
        hasOddApostrophe = hasOddApostrophe && !endsWithApostrophe;
        end -= size;
    }
    return end;
}

bool goesOn(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    constexpr std::string_view kEllipsis = "\u2026";
    const std::string_view rest = text.substr(end);
    const bool isValueMissing = endsWithNameOfItem(between(text, begin, end));
    switch (peek(rest, 0)) {
        case '\\': return goesOnAfterBackslash(text, end);
        case '{': return true;
        case '<':
        case '(':
        case '[': return (isValueMissing || isOneOf(text[end - 1], "$%")) && !startsMarkup(text, end);
        default: return isValueMissing && (rest.starts_with("...") || rest.starts_with(kEllipsis));
    }
}

}  // namespace ravlin::Links
