#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Spaces, line ends, typographic characters and the order of characters. Quotation marks, dashes and spaces are
/// matched as user-perceived characters: one that carries a mark is a different character and stays.
namespace ravlin::TextTransforms {

/// Every CR LF and every other CR becomes a line feed.
///     stripFormatting("a\r\nb\rc")  ->  "a\nb\nc"
std::string stripFormatting(std::string_view text);

/// Double quotation marks and guillemets as U+0022, single ones as U+0027, U+2014 as "--", U+2013 as "-" and U+2026 as
/// "...". Single guillemets and primes stay.
std::string straightenQuotes(std::string_view text);

/// Straight quotation marks as curly ones, "---", "--" and "..." as U+2014, U+2013 and U+2026.
///
/// Double quotation marks alternately open and close, throughout the text. A single one opens at the start of the text
/// and after a space, line feed, tab, "(" or U+201C, and closes otherwise, so it also serves as the apostrophe.
/// NOTE: this does not undo `straightenQuotes`, which writes an em dash as "--".
std::string smartQuotes(std::string_view text);

/// In every line, runs of two or more spaces and tabs become one space, and blanks at both ends are removed; then runs
/// of empty lines become one. A single tab stays, as does a no-break space within a line.
///     collapseSpaces("  a   b \n\n \n\nc")  ->  "a b\n\nc"
std::string collapseSpaces(std::string_view text);

/// Deletes every White_Space character, line ends included. Zero-width characters stay.
std::string removeAllSpaces(std::string_view text);

/// Every tab becomes four spaces, wherever it is: there are no tab stops.
std::string tabsToSpaces(std::string_view text);

/// In every line, every `width` leading spaces become a tab. Does nothing if `width` is less than 1.
///     spacesToTabs("      x", 4)  ->  "\t  x"
std::string spacesToTabs(std::string_view text, std::int64_t width);

/// Ellipses and dashes as plain ASCII: U+2026 as "...", U+2014 and U+2015 as "--", U+2013 and U+2012 as "-". The minus
/// sign U+2212 and the hyphen U+2010 stay.
std::string normalizeDashes(std::string_view text);

/// The user-perceived characters in reverse order; combining sequences, emoji and CR LF stay whole.
///     reverseCharacters("a\r\nb")  ->  "b\r\na"
std::string reverseCharacters(std::string_view text);

}  // namespace ravlin::TextTransforms
