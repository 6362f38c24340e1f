#include "Engine/Support/Links/LinkCharacters.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Links::isBoundary;
using Links::mayFollowWithoutSpace;
using Links::webSchemeSize;

TEST(LinkCharacters, NoLinkGoesOnOverBoundaries) {
    for (const char32_t boundary :
         U" \n\t<>\"`\\\u00A0\u3000\u200B\uFEFF\u00AB\u00BB\u2014\u201C\u201E\u2026\u203A"
         U"\u3001\u3002\u300C\u3011\u3015\u30FB\uFF01\uFF0C\uFF1F\uFF5D\uFF65\uFFFC\uFFFD")
        EXPECT_TRUE(isBoundary(boundary)) << std::hex << static_cast<unsigned>(boundary);
    for (const char32_t other : std::u32string_view(U"a0-._~:/?#[]@!$&'()*+,;=%|{}^\u00E9\u8C22\u2013\u2019\u200C\u200D"
                                                    U"\u0301\U0001F600"))
        EXPECT_FALSE(isBoundary(other)) << std::hex << static_cast<unsigned>(other);
}

TEST(LinkCharacters, TextWithoutSpacesMayFollowAtOnce) {
    for (const char32_t scalar : std::u32string_view(U"\u8C22\u3067\uC5D0\u2192\U0001F600"))
        EXPECT_TRUE(mayFollowWithoutSpace(scalar)) << std::hex << static_cast<unsigned>(scalar);
    for (const char32_t scalar : std::u32string_view(U"\u00E9\u0439\u0301\u200D"))
        EXPECT_FALSE(mayFollowWithoutSpace(scalar)) << std::hex << static_cast<unsigned>(scalar);
}

TEST(LinkCharacters, SchemesOfTheWebEndBeforeTheirColon) {
    EXPECT_EQ(webSchemeSize("http://", 0, 4), 4U);
    EXPECT_EQ(webSchemeSize("HTTPS://", 0, 5), 5U);
    EXPECT_EQ(webSchemeSize("xhttp://", 1, 5), 4U);
    EXPECT_EQ(webSchemeSize("http://", 1, 4), 0U);
    EXPECT_EQ(webSchemeSize("ftp://", 0, 3), 0U);
    EXPECT_EQ(webSchemeSize("://", 0, 0), 0U);
}

}  // namespace
}  // namespace ravlin
