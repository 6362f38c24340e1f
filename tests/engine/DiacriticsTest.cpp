#include "Engine/Support/Characters/Diacritics.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Unicode::withoutDiacritics;

TEST(Diacritics, AreTakenFromLatinGreekAndCyrillic) {
    EXPECT_EQ(withoutDiacritics("H\u00E9llo, W\u00F6rld"), "Hello, World");
    EXPECT_EQ(withoutDiacritics("e\u0301\u0323x"), "ex");
    EXPECT_EQ(withoutDiacritics("\u1F00"), "\u03B1");
    EXPECT_EQ(withoutDiacritics("\u0439"), "\u0438");
    EXPECT_EQ(withoutDiacritics("\u00F8\u0142\u00DF"), "\u00F8\u0142\u00DF");  // these do not decompose
}

TEST(Diacritics, OfOtherScriptsStay) {
    EXPECT_EQ(withoutDiacritics("\u0915\u093F\u094D"), "\u0915\u093F\u094D");
    EXPECT_EQ(withoutDiacritics("\u304C\u304B\u3099"), "\u304C\u304B\u3099");
    EXPECT_EQ(withoutDiacritics("\uAC00"), "\uAC00");
    EXPECT_EQ(withoutDiacritics("\u0915\u0301"), "\u0915");  // a mark of another script
}

TEST(Diacritics, WithoutABaseStay) {
    EXPECT_EQ(withoutDiacritics("\u0301"), "\u0301");
    EXPECT_EQ(withoutDiacritics("\u0301a\u0301"), "\u0301a");
    EXPECT_EQ(withoutDiacritics(""), "");
}

TEST(Diacritics, IncludeSkinTones) {
    EXPECT_EQ(withoutDiacritics("a\U0001F3FDb"), "ab");
    EXPECT_EQ(withoutDiacritics("\U0001F44D\U0001F3FD"), "\U0001F44D\U0001F3FD");
}

}  // namespace
}  // namespace ravlin
