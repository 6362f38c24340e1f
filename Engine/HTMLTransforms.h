#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// HTML to text and to Markdown, and the decoding of character references.
namespace ravlin::TextTransforms {

/// The largest text, in UTF-8 bytes, that `stripHTML` and `htmlToMarkdown` act on.
inline constexpr std::size_t kMaxHTMLSize = 0x40000;

/// The text of an HTML fragment: tags, scripts and styles removed, lines broken where blocks end, references decoded,
/// runs of empty lines reduced to one, and trimmed. Anything that is not a tag stays: "1 < 2", comments, declarations.
/// A text of more than `kMaxHTMLSize` bytes comes back unchanged.
///     stripHTML("<p>a</p><p>b &amp; c</p>")  ->  "a\nb & c"
std::string stripHTML(std::string_view text);

/// An HTML fragment as Markdown: headings of levels 1 to 4, strong, emphasis, code, list items, quotes and links; all
/// other tags are removed as in `stripHTML`. A text of more than `kMaxHTMLSize` bytes comes back unchanged.
///     htmlToMarkdown("<h2>T</h2><p>See <a href='/d'>it</a></p>")  ->  "## T\n\nSee [it](/d)"
std::string htmlToMarkdown(std::string_view text);

/// Decodes nine named character references, case-sensitively, then the numeric ones. "&nbsp;" becomes an ordinary
/// space. "&amp;" is decoded after the other names, so decoding undoes encoding.
///     decodeEntities("&lt;b&gt; &amp;lt; &hellip;")  ->  "<b> &lt; &hellip;"
std::string decodeEntities(std::string_view text);

/// Decodes decimal references, then hexadecimal ones with a lower-case "x". References to anything that does not belong
/// in a text (controls except tab, line feed and carriage return; surrogates; beyond U+10FFFF) stay.
///     decodeNumeric("&#65;&#x42;&#X43;&#0;")  ->  "AB&#X43;&#0;"
std::string decodeNumeric(std::string_view text);

}  // namespace ravlin::TextTransforms
