#pragma once

#include <string>
#include <string_view>

/// Spaces, line ends, typographic characters and the order of characters.
namespace ravlin::TextTransforms {

/// Every CR LF and every other CR becomes a line feed.
///     stripFormatting("a\r\nb\rc")  ->  "a\nb\nc"
std::string stripFormatting(std::string_view text);

/// Every tab becomes four spaces, wherever it stands: there are no tab stops.
std::string tabsToSpaces(std::string_view text);

/// Ellipses and dashes in plain ASCII: U+2026 as "...", U+2014 and U+2015 as "--", U+2013 and U+2012 as "-". The minus
/// sign U+2212 and the hyphen U+2010 stay.
std::string normalizeDashes(std::string_view text);

/// The user-perceived characters in reverse order; combining sequences, emoji and CR LF stay whole.
///     reverseCharacters("a\r\nb")  ->  "b\r\na"
std::string reverseCharacters(std::string_view text);

}  // namespace ravlin::TextTransforms
