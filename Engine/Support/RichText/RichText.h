#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Rich text (RTF 1.9.1), as far as its characters go.
namespace ravlin::RichText {

/// How many groups inside one another may each change what holds for the characters in them, such as their font. What
/// a deeper one changes holds until this many are left.
inline constexpr std::size_t kMaxNesting = 0x10000;  // groups

/// The text of a document in rich text, without its formatting, as valid UTF-8; nothing where `rtf` is something else.
///
/// Paragraphs, lines and table cells end with a line feed, pages with a form feed. What a reader of the document does
/// not see in its text (headers, footnotes, pictures, hidden and deleted text) is left out. Labels of lists and the
/// results of fields are text. A document that is cut off or malformed gives the text that there is.
///     plainText(R"({\rtf1\ansi caf\'e9 {\b noir}\par})")  ->  "caf\u00E9 noir\n"
///     plainText("<p>noir</p>")  ->  nothing
std::optional<std::string> plainText(std::string_view rtf);

}  // namespace ravlin::RichText
