#include "Engine/Support/Links/Host.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Links::asciiHost;
using Links::goesOnAfterHost;
using Links::hostOf;
using Links::internationalHost;
using Links::isJoinedAt;
using Links::mayPrecedeQuery;
using Links::mayStartBareHost;
using Links::mayStartHost;
using Links::startsURLWithoutScheme;

constexpr std::size_t kNone = Scan::kNone;

std::string_view asciiHostOf(std::string_view text) {
    const std::size_t end = asciiHost(text, 0).end;
    return end == kNone ? "" : text.substr(0, end);
}

std::string_view internationalHostOf(std::string_view text) {
    const std::size_t end = internationalHost(text, 0).end;
    return end == kNone ? "" : text.substr(0, end);
}

TEST(Host, EndsWithATopLevelDomain) {
    EXPECT_EQ(asciiHostOf("a.com"), "a.com");
    EXPECT_EQ(asciiHostOf("A.CO.UK/x"), "A.CO.UK");
    EXPECT_EQ(asciiHostOf("x-y.de:80"), "x-y.de");
    EXPECT_EQ(asciiHostOf("a.com."), "a.com");
    EXPECT_EQ(asciiHostOf("a.com.-"), "a.com");
    for (const char* const text : {"", ".", "com", "a.", "a.invalidtld", "e.g.", "1.2.3", "a..com", "README.md?"})
        EXPECT_EQ(asciiHostOf(text), std::string_view(text) == "README.md?" ? "README.md" : "") << text;
}

TEST(Host, OfAMailAddressIsNone) {
    EXPECT_EQ(asciiHostOf("bob.com@example.org"), "");
    EXPECT_EQ(asciiHostOf("bob.com+tag@example.org"), "");
    EXPECT_EQ(asciiHostOf("bob.com @x"), "bob.com");
}

TEST(Host, MayHaveLettersOfAllScripts) {
    EXPECT_EQ(internationalHostOf("b\u00FCcher.de"), "b\u00FCcher.de");
    EXPECT_EQ(internationalHostOf("a_b.com"), "a_b.com");
    EXPECT_EQ(internationalHostOf("www.example.com\u8C22\u8C22"), "www.example.com");
    EXPECT_EQ(internationalHostOf("www.example.com\u00E9"), "");
    EXPECT_EQ(asciiHostOf("b\u00FCcher.de"), "");
}

TEST(Host, MayHaveAFullStopOfAnotherScript) {
    EXPECT_EQ(internationalHostOf("www.foo\u3002bar.com/x"), "www.foo\u3002bar.com");
    EXPECT_TRUE(isJoinedAt("http://www.foo\u3002bar.com/x", 7, 14));
    for (const char* const text : {"a.test", "a.test\u3002", "a.test\u3002x", "a.test\u3002www.b.com", "a.test,b.com",
                                   "a.test\u3002\u8C22.com", "a.test\u3002b.com@c.test"})
        EXPECT_FALSE(isJoinedAt(text, 0, 6)) << text;
    EXPECT_FALSE(isJoinedAt("a.test/\u3002b.com", 0, 7));
    EXPECT_FALSE(isJoinedAt("\u3002b.com", 0, 0));
}

TEST(Host, TellsHowFarItLooked) {
    EXPECT_EQ(asciiHost("a.invalid b", 0).readEnd, 9U);
    EXPECT_EQ(asciiHost("a.com..b", 0).readEnd, 5U);
    EXPECT_EQ(internationalHost("\u00E9.x/", 0).readEnd, 4U);
}

TEST(Host, StartsNotInTheMiddleOfSomethingElse) {
    EXPECT_TRUE(mayStartHost("a.com", 0));
    for (const char* const text : {" a.com", "(a.com", "*a.com", "\"a.com", ",a.com"})
        EXPECT_TRUE(mayStartHost(text, 1)) << text;
    for (const char* const text : {"xa.com", "_a.com", "-a.com", ".a.com", "/a.com", "@a.com", "=a.com", "?a.com"})
        EXPECT_FALSE(mayStartHost(text, 1)) << text;
    EXPECT_TRUE(mayStartHost("\u8C22www.a.com", 3));
    EXPECT_FALSE(
        mayStartBareHost("\u8C22"
                         "a.com",
                         3));
    EXPECT_FALSE(mayStartBareHost("*a.com", 1));
    EXPECT_TRUE(mayStartBareHost(" a.com", 1));
}

TEST(Host, IsFollowedByWhatURLsHaveThere) {
    for (const char* const text : {"a.com/", "a.com?", "a.com#", "a.com:8"})
        EXPECT_TRUE(goesOnAfterHost(text, 5)) << text;
    for (const char* const text : {"a.com", "a.com:", "a.com,", "a.com x"})
        EXPECT_FALSE(goesOnAfterHost(text, 5)) << text;
    EXPECT_TRUE(mayPrecedeQuery("a.com?", 0, 5));
    EXPECT_TRUE(mayPrecedeQuery("a.pl/?", 0, 4));
    EXPECT_TRUE(mayPrecedeQuery("a.pl:80?", 0, 4));
    EXPECT_FALSE(mayPrecedeQuery("a.pl?", 0, 4));
    EXPECT_TRUE(startsURLWithoutScheme("www.a.com", 0));
    EXPECT_TRUE(startsURLWithoutScheme("a.com/x", 0));
    EXPECT_FALSE(startsURLWithoutScheme("a.com", 0));
    EXPECT_FALSE(startsURLWithoutScheme("www.a.com@b.com", 0));
}

TEST(Host, OfAURLIsBehindTheUserAndBeforeThePath) {
    EXPECT_EQ(hostOf("user:secret@a.test:80/x@y"), "a.test:80");
    EXPECT_EQ(hostOf("a.test?x"), "a.test");
    EXPECT_EQ(hostOf("a.test#x/y"), "a.test");
    EXPECT_EQ(hostOf("/x"), "");
}

}  // namespace
}  // namespace ravlin
