#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// HTML to text and to Markdown, and the decoding of character references.
namespace ravlin::TextTransforms {

/// The size of a text in UTF-8 bytes up to which `stripHTML` and `htmlToMarkdown` act on it.
inline constexpr std::size_t kMaxHTMLSize = 0x40000;

/// The text of an HTML fragment: tags, scripts and styles removed, lines broken where blocks end, references decoded,
/// empty lines reduced to one between paragraphs, and trimmed. What is no tag stays: "1 < 2", comments, declarations.
/// A text of more than `kMaxHTMLSize` bytes comes back unchanged.
///     stripHTML("<p>a</p><p>b &amp; c</p>")  ->  "a\nb & c"
std::string stripHTML(std::string_view text);

/// An HTML fragment as Markdown: headings of levels 1 to 4, strong, emphasis, code, list items, quotes and links; all
/// other tags are removed as by `stripHTML`. A text of more than `kMaxHTMLSize` bytes comes back unchanged.
///     htmlToMarkdown("<h2>T</h2><p>See <a href='/d'>it</a></p>")  ->  "## T\n\nSee [it](/d)"
std::string htmlToMarkdown(std::string_view text);

/// Decodes nine named character references, case-sensitively, and then the numeric ones. "&nbsp;" becomes an ordinary
/// space. "&amp;" is decoded after the other names, so that decoding undoes encoding.
///     decodeEntities("&lt;b&gt; &amp;lt; &hellip;")  ->  "<b> &lt; &hellip;"
std::string decodeEntities(std::string_view text);

/// Decodes decimal references and then hexadecimal ones with a lower-case "x". References to what is no character that
/// belongs in a text (other controls than tab, line feed and carriage return; surrogates; beyond U+10FFFF) stay.
///     decodeNumeric("&#65;&#x42;&#X43;&#0;")  ->  "AB&#X43;&#0;"
std::string decodeNumeric(std::string_view text);

}  // namespace ravlin::TextTransforms
