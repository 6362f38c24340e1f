#include "Engine/SpacingTransforms.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/oracles/PlainSpacing.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(StripFormatting, LeavesLineFeedsAsTheOnlyLineEnds) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"plain\ntext\n", "plain\ntext\n"},
        {"a\r\nb\rc\n", "a\nb\nc\n"},
        {"a\r\nb\rc", "a\nb\nc"},
        {"\r\r\n", "\n\n"},
        {"a\r\r\nb", "a\n\nb"},
        {"\n\r", "\n\n"},
        {"\r", "\n"},
        {"a\r\u0301", "a\n\u0301"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::stripFormatting(text), expected);
}

TEST(StripFormatting, IsTwoReplacements) {
    tests::AlphabetTexts texts(U"a\r\n\u0301\u0600", 10);
    for (int i = 0; i < 50'000; ++i) {
        const std::string text = texts.next();
        const std::string expected = Oracle::replaceAll(Oracle::replaceAll(text, "\r\n", "\n"), "\r", "\n");
        ASSERT_EQ(TextTransforms::stripFormatting(text), expected);
    }
}

TEST(TabsToSpaces, KnowsNoTabStops) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"a\tb", "a    b"},
        {"abc\td", "abc    d"},
        {"\t\t", "        "},
        {"\t\u0301", "    \u0301"},  // a tab takes no accent
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::tabsToSpaces(text), expected);
}

TEST(NormalizeDashes, WritesDashesAndEllipsesInASCII) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"wait… — ok – ‒ ―", "wait... -- ok - - --"},
        {"\u2212\u2010", "\u2212\u2010"},
        {"——", "----"},
        {"—\u0301—", "—\u0301--"},
        {"…\u20dd", "…\u20dd"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::normalizeDashes(text), expected);
}

TEST(NormalizeDashes, IsFiveReplacementsOneAfterAnother) {
    tests::AlphabetTexts texts(U"\u2026\u2014\u2013\u2012\u2015a-.\u0301\u0600\n", 10);
    for (int i = 0; i < 50'000; ++i) {
        const std::string text = texts.next();
        std::string expected = text;
        for (const auto& [from, to] : {std::pair("…", "..."), {"—", "--"}, {"–", "-"}, {"‒", "-"}, {"―", "--"}})
            expected = Oracle::replaceAll(expected, from, to);
        ASSERT_EQ(TextTransforms::normalizeDashes(text), expected);
    }
}

TEST(ReverseCharacters, KeepsCharactersWhole) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"abc", "cba"},
        {"e\u0301x", "xe\u0301"},
        {"🇫🇷ab", "ba🇫🇷"},
        {"👩‍👩‍👧‍👦👍🏽a", "a👍🏽👩‍👩‍👧‍👦"},
        {"a\r\nb", "b\r\na"},
        {"\n\r", "\r\n"},
        {"क्षि और", "रऔ क्षि"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::reverseCharacters(text), expected);
}

TEST(ReverseCharacters, IsThatOfICUInRandomTexts) {
    tests::AlphabetTexts texts(tests::kClusterAlphabet, 12);
    for (int i = 0; i < 300'000; ++i) {
        const std::string text = texts.next();
        std::vector<std::string> characters = Oracle::characters(text);
        std::string expected;
        for (auto character = characters.rbegin(); character != characters.rend(); ++character) expected += *character;
        ASSERT_EQ(TextTransforms::reverseCharacters(text), expected) << testing::PrintToString(text);
    }
}

// --- Quotation marks -------------------------------------------------------------------------------------------------

constexpr std::u32string_view kTypographyAlphabet =
    U"aa  "
    U"\n\r\t(\"\"''''----..."
    U"\u201c\u201d\u201e\u00ab\u00bb\u2018\u2019\u201a\u2014\u2013\u2026\u2039\u0301\u0600\u200d中";

TEST(StraightenQuotes, WritesTypographicCharactersInASCII) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"«Hi» — ‘there’…", "\"Hi\" -- 'there'..."},
        {"“a” „b‟ ‚c‛", "\"a\" \"b‟ 'c‛"},
        {"‹a› ′ ″", "‹a› ′ ″"},
        {"–—", "---"},
        {"“\u0301", "“\u0301"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::straightenQuotes(text), expected);
}

TEST(StraightenQuotes, IsElevenReplacementsOneAfterAnother) {
    tests::AlphabetTexts texts(kTypographyAlphabet, 12);
    for (int i = 0; i < 30'000; ++i) {
        const std::string text = texts.next();
        std::string expected = text;
        for (const auto& [from, to] : {std::pair("“", "\""),
                                       {"”", "\""},
                                       {"„", "\""},
                                       {"«", "\""},
                                       {"»", "\""},
                                       {"‘", "'"},
                                       {"’", "'"},
                                       {"‚", "'"},
                                       {"—", "--"},
                                       {"–", "-"},
                                       {"…", "..."}})
            expected = Oracle::replaceAll(expected, from, to);
        ASSERT_EQ(TextTransforms::straightenQuotes(text), expected) << testing::PrintToString(text);
    }
}

TEST(SmartQuotes, CurlsQuotationMarksAndJoinsDashes) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"say \"hi\" and 'bye'", "say “hi” and ‘bye’"},
        {"it's", "it’s"},
        {"\"\"\n\"\n\n\"\"", "“”\n“\n\n”“"},
        {"'a'", "‘a’"},
        {"\"'a'\"", "“’a’”"},  // the character before it in the input is a straight mark
        {"“'a'”", "“‘a’”"},
        {"('a') \t'b'\n'c'", "(‘a’) \t‘b’\n‘c’"},
        {"\r\n'a'", "\r\n’a’"},
        {"\u00a0'a'", "\u00a0’a’"},
        {"a---b--c...", "a—b–c…"},
        {"----", "—-"},
        {"-----", "—–"},
        {"- -- ......", "- – ……"},
        {"\"\u0301\"", "\"\u0301“"},
        {" \u0301'a", " \u0301’a"},
        {"--\u0301", "--\u0301"},
        {"---\u0301", "–-\u0301"},
        {"\u0600---", "\u0600-–"},
        {"\u0600-\u0301", "\u0600-\u0301"},
        {"don't", "don’t"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::smartQuotes(text), expected);
}

TEST(SmartQuotes, IsThatOfTheRulesInRandomTexts) {
    tests::AlphabetTexts texts(kTypographyAlphabet, 14);
    for (int i = 0; i < 60'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::smartQuotes(text), tests::plainSmartQuotes(text)) << testing::PrintToString(text);
    }
}

// --- Spaces ----------------------------------------------------------------------------------------------------------

constexpr std::u32string_view kSpaceAlphabet =
    U"aab    \t\t\n\n\n\n\r\u00a0\u3000\u2028\u0085\u200b\ufeff\u0301é\u000b";

TEST(CollapseSpaces, TidiesLinesAndParagraphs) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"  a   b\t\tc \n\n \n\nd", "a b c\n\nd"},
        {"a\tb", "a\tb"},
        {"a\n\n\n\nb", "a\n\nb"},
        {"\n\n\n", "\n\n"},
        {"\n\n\na", "\n\na"},
        {"a\u00a0\u00a0b\u00a0", "a\u00a0\u00a0b"},
        {"a  \r\nb", "a \r\nb"},
        {"\r\n\r\n\r\n\r\n", "\r\n\r\n\r\n\r\n"},
        {"a \t b", "a b"},
        {"a  \u0301b", "a \u0301b"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::collapseSpaces(text), expected);
}

TEST(CollapseSpaces, IsWhatTheRegularExpressionsSay) {
    tests::AlphabetTexts texts(kSpaceAlphabet, 16);
    for (int i = 0; i < 15'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::collapseSpaces(text), tests::plainCollapseSpaces(text))
            << testing::PrintToString(text);
    }
}

TEST(CollapseSpaces, ChangesNothingTheSecondTime) {
    tests::AlphabetTexts texts(U"aab    \t\t\n\n\n\n\r\u00a0\u3000é", 16);
    for (int i = 0; i < 20'000; ++i) {
        const std::string once = TextTransforms::collapseSpaces(texts.next());
        ASSERT_EQ(TextTransforms::collapseSpaces(once), once) << testing::PrintToString(once);
    }
}

TEST(RemoveAllSpaces, LeavesNoWhiteSpace) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"a b\n\tc", "abc"},
        {"a\r\nb\u0085c\u2028d\u2029e\u00a0f\u3000g\vh\fi", "abcdefghi"},
        {"a\u200bb\ufeff", "a\u200bb\ufeff"},
        {" \u0301x", "\u0301x"},
        {"   ", ""},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::removeAllSpaces(text), expected);
    tests::AlphabetTexts texts(kSpaceAlphabet, 16);
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::removeAllSpaces(text), tests::plainRemoveAllSpaces(text));
    }
}

TEST(SpacesToTabs, TurnsLeadingSpacesIntoTabs) {
    const struct {
        std::string_view text;
        std::int64_t width;
        std::string_view expected;
    } vectors[] = {
        {"", 4, ""},
        {"      x", 4, "\t  x"},
        {"        x", 4, "\t\tx"},
        {"   x", 4, "   x"},
        {"\t    x", 4, "\t    x"},
        {"x    y", 4, "x    y"},
        {"    a\n    b\r\n\n    ", 4, "\ta\n\tb\r\n\n\t"},
        {"    \u0301x", 4, "    \u0301x"},  // the fourth space carries the accent
        {"     \u0301x", 4, "\t \u0301x"},
        {"  x", 1, "\t\tx"},
        {"    x", 0, "    x"},
        {"    x", -4, "    x"},
        {"    x", std::numeric_limits<std::int64_t>::min(), "    x"},
        {"    x", std::numeric_limits<std::int64_t>::max(), "    x"},
    };
    for (const auto& vector : vectors)
        EXPECT_EQ(TextTransforms::spacesToTabs(vector.text, vector.width), vector.expected);
}

TEST(SpacesToTabs, IsThatOfTheRulesInRandomTexts) {
    tests::AlphabetTexts texts(U"        \n\nax\t\r\u0301\u200d\u00a0", 20);
    for (int i = 0; i < 60'000; ++i) {
        const std::string text = texts.next();
        const std::int64_t width = i % 6;
        ASSERT_EQ(TextTransforms::spacesToTabs(text, width), tests::plainSpacesToTabs(text, width))
            << testing::PrintToString(text);
    }
}

}  // namespace
}  // namespace ravlin
