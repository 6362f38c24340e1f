#include "Updater/Version.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

Version version(const char* text) {
    return Version::parse(QString::fromUtf8(text)).value();
}

TEST(Version, ReadsOneToFourNumbers) {
    for (const char* const text : {"0", "1", "1.0", "1.10", "1.2.3", "1.2.3.4", "2.36", "01.002", "999999999"}) {
        const auto parsed = Version::parse(QString::fromUtf8(text));
        ASSERT_TRUE(parsed.has_value()) << text;
        EXPECT_EQ(parsed->text().toStdString(), text);
    }
}

TEST(Version, ReadsNothingElse) {
    for (const char* const text : {"", ".", "1.", ".1", "1..2", "1.2.3.4.5", "1000000000", "-1", "+1", "1.0-beta", "v1",
                                   " 1.0", "1.0 ", "1,0", "0x10", "1e3", "١.٢", "1.0\n"}) {
        EXPECT_FALSE(Version::parse(QString::fromUtf8(text)).has_value()) << text;
    }
}

TEST(Version, ComparesByNumbers) {
    EXPECT_LT(version("1.9"), version("1.10"));
    EXPECT_LT(version("1.0"), version("1.0.1"));
    EXPECT_LT(version("1.2.3"), version("1.2.3.1"));
    EXPECT_LT(version("0.9.9.9"), version("1"));
    EXPECT_LT(version("2.9"), version("2.36"));
    EXPECT_GT(version("999999999"), version("999999998.999999999"));
}

TEST(Version, MissingNumbersAndLeadingZerosCountForNothing) {
    EXPECT_EQ(version("1.1"), version("1.1.0"));
    EXPECT_EQ(version("1"), version("1.0.0.0"));
    EXPECT_EQ(version("1.01"), version("1.1"));
}

TEST(Version, IsShownAsItWasWritten) {
    EXPECT_EQ(version("1.1.0").text().toStdString(), "1.1.0");
}

}  // namespace
}  // namespace ravlin
