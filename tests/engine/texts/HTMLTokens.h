#pragma once

#include <array>
#include <string_view>

/// The alphabets of random HTML and Markdown: what the rules look for, what comes close, and what may be next to it.
/// Tokens that are listed several times are more frequent.
namespace ravlin::tests {

// clang-format off
inline constexpr auto kHTMLTokens = std::to_array<std::string_view>({
    // Parts of tags
    "<", "<", "<", "</", "</", ">", ">", ">", "/", "/>", " ", "=", "\"", "'", "\"", "'", "!", "-->", "1", "2", "x", "-",
    "_", "script", "SCRIPT", "\u017Fcript", "style", "STYLE", "\uFB06yle", "\u017Ftyle", "br", "BR", "p", "P", "div",
    "li", "LI", "l\u0131", "l\u0130", "tr", "\u1E97r", "h1", "H1", "h2", "h3", "h4", "h5", "h6", "h7", "\u1E961",
    "strong", "STRONG", "\uFB05rong", "\uFB06rong", "\u017Ftrong", "s\uFB05rong", "strong\u212A", "b", "B", "em", "EM",
    "i", "I", "\u0130", "\u0131", "code", "CODE", "ul", "UL", "ol", "blockquote", "bloc\u212Aquote", "BLOCKQUOTE", "a",
    "A", "\u00E0", "href", "HREF", "hre\uFB00", "href=", "href = \"", "href='", "\u017F", "\u212A", "\uFB05", "\u1E9E",
    // Tags
    "<script>", "</script>", "</SCRIPT >", "<style>", "</style>", "<br>", "<br/>", "< br / >", "<p>", "</p>", "<pre>",
    "</pre>", "</div>", "<h1>", "</h1>", "<h12>", "< h2 x>", "</ h2>", "</h2 >", "<h3>", "</h3>", "<h4>", "</h4>",
    "<h5>", "</h5>", "<b>", "</b>", "<b x>", "< b >", "</b >", "<strong>", "</strong>", "<body>", "</body>", "<em>",
    "</em>", "<i>", "</i>", "<img>", "<code>", "</code>", "<codex>", "<li>", "</li>", "<li x>", "<link>", "</link>",
    "< / li>", "<ul>", "</ul>", "<ol>", "</ol>", "<blockquote>", "</blockquote>", "<blockquotes>", "<a href=\"u\">",
    "<a href='v'>", "<a href='v\">", "<a  HREF = 'w' >", "<a href='x>y'>", "<a>", "</a>", "< /a >", "</a\t>",
    "<abbr href='z'>", "<a href=\"\" ", "<a ", "</ab>", "</a", "<!-- -->",
    // References
    "&", "&amp;", "&lt;", "&gt;", "&quot;", "&#39;", "&nbsp;", "&mdash;", "&#65;", "&#x41;", "&#38;", "&#10;", "&#60;",
    ";",
    // White space, and what is none
    "\n", "\n\n", "\n\n\n", "\r", "\r\n", "\t", "\v", "\f", "\u0085", "\u00A0", "\u1680", "\u2003", "\u2028", "\u2029",
    "\u202F", "\u3000", "\u200B", "\uFEFF", "\u180E", "\u001C",
    // What decides about words and characters
    "\u0301", "\u0338", "\u200C", "\u200D", "\u00AD", "\u2060", "\u0600", "\u0903", "\uFE0F", "\uFF9E", "\u203F",
    "\u0661", "\U000E0041", "\u00E9", "\u4E2D", "\U0001D400", "\U0001F600", "\U0001F1E6", "text", "a < b",
});

inline constexpr auto kReferenceTokens = std::to_array<std::string_view>({
    "&", "&amp;", "&AMP;", "&lt;", "&gt;", "&quot;", "&#39;", "&apos;", "&nbsp;", "&mdash;", "&ndash;", "&hellip;",
    "amp;", "lt;", "quot;", "#", "x", "#x", ";", ";", "&#", "&#x", "&#65;", "&#x41;", "&#X41;", "&#x1f600;", "&#38;",
    "&#x26;", "&#0;", "&#7;", "&#9;", "&#10;", "&#13;", "&#31;", "&#32;", "&#127;", "&#128;", "&#159;", "&#55295;",
    "&#55296;", "&#xDFFF;", "&#xE000;", "&#xFFFE;", "&#x10FFFF;", "&#x110000;", "&#4294967295;", "&#4294967296;",
    "&#4294967361;", "&#18446744073709551681;", "&#00000000000000000065;", "&#x000000000000041;",
    "&#x10000000000000041;", "&#6\u0665;", "\u0660", "\uFF14", "0", "38", "41", "65", "a", "F", "g", "-", "+", " ", "<",
    ">", "\n", "\r\n", "\u0301", "\u0338", "\u200D", "\u0600", "\u0903", "\uFE0F", "\u00E9", "\U0001F600", "\U0001F1E6",
});

inline constexpr auto kMarkdownTokens = std::to_array<std::string_view>({
    // Lines
    "\n", "\n", "\n", "\n# ", "\n## ", "\n###### ", "\n####### ", "\n#", "#", "\n- ", "\n* ", "\n+ ", "\n-", "-", "+",
    "\n1. ", "\n2) ", "\n10.", "1", ".", ")", "\n\u0967. ", "\u0661", "\n> ", "\n>", ">", "\n> > ", "\n\u00A0", "\n ",
    "\n\n",
    // Marks
    "*", "*", "**", "***", "_", "_", "__", "___", "`", "``", "[", "]", "(", ")", "](", "[a](", "[a](b)", "[[a](b)",
    "[]", "()", "[a] (b)", "`a`", "**a**", "__a__", "*a*", "_a_", "_a b_", "a_b_c", "<", "&", "&amp;", "<b>", "/x_y_z",
    "!", "\"", "\\",
    // White space, line ends that are none here, and what is no white space
    " ", " ", "  ", "\t", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029", "\u00A0", "\u3000", "\u200B",
    "\uFEFF", "\u180E",
    // What decides about words and characters
    "\u0301", "\u0338", "\u200C", "\u200D", "\u00AD", "\u0600", "\u0903", "\uFE0F", "\uFF9E", "\u203F", "\u00E9",
    "\u4E2D", "\U0001D400", "\U0001F600", "\u212A", "\u00B2", "\u00BD", "a", "b", "word", "two words", "x\r\n",
});
// clang-format on

}  // namespace ravlin::tests
