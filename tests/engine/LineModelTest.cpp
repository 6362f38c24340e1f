#include "Engine/Support/LineModel.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;

TEST(LineModel, CutsAtLineFeedsAndAtNothingElse) {
    EXPECT_THAT(LineModel::split(""), ElementsAre(""));
    EXPECT_THAT(LineModel::split("a"), ElementsAre("a"));
    EXPECT_THAT(LineModel::split("a\n"), ElementsAre("a", ""));
    EXPECT_THAT(LineModel::split("\n\n"), ElementsAre("", "", ""));
    EXPECT_THAT(LineModel::split("a\r\nb"), ElementsAre("a\r", "b"));
    EXPECT_THAT(LineModel::split("a\rb\fc\vd\u0085e\u2028f\u2029g"), ElementsAre("a\rb\fc\vd\u0085e\u2028f\u2029g"));
}

TEST(LineModel, JoiningIsTheInverseOfSplitting) {
    tests::AlphabetTexts texts(U"a\n\n\r", 10);
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = texts.next();
        const auto lines = LineModel::split(text);
        EXPECT_EQ(lines.size(), LineModel::count(text));
        ASSERT_EQ(LineModel::join(lines), text);
    }
}

TEST(LineModel, JoiningNoLinesGivesNoText) {
    EXPECT_EQ(LineModel::join({}), "");
}

TEST(LineModel, TheJoinerPutsLineFeedsBetweenLinesOnly) {
    LineModel::Joiner none(0);
    EXPECT_EQ(std::move(none).text(), "");
    LineModel::Joiner joiner(0);
    joiner.startLine();
    joiner.startLine() += "a";
    joiner.startLine();
    EXPECT_EQ(std::move(joiner).text(), "\na\n");
}

}  // namespace
}  // namespace ravlin
