#include "Engine/LineTransforms.h"
#include "Engine/TextTransform.h"
#include "tests/engine/oracles/PlainCollation.h"
#include "tests/engine/oracles/PlainLines.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <cstdlib>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using namespace TextTransforms;

using Vectors = std::vector<std::pair<std::string_view, std::string_view>>;

constexpr std::u32string_view kLineAlphabet = U"aaB1\n\n\n\n\t \r\u00a0\u3000\u0301\u2028é\u200b";

/// Compares a transform with its plain version on random texts.
template <typename Transform, typename Plain>
void expectSame(Transform transform, Plain plain) {
    tests::AlphabetTexts texts(kLineAlphabet, 24);
    for (int i = 0; i < 50'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(transform(text), plain(text)) << testing::PrintToString(text);
    }
}

// --- Lists -----------------------------------------------------------------------------------------------------------

TEST(Listify, NumbersLinesThatAreNotBlank) {
    const Vectors vectors = {
        {"", ""},
        {"  a\n\n b", "1. a\n\n2. b"},
        {"1. a", "1. 1. a"},
        {"a\n", "1. a\n"},
        {"\t \na\n\u00a0", "\n1. a\n"},
        {"a\r\n\r\nb", "1. a\r\n2. \r\n3. b"},
        {"a\n\n\nb", "1. a\n\n\n2. b"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(listify(text, /*numbered=*/true), expected);
}

TEST(Listify, PutsBulletsBeforeLinesThatAreNotBlank) {
    const Vectors vectors = {
        {"", ""}, {"  a\n\n b", "- a\n\n- b"}, {"- a", "- - a"}, {"a\r\n\r\nb", "- a\r\n- \r\n- b"}, {"\t ", ""},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(listify(text, /*numbered=*/false), expected);
}

TEST(Listify, WritesNumbersInPlainDecimal) {
    std::string text;
    std::string expected;
    for (int i = 1; i <= 1234; ++i) {
        text += "x\n";
        expected += std::to_string(i) + ". x\n";
    }
    EXPECT_EQ(listify(text, /*numbered=*/true), expected);
}

TEST(Listify, IsThatOfThePlainVersionInRandomTexts) {
    for (const bool numbered : {true, false}) {
        expectSame([&](const std::string& text) { return listify(text, numbered); },
                   [&](const std::string& text) { return tests::plainListify(text, numbered); });
    }
}

TEST(Listify, NumberedListAndNumberLinesAreTheSame) {
    tests::AlphabetTexts texts(kLineAlphabet, 24);
    for (int i = 0; i < 2'000; ++i) {
        const std::string text = texts.next();
        EXPECT_EQ(TextTransform(TextTransform::numberedList).apply(text),
                  TextTransform(TextTransform::numberLines).apply(text));
    }
}

// --- Order -----------------------------------------------------------------------------------------------------------

class SortLines : public testing::Test {
protected:
    SortLines() { setenv("LC_ALL", "C.UTF-8", 1); }
    ~SortLines() override { unsetenv("LC_ALL"); }
};

TEST_F(SortLines, GoesUpAndDownAndKeepsTiesInOrder) {
    const struct {
        std::string_view text, ascending, descending;
    } vectors[] = {
        {"", "", ""},
        {"a", "a", "a"},
        {"b\na\n", "\na\nb", "b\na\n"},
        {"apple\nApple", "apple\nApple", "apple\nApple"},
        {"item10\nitem2", "item10\nitem2", "item2\nitem10"},
        {"Zebra\napple\nBanane", "apple\nBanane\nZebra", "Zebra\nBanane\napple"},
    };
    for (const auto& vector : vectors) {
        EXPECT_EQ(sortLines(vector.text, /*ascending=*/true), vector.ascending);
        EXPECT_EQ(sortLines(vector.text, /*ascending=*/false), vector.descending);
    }
}

TEST_F(SortLines, CarriageReturnsGoWithTheirLinesAndCount) {
    EXPECT_EQ(sortLines("ba\nb \nb\r\nb", /*ascending=*/true), "b\nb\r\nb \nba");
}

TEST_F(SortLines, FollowsTheUsersLanguage) {
    EXPECT_EQ(sortLines("ö\nz", /*ascending=*/true), "ö\nz");
    setenv("LC_ALL", "sv_SE.UTF-8", 1);
    EXPECT_EQ(sortLines("ö\nz", /*ascending=*/true), "z\nö");
}

TEST_F(SortLines, EqualNeighboursAndTextsInOrderAreSortedLikeOthers) {
    for (const std::u32string_view alphabet : {U"aA\n\n\n\n", U"abá\u0301\u200b\r\n\n\n"}) {
        tests::AlphabetTexts texts(alphabet, 40);
        for (int i = 0; i < 2'000; ++i) {
            const std::string text = texts.next();
            for (const bool ascending : {true, false}) {
                const std::string expected = tests::plainlySorted(text, "", ascending);
                ASSERT_EQ(sortLines(text, ascending), expected) << testing::PrintToString(text);
                ASSERT_EQ(sortLines(expected, ascending), expected);
            }
        }
    }
}

TEST_F(SortLines, MarksThatDoNotCountDoNotPutLinesOutOfOrder) {
    std::string marks;
    for (int i = 0; i < 64; ++i) marks += "\u0301";
    const std::string tie = "a" + marks + "\u0308\na" + marks + "\u0301\nb";
    EXPECT_EQ(sortLines(tie, /*ascending=*/true), tie);
    EXPECT_EQ(sortLines(tie, /*ascending=*/false), "b\n" + tie.substr(0, tie.size() - 2));
}

TEST(ReverseLines, TurnsTheOrderRoundAndKeepsCarriageReturnsWithTheirLines) {
    const Vectors vectors = {
        {"", ""},     {"a", "a"},     {"a\nb\n", "\nb\na"}, {"one\r\ntwo", "two\none\r"},
        {"\n", "\n"}, {"\na", "a\n"}, {"a\n\nb", "b\n\na"}, {"a\r\nb\r\nc", "c\nb\r\na\r"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(reverseLines(text), expected);
}

TEST(ShuffleLines, IsAlwaysTheSame) {
    const Vectors vectors = {
        {"", ""},
        {"a", "a"},
        {"a\nb", "b\na"},
        {"a\nb\nc", "a\nb\nc"},
        {"a\nb\nc\nd\ne", "a\nc\nb\ne\nd"},
        {"1\n2\n3\n4\n5\n6\n7\n8\n9\n10", "2\n4\n5\n7\n1\n8\n10\n3\n6\n9"},
        {"a\r\nb", "b\na\r"},
        {"a\n", "\na"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(shuffleLines(text), expected);
}

TEST(ShuffleLines, TwiceDoesNotGiveTheTextBack) {
    constexpr std::string_view kTen = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10";
    EXPECT_NE(shuffleLines(shuffleLines(kTen)), kTen);
}

TEST(ShuffleLines, IsThatOfThePlainVersionInRandomTexts) {
    expectSame(shuffleLines, tests::plainShuffleLines);
}

// --- Fewer lines -----------------------------------------------------------------------------------------------------

TEST(RemoveDuplicateLines, KeepsTheFirstOfEach) {
    const Vectors vectors = {
        {"", ""},
        {"a\n\nb\n\na", "a\n\nb"},
        {"a\na ", "a\na "},
        {"a\nA", "a\nA"},
        {"a\r\na", "a\r\na"},
        {"a\r\na\r\na", "a\r\na"},
        {"é\ne\u0301", "é"},
        {"e\u0301\né", "e\u0301"},
        {"\u212b\n\u00c5\nA\u030a", "\u212b"},
        {"ﬁ\nfi", "ﬁ\nfi"},
        {"\n\n\n", ""},
        {"a\n", "a\n"},
        {"각\n각", "각"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(removeDuplicateLines(text), expected);
}

TEST(RemoveDuplicateLines, IsThatOfThePlainVersionInRandomTexts) {
    expectSame(removeDuplicateLines, tests::plainRemoveDuplicateLines);
    tests::AlphabetTexts texts(U"\n\n\n\ne\u0301é\u0323\u0345\u212bA\u030a\u1100\u1161\uac00", 40);
    for (int i = 0; i < 50'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(removeDuplicateLines(text), tests::plainRemoveDuplicateLines(text)) << testing::PrintToString(text);
    }
}

TEST(RemoveEmptyLines, DropsBlankLinesAndTouchesNoOther) {
    const Vectors vectors = {
        {"", ""},
        {" x \n \n\ny", " x \ny"},
        {"\n\n", ""},
        {"a\r\n\r\nb", "a\r\n\r\nb"},
        {"\t\u00a0\nx\n", "x"},
        {"\u200b\n\u3000", "\u200b"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(removeEmptyLines(text), expected);
    expectSame(removeEmptyLines, tests::plainRemoveEmptyLines);
}

// --- Every line ------------------------------------------------------------------------------------------------------

TEST(TrimEachLine, RemovesBlanksAtBothEnds) {
    const Vectors vectors = {
        {"", ""},
        {"  a b  \n\t\nc\u00a0\n", "a b\n\nc\n"},
        {"a  \r\n b", "a  \r\nb"},
        {" \u0301x", "\u0301x"},
        {"\u200b x", "\u200b x"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(trimEachLine(text), expected);
    expectSame(trimEachLine, tests::plainTrimEachLine);
}

TEST(JoinLines, PutsOneSpaceBetweenLinesThatAreNotBlank) {
    const Vectors vectors = {
        {"", ""},        {"  one\n\n two  three\n", "one two  three"}, {"a\r\nb", "a\r b"}, {"a\r\n\r\nb", "a\r \r b"},
        {" \n\t\n", ""},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(joinLines(text), expected);
    expectSame(joinLines, tests::plainJoinLines);
}

TEST(QuoteLines, MarksEveryLine) {
    const Vectors vectors = {
        {"", ">"}, {"a\n\n b", "> a\n>\n>  b"}, {"a\n", "> a\n>"}, {"  ", ">   "}, {"a\r\n\r\nb", "> a\r\n> \r\n> b"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(quoteLines(text), expected);
    expectSame(quoteLines, tests::plainQuoteLines);
}

}  // namespace
}  // namespace ravlin
