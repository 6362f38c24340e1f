#include "Engine/Support/PercentEncoding.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(PercentEncoding, KeepsUnreservedCharacters) {
    EXPECT_EQ(PercentEncoding::encode("a b/~"), "a%20b%2F~");
    EXPECT_EQ(PercentEncoding::encode("AZaz09-_.~"), "AZaz09-_.~");
    EXPECT_EQ(PercentEncoding::encode("\u00E9+%"), "%C3%A9%2B%25");
}

TEST(PercentEncoding, IsDecodedInEitherCaseAndWithPluses) {
    EXPECT_EQ(PercentEncoding::decode("a+b%20c"), "a b c");
    EXPECT_EQ(PercentEncoding::decode("%c3%A9"), "\u00E9");
    EXPECT_EQ(PercentEncoding::decode("+\u0301"), "+\u0301");  // not a plus but one with an accent
    EXPECT_EQ(PercentEncoding::decode("%25%32%35"), "%25");
    EXPECT_EQ(PercentEncoding::decode(""), "");
}

TEST(PercentEncoding, FailsWhereAnEscapeIsBrokenOrNoTextResults) {
    for (const char* const broken : {"%", "100%", "%4", "%4g", "%g4", "a%%20", "%E9", "%C0%AF", "%ED%A0%80", "\xFF"})
        EXPECT_EQ(PercentEncoding::decode(broken), std::nullopt) << broken;
}

}  // namespace
}  // namespace ravlin
