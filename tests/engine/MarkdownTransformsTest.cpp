#include "Engine/MarkdownTransforms.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

struct Vector {
    std::string_view text;
    std::string_view html;
};

template <std::size_t kCount>
void expectEach(const Vector (&vectors)[kCount]) {
    for (const Vector& vector : vectors)
        EXPECT_EQ(TextTransforms::markdownToHTML(vector.text), vector.html) << vector.text;
}

/// The same for the inside of a paragraph.
template <std::size_t kCount>
void expectInline(const Vector (&vectors)[kCount]) {
    for (const Vector& vector : vectors)
        EXPECT_EQ(TextTransforms::markdownToHTML(vector.text), "<p>" + std::string(vector.html) + "</p>")
            << vector.text;
}

// --- Blocks ----------------------------------------------------------------------------------------------------------

TEST(MarkdownToHTML, EveryLineIsAnElementOfItsOwn) {
    expectEach({
        {"line one\nline two", "<p>line one</p>\n<p>line two</p>"},
        {"\n\na\n\n\nb\n", "<p>a</p>\n<p>b</p>"},
        {" \t\u00A0a\u3000 ", "<p>a</p>"},
        {"> a\n> b", "<blockquote>a</blockquote>\n<blockquote>b</blockquote>"},
        {"```\ncode\n```", "<p>```</p>\n<p>code</p>\n<p>```</p>"},
        {"", ""},
        {"\n \n\t\n", ""},
    });
}

TEST(MarkdownToHTML, HeadingsHaveSixLevels) {
    expectEach({
        {"# Title", "<h1>Title</h1>"},
        {"## a", "<h2>a</h2>"},
        {"### a", "<h3>a</h3>"},
        {"#### a", "<h4>a</h4>"},
        {"##### a", "<h5>a</h5>"},
        {"###### x", "<h6>x</h6>"},
        {"####### x", "<p>####### x</p>"},
        {"#tag", "<p>#tag</p>"},
        {"#", "<p>#</p>"},
        {"# ", "<p>#</p>"},
        {"#\u00A0x", "<h1>x</h1>"},
        {"  #\t\tx  ", "<h1>x</h1>"},
        {"# a #", "<h1>a #</h1>"},
        {"# > a", "<h1>&gt; a</h1>"},
        {"# # a", "<h1># a</h1>"},
    });
}

TEST(MarkdownToHTML, ListsCloseWhereTheyEnd) {
    expectEach({
        {"- a\n- b\n\n1. c\n2) d", "<ul>\n<li>a</li>\n<li>b</li>\n</ul>\n<ol>\n<li>c</li>\n<li>d</li>\n</ol>"},
        {"- a\n1. b", "<ul>\n<li>a</li>\n</ul>\n<ol>\n<li>b</li>\n</ol>"},
        {"1. a\n- b", "<ol>\n<li>a</li>\n</ol>\n<ul>\n<li>b</li>\n</ul>"},
        {"- a", "<ul>\n<li>a</li>\n</ul>"},
        {"- a\nb", "<ul>\n<li>a</li>\n</ul>\n<p>b</p>"},
        {"- a\n# b", "<ul>\n<li>a</li>\n</ul>\n<h1>b</h1>"},
        {"7. a\n> b", "<ol>\n<li>a</li>\n</ol>\n<blockquote>b</blockquote>"},
        {"- a\n\n- b", "<ul>\n<li>a</li>\n</ul>\n<ul>\n<li>b</li>\n</ul>"},
        {"* a\n+ b\n    - c", "<ul>\n<li>a</li>\n<li>b</li>\n<li>c</li>\n</ul>"},
    });
}

TEST(MarkdownToHTML, ItemsNeedAMarkAndWhiteSpace) {
    expectEach({
        {"---", "<p>---</p>"},
        {"**bold**", "<p><strong>bold</strong></p>"},
        {"-a", "<p>-a</p>"},
        {"- ", "<p>-</p>"},
        {"1.a", "<p>1.a</p>"},
        {"1 . a", "<p>1 . a</p>"},
        {"1] a", "<p>1] a</p>"},
        {"a. b", "<p>a. b</p>"},
        {". b", "<p>. b</p>"},
        {"007) x", "<ol>\n<li>x</li>\n</ol>"},
        {"\u0967. x", "<ol>\n<li>x</li>\n</ol>"},
        {"1\u0663. x", "<ol>\n<li>x</li>\n</ol>"},
        {"\u00B2. x", "<p>\u00B2. x</p>"},
        {"-\u3000x", "<ul>\n<li>x</li>\n</ul>"},
    });
}

TEST(MarkdownToHTML, AQuoteLosesOneMark) {
    expectEach({
        {"> quoted *text*", "<blockquote>quoted <em>text</em></blockquote>"},
        {">a", "<blockquote>a</blockquote>"},
        {">", "<blockquote></blockquote>"},
        {"> > x", "<blockquote>&gt; x</blockquote>"},
        {"> - x", "<blockquote>- x</blockquote>"},
        {"> # x", "<blockquote># x</blockquote>"},
        {">\u00A0 x\u00A0", "<blockquote>x</blockquote>"},
    });
}

TEST(MarkdownToHTML, OnlyLineFeedsEndALine) {
    expectEach({
        {"# T\r", "<h1>T</h1>"},
        {"- a\r\n- b\r", "<ul>\n<li>a</li>\n<li>b</li>\n</ul>"},
        {"t\r", "<p>t\r</p>"},
        {"\r", "<p>\r</p>"},
        {"-\r", "<ul>\n<li></li>\n</ul>"},
        {"#\r", "<h1></h1>"},
        {"#\r\r", "<h1></h1>"},
        {"> q\r", "<blockquote>q\r</blockquote>"},
        {"# a\rb", "<p># a\rb</p>"},
        {"# a\r\r", "<p># a\r\r</p>"},
        {"# a\u2028", "<h1>a</h1>"},
        {"# a\u2028b", "<p># a\u2028b</p>"},
        {"# a\u0085", "<h1>a</h1>"},
        {"# a\fb", "<p># a\fb</p>"},
        {"#\v\u2029a", "<h1>a</h1>"},
        {"1.\ra", "<ol>\n<li>a</li>\n</ol>"},
    });
}

// --- Inside of lines -------------------------------------------------------------------------------------------------

TEST(MarkdownToHTML, EscapesMarkupFirst) {
    expectInline({
        {"a < b & c > d \"e\" 'f'", "a &lt; b &amp; c &gt; d \"e\" 'f'"},
        {"&amp;", "&amp;amp;"},
        {"<b>", "&lt;b&gt;"},
    });
    expectEach({{"# <&>", "<h1>&lt;&amp;&gt;</h1>"}, {"- <", "<ul>\n<li>&lt;</li>\n</ul>"}});
}

TEST(MarkdownToHTML, TakesMarksForWholeCharactersWhereItEscapes) {
    expectInline({
        {"a&\u0301", "a&\u0301"},
        {"a<\u0338<", "a<\u0338&lt;"},
        {"\u0600&&", "\u0600&&amp;"},
        {">\u0301 a", ">\u0301 a"},
        {"`\u0301a`", "<code>\u0301a</code>"},
    });
}

TEST(MarkdownToHTML, ConvertsCode) {
    expectInline({
        {"Use `a < b` and [docs](/x_y_z)", "Use <code>a &lt; b</code> and <a href=\"/x_y_z\">docs</a>"},
        {"`a` `b`", "<code>a</code> <code>b</code>"},
        {"``a``", "`<code>a</code>`"},
        {"`a", "`a"},
        {"``", "``"},
        {"`**x**`", "<code><strong>x</strong></code>"},
    });
}

TEST(MarkdownToHTML, ConvertsLinks) {
    expectInline({
        {"[a](b)", "<a href=\"b\">a</a>"},
        {"[a](b)[c](d)", "<a href=\"b\">a</a><a href=\"d\">c</a>"},
        {"[[a](b)", "<a href=\"b\">[a</a>"},
        {"[](b)", "[](b)"},
        {"[a]()", "[a]()"},
        {"[a](b c)", "[a](b c)"},
        {"[a](b \"t\")", "[a](b \"t\")"},
        {"[a](b\u3000c)", "[a](b\u3000c)"},
        {"[a] (b)", "[a] (b)"},
        {"[a](b(c))", "<a href=\"b(c\">a</a>)"},
        {"[a]](b)", "[a]](b)"},
        {"[a][b](c)", "[a]<a href=\"c\">b</a>"},
        {"[a](b [c](d)", "[a](b <a href=\"d\">c</a>"},
        {"[t](_u_)", "<a href=\"<em>u</em>\">t</a>"},
        {"![a](b)", "!<a href=\"b\">a</a>"},
    });
}

TEST(MarkdownToHTML, ConvertsStrongAndEmphasis) {
    expectInline({
        {"**bold** and __also__ and _em_ and *em*",
         "<strong>bold</strong> and <strong>also</strong> and <em>em</em> and <em>em</em>"},
        {"***a***", "<em><strong>a</strong></em>"},
        {"**a*b**", "*<em>a</em>b**"},
        {"** a **", "<strong> a </strong>"},
        {"****", "****"},
        {"*****a**", "***<strong>a</strong>"},
        {"**a** **b", "<strong>a</strong> **b"},
        {"a*b*c", "a<em>b</em>c"},
        {"*a", "*a"},
        {"2 * 3", "2 * 3"},
        {"__init__", "<strong>init</strong>"},
        {"___a___", "<em><strong>a</strong></em>"},
    });
}

TEST(MarkdownToHTML, LeavesUnderscoresInsideWords) {
    expectInline({
        {"snake_case_name", "snake_case_name"},
        {"_a_b _c_", "_a_b <em>c</em>"},
        {"(_a_)", "(<em>a</em>)"},
        {"\u00E9_a_", "\u00E9_a_"},
        {"_a_\u0301", "_a_\u0301"},
        {"_a_\u200D", "_a_\u200D"},
        {"_a_\u203F", "_a_\u203F"},
        {"_a_\U0001D400 _b_\U0001F600", "_a_\U0001D400 <em>b</em>\U0001F600"},
        {"_ _ a_", "<em> </em> a_"},
    });
}

}  // namespace
}  // namespace ravlin
