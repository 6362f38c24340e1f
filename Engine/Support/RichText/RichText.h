#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Rich text (RTF 1.9.1), as far as its characters go.
namespace ravlin::RichText {

/// How many nested groups may each change the state of their characters, such as the font. A change made in a deeper
/// group lasts until only this many are left.
inline constexpr std::size_t kMaxNesting = 0x10000;  // groups

/// The text of a document in rich text, without its formatting, as valid UTF-8; nothing if `rtf` is something else.
///
/// Paragraphs, lines and table cells end with a line feed, pages with a form feed. Parts that a reader does not see in
/// the document's text (headers, footnotes, pictures, hidden and deleted text) are left out. List labels and field
/// results are text. A truncated or malformed document yields the text that it has.
///     plainText(R"({\rtf1\ansi caf\'e9 {\b noir}\par})")  ->  "caf\u00E9 noir\n"
///     plainText("<p>noir</p>")  ->  nothing
std::optional<std::string> plainText(std::string_view rtf);

}  // namespace ravlin::RichText
