#pragma once

#include "Engine/HTMLTransforms.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Texts on which a careless implementation of the HTML and Markdown rules takes minutes, by name.
namespace ravlin::tests {

struct HostileText {
    const char* name;
    std::string text;
};

inline std::string repeated(std::string_view piece, std::size_t size) {
    std::string text;
    text.reserve(size + piece.size());
    while (text.size() < size) text += piece;
    text.resize(size);
    return text;
}

/// `start`, then `piece` repeated, then `end`: `size` bytes in total.
inline std::string filled(std::string_view start, std::string_view piece, std::string_view end, std::size_t size) {
    return std::string(start) + repeated(piece, size - start.size() - end.size()) + std::string(end);
}

/// As large as the HTML transforms accept.
inline std::vector<HostileText> hostileHTML(std::size_t size = TextTransforms::kMaxHTMLSize) {
    const auto all = [size](std::string_view piece) { return repeated(piece, size); };
    return {
        {"script tags without end", all("<script")},
        {"scripts without end", all("<script>")},
        {"scripts with half an end", all("<script></scrip")},
        {"scripts that are closed by styles", all("<script></style>")},
        {"styles without end", all("<style>")},
        {"a long script", filled("<script>", "x < y; ", "</script>", size)},
        {"link tags without end", all("<a")},
        {"link tags without end of the value", all("<a href=\"")},
        {"link tags with values, without end", all("<a href=\"x\" ")},
        {"link tags with values that share one end", filled("", "<a href=\"x\" ", ">", size)},
        {"one link tag with many empty values", filled("<a ", "href=\"\" ", "", size)},
        {"one link tag with many empty values and its end", filled("<a ", "href=\"\" ", ">text", size)},
        {"one link tag with many opening quotes", filled("<a ", "href=\"", ">text</a>", size)},
        {"names of links behind a value", filled("<a href='x", "<a ", "'>text", size)},
        {"link tags before one long value", filled("", "<a ", "href='x' href='y>'>text", size)},
        {"links without closing tag", all("<a href='x'>y")},
        {"links that are other elements", all("<abbr href='x'>y")},
        {"links that are other elements, one closing tag", filled("", "<abbr href='x'>y", "</a", size)},
        {"references to references", all("href=\"x\" ")},
        {"paragraph tags without end", all("<p")},
        {"heading tags without end", all("<h1")},
        {"headings without closing tag", all("<h1>")},
        {"headings closed by another level", all("<h1></h2>")},
        {"item tags without end", all("<li")},
        {"items without closing tag", all("<li>")},
        {"items that are links to files", all("<link>")},
        {"items that are links, and spaces in the closing tag",
         repeated("<link>", size / 2) + filled("</li", " ", "x", size - size / 2)},
        {"quote tags without end", all("<blockquote")},
        {"quotes without closing tag", all("<blockquote>")},
        {"less-than signs", all("<")},
        {"less-than signs and spaces", all("< ")},
        {"less-than signs, many spaces and links",
         filled("<a href='u'>one</a> <", " ", "a href='v'>two</a> <a href='w'>three</a>", size)},
        {"one less-than sign and spaces", filled("<", " ", "", size)},
        {"one less-than sign and wide spaces", filled("<", "\u3000", "", 1 + (size - 1) / 3 * 3)},
        {"closing tags", all("</")},
        {"closing tags with names", all("</li")},
        {"greater-than signs", all(">")},
        {"nested bold text", repeated("<b>", size / 2) + repeated("</b>", size - size / 2)},
        {"bold text without closing tag", all("<b>x")},
        {"bold text closed by itself", all("<b></b>")},
        {"everything open", all("<script><style><h1><h2><h3><h4><b><em><code><li><blockquote><a href='x'>")},
        {"everything closed", all("</script></style></h1></h2></h3></h4></b></em></code></li></blockquote></a>")},
        {"everything without end", all("<script<style<h1<h2<h3<h4<b<em<code<li<blockquote<a href='x'")},
        {"named references", all("&lt;")},
        {"escaped ampersands", all("&amp;")},
        {"escaped references", all("&amp;lt;&amp;#65;")},
        {"decimal references", all("&#65;")},
        {"hexadecimal references", all("&#x41;")},
        {"ampersands", all("&")},
        {"references without end", all("&#6")},
        {"one reference of many digits", filled("&#", "0", ";", size)},
        {"line feeds", all("\n")},
        {"pairs of line feeds", all("\n\n ")},
        {"spaces", all(" ")},
        {"letters", all("x")},
    };
}

inline std::vector<HostileText> hostileMarkdown(std::size_t size = 1'000'000) {
    std::vector<HostileText> texts = {
        {"heading marks and a space", filled("", "#", " x", size)},
        {"a heading of white space", filled("#", " ", "x", size)},
        {"a heading of line ends", filled("#", "\r", "x", size)},
        {"a heading of white space and line ends", filled("# x", " \r", "", size)},
        {"an item of white space", filled("-", " ", "x", size)},
        {"a numbered item of white space", filled("1.", "\u00A0", "x", 3 + (size - 3) / 2 * 2)},
        {"digits", repeated("1", size)},
        {"quote marks", repeated(">", size)},
        {"quote marks and spaces", repeated("> ", size)},
        {"white space in a target", filled("[a](", " ", ")", size)},
        {"targets without end", filled("", "[a](b", " ", size)},
        {"brackets and one end", filled("", "[", "]", size)},
        {"brackets and half a target", filled("", "[", "](", size)},
        {"brackets and one target", filled("", "[", "](a)", size)},
        {"empty lines", repeated("\n", size)},
        {"heading marks on lines of their own", repeated("#\n", size)},
        {"items of alternating kinds", repeated("- a\n1. b\n", size)},
    };
    for (const char* const piece :
         {"[",    "[a", "[]", "](", "[a](", "[[a](b)", "`",  "``x",  "`x", "*", "* ",  "**", "**a", "***a",
          "*a**", "_",  "_a", "__", "__a",  "_a_",     "a_", "___a", "<",  "&", "<&>", "#",  "# ",  "*_`["})
        texts.push_back({piece, repeated(piece, size)});
    return texts;
}

}  // namespace ravlin::tests
