#include "Platform/Clipboard/Latin1.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using std::string_literals::operator""s;
using testing::Optional;

TEST(Latin1, EveryCharacterGoesThereAndBack) {
    for (int i = 0; i < 0x100; ++i) {
        const std::string latin1(3, static_cast<char>(i));
        const std::string text = Latin1::toUTF8(latin1);
        EXPECT_EQ(text.size(), i < 0x80 ? 3U : 6U) << i;
        EXPECT_TRUE(Latin1::canHold(text)) << i;
        EXPECT_THAT(Latin1::fromUTF8(text), Optional(latin1)) << i;
    }
}

TEST(Latin1, CharactersAreThoseOfUnicode) {
    EXPECT_EQ(Latin1::toUTF8("\x80 \xA3 \xBF\xC0 \xFF\0x"s), "\u0080 \u00a3 \u00bf\u00c0 \u00ff\0x"s);
    EXPECT_EQ(Latin1::toUTF8(""), "");
}

TEST(Latin1, NothingAboveFFHasAPlace) {
    for (const char* text : {"\u0100", "caf\u00e9 \u20ac", "\u0391", "\U0001F600", "a\u0300"}) {
        EXPECT_FALSE(Latin1::canHold(text)) << text;
        EXPECT_EQ(Latin1::fromUTF8(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace ravlin
