#include "Engine/Support/Links/LinkEnd.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Links::goesOn;
using Links::trimmedEnd;

TEST(LinkEnd, IsBeforeThePunctuationOfTheSentence) {
    constexpr std::string_view kLink = "a.test/x";
    for (const std::string_view tail :
         {"", ".", ",", ";", ":", "!", "?", "|", "...", "?!", "\u2019", "\u2013", "&gt;", "&quot;,", "';", "'"}) {
        const std::string text = std::string(kLink) + std::string(tail);
        EXPECT_EQ(trimmedEnd(text, 0, text.size()), kLink.size()) << text;
    }
    for (const std::string_view text : {"a.test/", "a.test/-", "a.test/*", "a.test/_", "a.test/='x'", "a.test/%"})
        EXPECT_EQ(trimmedEnd(text, 0, text.size()), text.size()) << text;
}

TEST(LinkEnd, IsBeforeTheMarkThatStandsBeforeTheLink) {
    EXPECT_EQ(trimmedEnd("*a.test*", 1, 8), 7U);
    EXPECT_EQ(trimmedEnd("**a.test**", 2, 10), 8U);
    EXPECT_EQ(trimmedEnd("_a.test*", 1, 8), 8U);
}

TEST(LinkEnd, IsNotBeforeTheLink) {
    EXPECT_EQ(trimmedEnd("...", 0, 3), 0U);
    EXPECT_EQ(trimmedEnd("x...", 1, 4), 1U);
}

TEST(LinkEnd, MayBeFollowedByAPartOfTheLink) {
    const auto follows = [](std::string_view link, std::string_view rest) {
        return goesOn(std::string(link) + std::string(rest), 0, link.size());
    };
    EXPECT_TRUE(follows("?a=1", "\\u0026b=2"));
    EXPECT_TRUE(follows("?a=1", "\\\\u0026b=2"));
    EXPECT_TRUE(follows("?a=1", "\\x26b=2"));
    EXPECT_TRUE(follows("?a=1", "\\&b"));
    EXPECT_TRUE(follows("?a=", "{{ a }}"));
    EXPECT_TRUE(follows("?a=", "<name>"));
    EXPECT_TRUE(follows("?a=", "..."));
    EXPECT_TRUE(follows("?a=", "\u2026"));
    EXPECT_TRUE(follows("?a=$", "(id)"));
    EXPECT_FALSE(follows("?a=1", "\\n"));
    EXPECT_FALSE(follows("?a=1", "\\"));
    EXPECT_FALSE(follows("?a=1", "\\u002"));
    EXPECT_FALSE(follows("?a=1", "\\u0022"));
    EXPECT_FALSE(follows("?a=1", "\\xg0"));
    EXPECT_FALSE(follows("?a=1", "\\'"));
    EXPECT_FALSE(follows("?a=1", "..."));
    EXPECT_FALSE(follows("?a=1", "<name>"));
    EXPECT_FALSE(follows("?a=", "</a>"));
    EXPECT_FALSE(follows("?a=", "<br>"));
    EXPECT_TRUE(follows("?a=", "<break>"));
    EXPECT_FALSE(follows("?a==", "..."));  // the padding of a value
    EXPECT_FALSE(follows("?a=1", ""));
}

}  // namespace
}  // namespace ravlin
