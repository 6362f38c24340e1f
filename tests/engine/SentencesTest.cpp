#include "Engine/Support/Sentences.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Sentences::capitalised;

TEST(Sentences, BeginWithALetterInUpperCase) {
    EXPECT_EQ(capitalised("is it? 1st. yes"), "Is it? 1St. Yes");
    EXPECT_EQ(capitalised("a.b. c!\nd?\te"), "A.b. C!\nD?\tE");
    EXPECT_EQ(capitalised("\u00E9t\u00E9. \u00E9"), "\u00C9t\u00E9. \u00C9");
    EXPECT_EQ(capitalised("... (a"), "... (A");
    EXPECT_EQ(capitalised("no change. At All"), "No change. At All");
    EXPECT_EQ(capitalised("a.\u0301 b"), "A.\u0301 b");  // not a full stop but one with an accent
    EXPECT_EQ(capitalised("a.\r\nb"), "A.\r\nb");        // CR LF is one character, and no line feed
    EXPECT_EQ(capitalised("1. 2. "), "1. 2. ");
    EXPECT_EQ(capitalised(""), "");
}

TEST(Sentences, KeepTheirTextWhereLettersGrowOrShrink) {
    EXPECT_EQ(capitalised("\u00DFa. \u0149b. c"), "SSa. \u02BCNb. C");
    EXPECT_EQ(capitalised("a. \u0131b. \u00E9"), "A. Ib. \u00C9");
}

}  // namespace
}  // namespace ravlin
