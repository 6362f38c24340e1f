#include "Engine/EncodingTransforms.h"
#include "Engine/HTMLTransforms.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

struct Vector {
    std::string_view text;
    std::string_view result;
};

template <std::size_t kCount>
void expectEach(std::string (*function)(std::string_view), const Vector (&vectors)[kCount]) {
    for (const Vector& vector : vectors) EXPECT_EQ(function(vector.text), vector.result) << vector.text;
}

// --- stripHTML -------------------------------------------------------------------------------------------------------

TEST(StripHTML, BreaksLinesWhereBlocksEnd) {
    expectEach(TextTransforms::stripHTML, {
                                              {"<p>a</p><p>b</p>", "a\nb"},
                                              {"a<br/>b<BR >c< br\n/>d", "a\nb\nc\nd"},
                                              {"<div>a</div><table><tr><td>b</td></tr></table>c", "a\nb\nc"},
                                              {"<ul><li>a</li><li>b</LI ></ul>", "a\nb"},
                                              {"<h1>a</h1>b</h6>c</h7>d</h0>e", "a\nb\ncde"},
                                              {"a<br / >b<br//>c<brx>d", "abcd"},
                                              {"a</p x>b</pre>c", "abc"},
                                          });
}

TEST(StripHTML, RemovesScriptsAndStylesWithTheirContent) {
    expectEach(TextTransforms::stripHTML, {
                                              {"<script>x</script>Hi<style>y</style>", "Hi"},
                                              {"<SCRIPT src='a'>if (a < b) c();\n</Script>d", "d"},
                                              {"<script>a</script>b<script>c</script>d", "bd"},
                                              {"<script>a<script>b</script>c</script>d", "cd"},
                                              {"<script>a<style>b</script>c</style>d", "cd"},
                                              {"<script x>a", "a"},
                                              {"<script>a</script >b", "ab"},
                                              {"<scripty>a</script>b", "b"},
                                              {"<script a</script>b</script>c", "c"},
                                              {"< script>a</script>b", "< script>ab"},
                                          });
}

TEST(StripHTML, LeavesWhatIsNoTag) {
    expectEach(TextTransforms::stripHTML, {
                                              {"1 < 2 &amp;&amp; 3 > 2", "1 < 2 && 3 > 2"},
                                              {"a < b", "a < b"},
                                              {"<!-- x -->", "<!-- x -->"},
                                              {"<!DOCTYPE html>", "<!DOCTYPE html>"},
                                              {"<1>", "<1>"},
                                              {"</ b>", "</ b>"},
                                              {"<\u00E9>", "<\u00E9>"},
                                              {"<b", "<b"},
                                              {"<<b>>", "<>"},
                                              {"a<", "a<"},
                                              {"a</", "a</"},
                                              {"", ""},
                                          });
}

TEST(StripHTML, ComparesNamesByFullCaseFolding) {
    expectEach(TextTransforms::stripHTML, {
                                              {"<\u017Fcript>x</SCRIPT>y", "y"},
                                              {"<\uFB06yle>x</\uFB05yle>y", "y"},
                                              {"<st\u0131le>x</style>y", "xy"},
                                              {"<\u212A>x<\u017F>y<\uFB06>z", "xy<\uFB06>z"},
                                          });
}

TEST(StripHTML, DecodesAfterTagsAreGone) {
    expectEach(TextTransforms::stripHTML, {
                                              {"&lt;b&gt;x&lt;/b&gt;", "<b>x</b>"},
                                              {"&#60;b>", "<b>"},
                                              {"&<b>lt;", "<"},
                                          });
}

TEST(StripHTML, LeavesOneBlankLineBetweenParagraphs) {
    expectEach(TextTransforms::stripHTML, {
                                              {"a\n\n\n\nb", "a\n\nb"},
                                              {"a\n\n\nb\n\n\n\n\nc", "a\n\nb\n\nc"},
                                              {"a\n\nb", "a\n\nb"},
                                              {"a\n \n \nb", "a\n \n \nb"},
                                              {"a\r\n\r\n\r\n\r\nb", "a\r\n\r\n\r\n\r\nb"},
                                              {"a<br>&#10;<br>b", "a\n\nb"},
                                          });
}

TEST(StripHTML, TrimsWhiteSpaceOfEveryKind) {
    expectEach(TextTransforms::stripHTML,
               {
                   {" \t\r\n\v\f\u0085\u00A0\u1680\u2003\u2028\u2029\u202F\u205F\u3000a\u3000 ", "a"},
                   {"&nbsp;a&nbsp;", "a"},
                   {"\u200Ba\uFEFF", "\u200Ba\uFEFF"},
                   {" \u0301a", "\u0301a"},
                   {"<p> </p>", ""},
               });
}

// --- htmlToMarkdown --------------------------------------------------------------------------------------------------

TEST(HTMLToMarkdown, ConvertsAPage) {
    EXPECT_EQ(TextTransforms::htmlToMarkdown("<h2>Title</h2><p>Some <strong>bold</strong> and <em>it</em> "
                                             "<a href='/docs'>link</a></p>"),
              "## Title\n\nSome **bold** and *it* [link](/docs)");
    EXPECT_EQ(TextTransforms::htmlToMarkdown("<ol><li>one</li><li>two</li></ol>"), "- one\n- two");
}

TEST(HTMLToMarkdown, ConvertsHeadingsOfFourLevels) {
    expectEach(TextTransforms::htmlToMarkdown, {
                                                   {"<h1>a</h1>b", "# a\n\nb"},
                                                   {"<H2 id=x>a</H2 >b", "## a\n\nb"},
                                                   {"< h3\n>a< /h3>b", "### a\n\nb"},
                                                   {"<h4 class=\"x\">a</h4\t>b", "#### a\n\nb"},
                                                   {"<h5>x</h5>", "x"},
                                                   {"<h6>x</h6>", "x"},
                                                   {"<h1>a</h2>b</h1>c", "# ab\n\nc"},
                                                   {"<h1>a<h1>b</h1>c", "a# b\n\nc"},
                                                   {"<h12>a</h1>b", "# a\n\nb"},
                                                   {"<h1>a</h12>b</h1>c", "abc"},
                                                   {"<h1>a<h1x>b</h1>c", "a# b\n\nc"},
                                                   {"<h1", "<h1"},
                                                   {"<h1></h1>x", "# \n\nx"},
                                               });
}

TEST(HTMLToMarkdown, ConvertsBareInlineTagsOnly) {
    expectEach(TextTransforms::htmlToMarkdown, {
                                                   {"<b>a</b> <strong>b</strong>", "**a** **b**"},
                                                   {"<b>a</strong>", "**a**"},
                                                   {"<b class='c'>x</b>", "x"},
                                                   {"< B >a< /B >", "**a**"},
                                                   {"<b>a<b>b</b>c</b>", "a**b**c"},
                                                   {"<b>a<br>b</b>", "**a\nb**"},
                                                   {"<b>a<body>b</b>", "**ab**"},
                                                   {"<b>a<b\u00AD>b</b>", "**ab**"},
                                                   {"<b>a<b-c>b</b>", "ab"},
                                                   {"<b>a</b x>b</b>", "ab"},
                                                   {"<b></b>x", "****x"},
                                                   {"<i>a</i> <em>b</em>", "*a* *b*"},
                                                   {"<em>a</i>", "*a*"},
                                                   {"<i>a<img>b</i>", "*ab*"},
                                                   {"<b><i>x</i></b>", "***x***"},
                                                   {"<code>a</code>", "`a`"},
                                                   {"<code>a<codex>b</code>", "`ab`"},
                                                   {"<pre><code>a\nb</code></pre>", "`a\nb`"},
                                                   {"<\uFB06rong>a</\u017Ftrong>", "**a**"},
                                               });
}

TEST(HTMLToMarkdown, ConvertsBlocks) {
    expectEach(TextTransforms::htmlToMarkdown, {
                                                   {"<p>a</p><p>b</p>", "a\n\nb"},
                                                   {"<p>a<P class=x>b", "ab"},
                                                   {"a<pre>b</pre>c<param>d", "abcd"},
                                                   {"x<ul><li>a</li><li>b</li></ul>y", "x\n- a\n- b\n\ny"},
                                                   {"<li>a<li>b</li>", "a- b"},
                                                   {"<link>a</li>", "- a"},
                                                   {"<li>a</link>b</li>", "- ab"},
                                                   {"<blockquote cite=x>a</blockquote>b", "> a\nb"},
                                                   {"<bloc\u212Aquote>a</blockquote>b", "> a\nb"},
                                                   {"a< / ul >b", "a< / ul >b"},
                                                   {"a< /ul >b<OL>c<ol x>d", "a\nb\ncd"},
                                               });
}

TEST(HTMLToMarkdown, ConvertsLinks) {
    expectEach(TextTransforms::htmlToMarkdown, {
                                                   {"<a href=\"u\">t</a>", "[t](u)"},
                                                   {"<A class=x HREF = 'u' id=y>t</A >", "[t](u)"},
                                                   {"<a href=''></a>x", "[]()x"},
                                                   {"<a href=u>t</a>", "t"},
                                                   {"<a>t</a>", "t"},
                                                   {"<a href='u\">t</a>", "[t](u)"},
                                                   {"<area href='u'>t</a>", "[t](u)"},
                                                   {"<ahref='u'>t</a>", "[t](u)"},
                                                   {"<a href='u'><b>t</b></a>", "[**t**](u)"},
                                                   {"<a href='u'>s<a href='v'>t</a>", "s[t](v)"},
                                                   {"<a href='u'>t</abbr>s</a>", "[ts](u)"},
                                                   {"<a href='u'>t< / a>", "t< / a>"},
                                                   {"<a data-href='u'>t</a>", "[t](u)"},
                                                   {"<a href='u&amp;v'>t</a>", "[t](u&v)"},
                                                   {"<a href='u'\n>t\n</a>", "[t\n](u)"},
                                               });
}

TEST(HTMLToMarkdown, TakesTheLastHrefOfATagThatMakesALink) {
    expectEach(TextTransforms::htmlToMarkdown,
               {
                   {"<a href='u' href='v'>t</a>", "[t](v)"},
                   {"<a href='u' href='v' href=w>t</a>", "[t](v)"},
                   // A value continues to the next quote, past the ">".
                   {"<a href='u>v'>t</a>", "[t](u>v)"},
                   {"<a href='u' href='v>w'>t</a>", "[t](v>w)"},
                   // The last one would have no closing tag after its value: the one before makes the link.
                   {"<a href='u' href='v>t</a>", "[t](u)"},
                   {"<a href='u' href='v>t</a>'", "[t](u)'"},
                   {"<a href='u' href='v>t</a>'>s", "[t](u)'>s"},
                   {"<a href='u' href='v' href='w>t</a>", "[t](v)"},
                   {"<a href='u' <a href='v>t</a>", "[t](u)"},
                   {"<a x <a href='v>t</a>", "t"},
               });
}

TEST(HTMLToMarkdown, DoesNotLoseLinksAmongWhiteSpace) {
    const std::string spaces(250'000, ' ');
    EXPECT_EQ(
        TextTransforms::htmlToMarkdown("<a href='u'>one</a> <" + spaces + "a href='v'>two</a> <a href='w'>three</a>"),
        "[one](u) [two](v) [three](w)");
}

// --- Size ------------------------------------------------------------------------------------------------------------

TEST(HTMLSize, IsLimitedInBytes) {
    for (const auto function : {TextTransforms::stripHTML, TextTransforms::htmlToMarkdown}) {
        const std::string start = " <u>\u00E9</u>&lt;";
        const std::string atLimit = start + std::string(TextTransforms::kMaxHTMLSize - start.size(), 'x');
        EXPECT_EQ(atLimit.size(), 262'144U);
        EXPECT_EQ(function(atLimit), "\u00E9<" + atLimit.substr(start.size()));
        EXPECT_EQ(function(atLimit + "\n"), atLimit + "\n");
    }
}

// --- References ------------------------------------------------------------------------------------------------------

TEST(DecodeEntities, KnowsNineNames) {
    expectEach(TextTransforms::decodeEntities,
               {
                   {"&amp;&lt;&gt;&quot;&#39;&apos;&nbsp;&mdash;&ndash;", "&<>\"'' \u2014\u2013"},
                   {"&hellip;&copy;", "&hellip;&copy;"},
                   {"&AMP;&Lt;", "&AMP;&Lt;"},
                   {"&lt&gt ;& lt;", "&lt&gt ;& lt;"},
                   {"&&lt;;", "&<;"},
                   {"", ""},
               });
}

TEST(DecodeEntities, DecodesTheAmpersandAfterOtherNamesAndBeforeNumbers) {
    expectEach(TextTransforms::decodeEntities, {
                                                   {"&amp;lt;", "&lt;"},
                                                   {"&amp;amp;", "&amp;"},
                                                   {"&amp;#65;", "A"},
                                                   {"&amp;#x41;", "A"},
                                                   {"&#38;lt;", "&lt;"},
                                                   {"&#38;#x41;", "A"},
                                                   {"&#x26;#65;", "&#65;"},
                                               });
}

TEST(DecodeEntities, UndoesEncoding) {
    tests::AlphabetTexts texts(tests::kTextAlphabet, 30);
    int count = 0;
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = texts.next();
        if (text.find('#') != std::string::npos) continue;
        EXPECT_EQ(TextTransforms::decodeEntities(TextTransforms::htmlEntitiesEncode(text)), text);
        ++count;
    }
    EXPECT_GT(count, 10'000);
}

TEST(DecodeEntities, NamesAreWholeCharacters) {
    expectEach(TextTransforms::decodeEntities, {
                                                   {"&lt;\u0301", "&lt;\u0301"},
                                                   {"&lt;\u200D&gt;", "&lt;\u200D>"},
                                                   {"\u0600&lt;", "\u0600&lt;"},
                                                   {"&amp;\u0338&amp;", "&amp;\u0338&"},
                                                   {"&#60;\u0301", "<\u0301"},
                                                   {"&#39;\u0301", "'\u0301"},
                                               });
}

TEST(DecodeNumeric, DecodesWhatBelongsInATextOnly) {
    expectEach(TextTransforms::decodeNumeric,
               {
                   {"&#65;&#x42;&#x1F600;", "AB\U0001F600"},
                   {"&#x1f600;&#X42;", "\U0001F600&#X42;"},
                   {"&#65;&#x42;&#X43;", "AB&#X43;"},
                   {"&#0;&#8;&#11;&#12;&#14;&#31;&#127;", "&#0;&#8;&#11;&#12;&#14;&#31;&#127;"},
                   {"&#7;", "&#7;"},
                   {"&#9;&#10;&#13;&#32;&#126;", "\t\n\r ~"},
                   {"&#128;&#159;&#xFFFE;&#xFFFF;", "\u0080\u009F\uFFFE\uFFFF"},
                   {"&#55295;&#55296;&#57343;&#57344;", "\uD7FF&#55296;&#57343;\uE000"},
                   {"&#xD800;&#xdfff;", "&#xD800;&#xdfff;"},
                   {"&#x10FFFF;&#x110000;", "\U0010FFFF&#x110000;"},
                   {"&#1114111;&#1114112;", "\U0010FFFF&#1114112;"},
               });
}

TEST(DecodeNumeric, ReadsNumbersOfAnyLength) {
    expectEach(TextTransforms::decodeNumeric, {
                                                  {"&#99999999999;", "&#99999999999;"},
                                                  {"&#4294967295;&#4294967296;", "&#4294967295;&#4294967296;"},
                                                  {"&#4294967361;", "&#4294967361;"},
                                                  {"&#18446744073709551681;", "&#18446744073709551681;"},
                                                  {"&#x100000041;", "&#x100000041;"},
                                                  {"&#0000000000000000000000065;", "A"},
                                                  {"&#x0000000000000000000000041;", "A"},
                                              });
}

TEST(DecodeNumeric, LeavesWhatIsNoReference) {
    expectEach(TextTransforms::decodeNumeric, {
                                                  {"&#;&#x;&#xg;&#65", "&#;&#x;&#xg;&#65"},
                                                  {"&#6 5;&#-65;&#+65;", "&#6 5;&#-65;&#+65;"},
                                                  {"&#6A;&#x4G;", "&#6A;&#x4G;"},
                                                  {"&#\u0666\u0665;", "&#\u0666\u0665;"},
                                                  {"&&#65;;", "&A;"},
                                                  {"&#&#65;", "&#A"},
                                                  {"&#38;#65;", "&#65;"},
                                                  {"&lt;", "&lt;"},
                                              });
}

}  // namespace
}  // namespace ravlin
