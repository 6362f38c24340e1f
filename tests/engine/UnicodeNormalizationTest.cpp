#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(Normalisation, ComposesAndIsIdempotent) {
    EXPECT_EQ(Unicode::nfc("e\u0301"), "é");
    EXPECT_EQ(Unicode::nfc("\u212b"), "\u00c5");
    EXPECT_EQ(Unicode::nfc("ﬁ"), "ﬁ");
    EXPECT_EQ(Unicode::nfc(""), "");
    EXPECT_TRUE(Unicode::isNFC("é"));
    EXPECT_FALSE(Unicode::isNFC("e\u0301"));
}

TEST(Normalisation, OfRandomTextsIsThatOfICU) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const icuNFC = icu::Normalizer2::getNFCInstance(status);
    tests::AlphabetTexts texts(
        U"aeo\u0301\u0308\u0327\u0345\u0323é\u212b\u1100\u1161\u11a8\uac00\u0958\u093c\u0340\u037e", 8);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        std::string expected;
        icuNFC->normalize(icu::UnicodeString::fromUTF8(text), status).toUTF8String(expected);
        ASSERT_EQ(Unicode::nfc(text), expected);
        ASSERT_EQ(Unicode::isNFC(text), text == expected);
    }
}

TEST(Normalisation, OfLongRunsOfMarksIsThatOfICUToo) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const icuNFC = icu::Normalizer2::getNFCInstance(status);
    tests::AlphabetTexts runs(U"\u0301\u0316\u0345\u0323\u0f71\u0f72\u0f73\u0344\u0334\u093c\u3099\u20d0", 200);
    for (int i = 0; i < 2'000; ++i) {
        const std::string text = "aé" + runs.next() + "b\u3099か" + runs.next();
        std::string expected;
        icuNFC->normalize(icu::UnicodeString::fromUTF8(text), status).toUTF8String(expected);
        ASSERT_EQ(Unicode::nfc(text), expected);
        ASSERT_EQ(Unicode::isNFC(text), text == expected);
        ASSERT_TRUE(Unicode::isNFC(expected));
    }
}

TEST(Normalisation, CutsRunsOfMarksOnRequest) {
    std::string marks;
    for (int i = 0; i < 64; ++i) marks += "\u0301";
    EXPECT_FALSE(Unicode::hasLongMarkRun("a" + marks + "b" + marks));
    EXPECT_TRUE(Unicode::hasLongMarkRun("a" + marks + "\u0316"));
    EXPECT_EQ(Unicode::withShortMarkRuns("a" + marks + "\u0316b" + marks), "a" + marks + "b" + marks);
}

TEST(Decomposition, StartsWithTheBaseCharacter) {
    const std::pair<char32_t, char32_t> vectors[] = {
        {U'a', U'a'},      {U'\0', U'\0'},         {U'é', U'e'},   {U'\u1ec7', U'e'},
        {U'\u212b', U'A'}, {U'\u2260', U'='},      {U'ß', U'ß'},   {U'ø', U'ø'},
        {U'\u037e', U';'}, {U'\uac01', U'\u1100'}, {U'が', U'か'}, {U'\U0002f800', U'\u4e3d'},
    };
    for (const auto& [scalar, expected] : vectors) EXPECT_EQ(Unicode::decompositionStart(scalar), expected);
}

}  // namespace
}  // namespace ravlin
