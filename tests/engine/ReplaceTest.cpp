#include "Engine/Support/Replace.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(Replace, ReplacesEveryOccurrenceFromTheStart) {
    const struct {
        std::string_view text, from, to, expected;
    } vectors[] = {
        {"", "a", "b", ""},        {"abc", "x", "y", "abc"},    {"a--b---", "--", "-", "a-b--"},
        {"aaaa", "aa", "b", "bb"}, {"aaaaa", "aa", "b", "bba"}, {"xax", "x", "", "a"},
        {"a", "a", "aaa", "aaa"},  {"—x—", "—", "--", "--x--"},
    };
    for (const auto& vector : vectors)
        EXPECT_EQ(Replace::all(vector.text, vector.from, vector.to), vector.expected) << vector.text;
}

TEST(Replace, LeavesCharactersAloneThatOnlyBeginOrEndLikeTheLiteral) {
    const struct {
        std::string_view text, from, expected;
    } vectors[] = {
        {"—\u0301", "—", "—\u0301"},
        {"&\u0301&", "&", "&\u0301!"},
        {"<\u0338", "<", "<\u0338"},
        {"\u0600-", "-", "\u0600-"},  // a prepended mark takes the hyphen with it
        {"\u0600--", "-", "\u0600-!"},
        {"---\u0301", "--", "!-\u0301"},
        {"--\u0301--", "--", "--\u0301!"},
        {"é", "e", "é"},
        {"e\u0301", "é", "e\u0301"},
        {"🇫🇷🇩🇪", "🇫🇷", "!🇩🇪"},
        {"🇫🇷🇩🇪", "🇷🇩", "🇫🇷🇩🇪"},
        {"\r\n", "\r", "!\n"},  // the two halves of a line end can be taken apart
        {"\r\n", "\n", "\r!"},
        {"a\r\nb", "\r\n", "a!b"},
    };
    for (const auto& vector : vectors) EXPECT_EQ(Replace::all(vector.text, vector.from, "!"), vector.expected);
}

TEST(Replace, IsThatOfThePlainVersionInRandomTexts) {
    tests::AlphabetTexts texts(U"--..\r\n\u2014\u2013\u0301\u0600\u200d\U0001f1e6\U0001f468\u0915\u094da&", 10);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        for (const std::string_view from :
             {"--", "---", "-", "\u2014", "\r", "\r\n", "&", "\U0001f1e6", "\u0915", "\U0001f468"})
            ASSERT_EQ(Replace::all(text, from, "+"), Oracle::replaceAll(text, from, "+"))
                << testing::PrintToString(text);
    }
}

TEST(Replace, OfATableIsTheSameAsStepByStep) {
    static constexpr Replace::Table table(
        std::to_array<Replace::Literal>({{"-", "+++"}, {"\u2014", "-"}, {"&", "\u2014"}, {"x", "&"}, {"y", ""}}));
    tests::AlphabetTexts texts(U"-\u2014&xy\u0301\u0600\r\n", 10);
    for (int i = 0; i < 50'000; ++i) {
        const std::string text = texts.next();
        std::string expected = text;
        for (const Replace::Literal& literal : table.literals())
            expected = Oracle::replaceAll(expected, literal.from, literal.to);
        ASSERT_EQ(Replace::each(text, table), expected) << testing::PrintToString(text);
    }
}

}  // namespace
}  // namespace ravlin
