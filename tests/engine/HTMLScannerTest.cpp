// Every kind of rule against the regular expression that defines it, also in forms that no transform uses.

#include "Engine/Support/HTMLScanner.h"
#include "Engine/Support/Rewriter.h"
#include "tests/engine/oracles/PatternOracle.h"
#include "tests/engine/texts/HTMLTokens.h"
#include "tests/engine/texts/RandomTexts.h"

#include <functional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using HTMLScanner::Element;
using HTMLScanner::NameEnd;
using HTMLScanner::Names;
using HTMLScanner::Slash;
using HTMLScanner::Tag;
using HTMLScanner::Tail;

/// What a rule makes of a text.
template <typename Apply>
std::string rewritten(std::string_view text, Apply apply) {
    Rewriter rewriter(text);
    apply(rewriter);
    return std::move(rewriter).take();
}

std::string replaced(std::string_view text, const Tag& tag) {
    return rewritten(text, [&](Rewriter& rewriter) { HTMLScanner::replace(rewriter, tag); });
}

std::string replaced(std::string_view text, const Element& element) {
    return rewritten(text, [&](Rewriter& rewriter) { HTMLScanner::replace(rewriter, element); });
}

using TextFunction = std::function<std::string(std::string_view)>;

void expectSame(const TextFunction& rule, const TextFunction& expression) {
    tests::RandomTexts texts(tests::kHTMLTokens, 7);
    int changed = 0;
    for (int i = 0; i < 8'000; ++i) {
        const std::string text = texts.next();
        const std::string expected = expression(text);
        changed += static_cast<int>(expected != text);
        ASSERT_EQ(rule(text), expected) << testing::PrintToString(text);
    }
    EXPECT_GT(changed, 0) << "the texts give the rule nothing to do";
}

TEST(HTMLScannerTags, HaveTheSlashAndTheTailOfTheirRule) {
    const std::string_view text = "<br> <br/> </br> < br /> <br x> </br/> < / br> <bra>";
    constexpr Names kName("br");
    EXPECT_EQ(replaced(text, Tag{.names = kName, .replacement = "_"}),
              "_ <br/> </br> < br /> <br x> </br/> < / br> <bra>");
    EXPECT_EQ(replaced(text, Tag{.names = kName, .tail = Tail::selfClosing, .replacement = "_"}),
              "_ _ </br> _ <br x> </br/> < / br> <bra>");
    EXPECT_EQ(replaced(text, Tag{.names = kName, .slash = Slash::required, .replacement = "_"}),
              "<br> <br/> _ < br /> <br x> </br/> < / br> <bra>");
    EXPECT_EQ(replaced(text, Tag{.names = kName, .slash = Slash::optional, .tail = Tail::anything, .replacement = "_"}),
              "_ _ _ _ _ _ < / br> _");
}

TEST(HTMLScannerTags, AreThoseOfTheirExpression) {
    const std::pair<Slash, const char*> slashes[] = {
        {Slash::none, ""}, {Slash::optional, "/?"}, {Slash::required, "/"}};
    const std::pair<Tail, const char*> tails[] = {
        {Tail::bare, "\\s*>"}, {Tail::selfClosing, "\\s*/?>"}, {Tail::anything, "[^>]*>"}};
    for (const auto& [slash, slashPattern] : slashes) {
        for (const auto& [tail, tailPattern] : tails) {
            const Tag tag = {.names = Names("strong|li|br"), .slash = slash, .tail = tail, .replacement = "[tag]"};
            const std::string pattern = std::string("(?i)<\\s*") + slashPattern + "(?:strong|li|br)" + tailPattern;
            SCOPED_TRACE(pattern);
            expectSame([&](std::string_view text) { return replaced(text, tag); },
                       PatternOracle::replacing(pattern.c_str(), "[tag]"));
        }
    }
}

TEST(HTMLScannerElements, KeepTheirBody) {
    const Element bold = {.names = Names("strong|b"), .before = "**", .after = "**"};
    EXPECT_EQ(replaced("a<b>x</b>c", bold), "a**x**c");
    EXPECT_EQ(replaced("<b>x</STRONG >", bold), "**x**");
    EXPECT_EQ(replaced("<b>x<b>y</b></b>", bold), "<b>x**y**</b>");
    EXPECT_EQ(replaced("<b>x<body>y</b>", bold), "**x<body>y**");
    EXPECT_EQ(replaced("<b>x", bold), "<b>x");
    EXPECT_EQ(replaced("<b x>y</b>", bold), "<b x>y</b>");
}

TEST(HTMLScannerElements, AreThoseOfTheirExpression) {
    const std::pair<Tail, const char*> tails[] = {
        {Tail::bare, "\\s*>"}, {Tail::selfClosing, "\\s*/?>"}, {Tail::anything, "[^>]*>"}};
    const std::pair<NameEnd, const char*> ends[] = {{NameEnd::anywhere, ""}, {NameEnd::wordBoundary, "\\b"}};
    for (const auto& [tail, tailPattern] : tails) {
        for (const auto& [nameEnd, endPattern] : ends) {
            const Element element = {Names("em|i|h1"), tail, nameEnd, "[", "]"};
            const std::string name = "(?:em|i|h1)";
            const std::string pattern = "(?is)<\\s*" + name + tailPattern + "((?:(?!<\\s*/?" + name + endPattern +
                                        ")[\\s\\S])*?)<\\s*/" + name + "\\s*>";
            SCOPED_TRACE(pattern);
            expectSame([&](std::string_view text) { return replaced(text, element); },
                       PatternOracle::replacing(pattern.c_str(), "[$1]"));
        }
    }
}

TEST(HTMLScannerRawElements, GoWithTheirContent) {
    const TextFunction removed = [](std::string_view text) {
        return rewritten(text, [](Rewriter& rewriter) { HTMLScanner::removeRawElements(rewriter, Names("code")); });
    };
    EXPECT_EQ(removed("a<code x>b<i>c</code>d"), "ad");
    EXPECT_EQ(removed("a<code>b</code >c"), "a<code>b</code >c");
    EXPECT_EQ(removed("a<code>b"), "a<code>b");
    expectSame(removed, PatternOracle::replacing("(?is)<code[^>]*>(?:(?!</code>)[\\s\\S])*?</code>", ""));
}

TEST(HTMLScannerLinks, BecomeTextAndAddress) {
    const TextFunction linked = [](std::string_view text) { return rewritten(text, HTMLScanner::replaceLinks); };
    EXPECT_EQ(linked("<a href=\"u\">x</a>"), "[x](u)");
    EXPECT_EQ(linked("<A class=c HREF = 'u'>x</A >"), "[x](u)");
    EXPECT_EQ(linked("<a>x</a>"), "<a>x</a>");
    EXPECT_EQ(linked("<a href='u'>x<a href='v'>y</a>"), "<a href='u'>x[y](v)");
    expectSame(linked, PatternOracle::replacing(
                           "(?is)<\\s*a[^>]*href\\s*=\\s*[\"']([^\"']*)[\"'][^>]*>((?:(?!<\\s*/?a\\b)[\\s\\S])"
                           "*?)<\\s*/a\\s*>",
                           "[$2]($1)"));
}

TEST(HTMLScannerRest, OfTheTagsBeginWithALetter) {
    const TextFunction removed = [](std::string_view text) { return rewritten(text, HTMLScanner::removeTags); };
    EXPECT_EQ(removed("<x>a</x y='z'>b<1>c< x>d<!-- e -->f<"), "ab<1>c< x>d<!-- e -->f<");
    EXPECT_EQ(removed("<\u212A>\u017F</\u017F>"), "\u017F");  // the Kelvin sign and the long s are letters here
    expectSame(removed, PatternOracle::replacing("(?i)</?[a-zA-Z][^>]*>", ""));
}

TEST(HTMLScannerNames, AreComparedAsICUFolds) {
    constexpr Names kNames("script|li");
    EXPECT_EQ(kNames.endAt("<SCRIPT>", 1), 7U);
    EXPECT_EQ(kNames.endAt("<\u017Fcript>", 1), 8U);
    EXPECT_EQ(kNames.endAt("<li>", 1), 3U);
    for (const char* const other : {"<l\u0131>", "<l\u0130>", "<scrip", "< li>", "<", ""})
        EXPECT_EQ(kNames.endAt(other, 1), std::string_view::npos) << other;
}

}  // namespace
}  // namespace ravlin
