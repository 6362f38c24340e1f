#include "Engine/SpacingTransforms.h"
#include "tests/engine/Oracle.h"

#include <algorithm>
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
    Oracle::Texts texts(U"a\r\n\u0301\u0600", 10);
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
    Oracle::Texts texts(U"\u2026\u2014\u2013\u2012\u2015a-.\u0301\u0600\n", 10);
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
    Oracle::Texts texts(Oracle::kClusterAlphabet, 12);
    for (int i = 0; i < 300'000; ++i) {
        const std::string text = texts.next();
        std::vector<std::string> characters = Oracle::characters(text);
        std::string expected;
        for (auto character = characters.rbegin(); character != characters.rend(); ++character) expected += *character;
        ASSERT_EQ(TextTransforms::reverseCharacters(text), expected) << testing::PrintToString(text);
    }
}

}  // namespace
}  // namespace ravlin
