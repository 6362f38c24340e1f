#include "Engine/Support/Links/LinkWalk.h"

#include <string_view>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Links::Walked;
using Links::walkOverLink;

constexpr std::size_t kKnown = 8;  // "http://h", with which every link here begins

/// In these texts the items named "r" are those that will be removed.
Walked walked(std::string_view text) {
    return walkOverLink(text, 0, kKnown, [](std::string_view name) { return name == "r"; });
}

std::string_view linkOf(std::string_view text) {
    return text.substr(0, walked(text).end);
}

TEST(LinkWalk, EndsAtBoundaries) {
    for (const char* const tail : {"", " x", "\nx", "\"x", "<x", "\u3002x", "&lt;x", ")x", "]x", "[/url]"})
        EXPECT_EQ(linkOf("http://h/a" + std::string(tail)), "http://h/a") << tail;
}

TEST(LinkWalk, TellsHowFarItLooked) {
    EXPECT_EQ(walked("http://h/a.. b").end, 10U);
    EXPECT_EQ(walked("http://h/a.. b").readEnd, 12U);
    EXPECT_EQ(walked("http://h").readEnd, 8U);
}

TEST(LinkWalk, TakesBracketsThatAreClosed) {
    EXPECT_EQ(linkOf("http://h/(a[b]{c})d)e"), "http://h/(a[b]{c})d");
    EXPECT_EQ(linkOf("http://h/a(b"), "http://h/a");
    EXPECT_EQ(linkOf("http://h/a(b[c]"), "http://h/a");
    EXPECT_EQ(linkOf("http://h/(a]"), "http://h/");
}

TEST(LinkWalk, EndsBeforeASecondLinkUnlessSomethingJoinsThem) {
    EXPECT_EQ(linkOf("http://h/a,http://b"), "http://h/a");
    EXPECT_EQ(linkOf("http://h/ahttps://b"), "http://h/a");
    EXPECT_EQ(linkOf("http://h/http://b"), "http://h/http://b");
    EXPECT_EQ(linkOf("http://h/?u=http://b"), "http://h/?u=http://b");
    EXPECT_EQ(linkOf("http://h/?a=x,www.b.com"), "http://h/?a=x,www.b.com");
    EXPECT_EQ(linkOf("http://h/?r=x,www.b.com"), "http://h/?r=x");
    EXPECT_EQ(linkOf("http://h/?r=x.http://b"), "http://h/?r=x");
}

TEST(LinkWalk, LeavesForeignTextOutsideOfTheLastItemOnlyIfThatIsRemoved) {
    EXPECT_EQ(linkOf("http://h/?r=x\u8C22"), "http://h/?r=x");
    EXPECT_EQ(linkOf("http://h/?r=x\u8C22&a=1"), "http://h/?r=x\u8C22&a=1");
    EXPECT_EQ(linkOf("http://h/?r=x\u8C22#f"), "http://h/?r=x\u8C22#f");
    EXPECT_EQ(linkOf("http://h/?a=x\u8C22"), "http://h/?a=x\u8C22");
    EXPECT_EQ(linkOf("http://h/#?r=x\u8C22"), "http://h/#?r=x\u8C22");
    EXPECT_EQ(linkOf("http://h/?r=x(\u8C22)"), "http://h/?r=x");
    EXPECT_EQ(linkOf("http://h/?r=x\u8C22(y"), "http://h/?r=x");
}

TEST(LinkWalk, TakesForeignLettersForTheValueThatTheyBegin) {
    EXPECT_EQ(linkOf("http://h/?r=\u8C22x\u8C22"), "http://h/?r=\u8C22x\u8C22");
    EXPECT_EQ(linkOf("http://h/?r=\u00E9\u8C22"), "http://h/?r=\u00E9");
    EXPECT_EQ(linkOf("http://h/?r=\u2192\u8C22"), "http://h/?r=");
    EXPECT_EQ(linkOf("http://h/?r=\u8C22&r=x\u8C22"), "http://h/?r=\u8C22&r=x");
    EXPECT_EQ(linkOf("http://h/?r\u8C22"), "http://h/?r");
}

TEST(LinkWalk, TellsWhetherTheLinkIsWhole) {
    EXPECT_TRUE(walked("http://h/?a=1&b=2").isWhole);
    EXPECT_FALSE(walked("http://h/?a=1&amp;b=2").isWhole);
    EXPECT_TRUE(walked("http://h/?a=1&amp;").isWhole);
    EXPECT_FALSE(walked("http://h/?a=1\\u0026b=2").isWhole);
}

}  // namespace
}  // namespace ravlin
