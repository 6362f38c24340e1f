#include "Engine/Support/Unicode.h"
#include "Engine/TextTransforms.h"
#include "tests/engine/Oracle.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

std::string sorted(std::string text) {
    std::sort(text.begin(), text.end());
    return text;
}

TEST(Dispatcher, ATransformAppliesItself) {
    EXPECT_EQ(TextTransform(TextTransform::upperCase).apply("ß"), "SS");
    EXPECT_EQ(TextTransforms::apply(TextTransform::upperCase, "ß"), "SS");
}

TEST(Dispatcher, MapsTheCaseOfTheWholeText) {
    EXPECT_EQ(TextTransforms::apply(TextTransform::upperCase, "Straße ŉ ﬃ"), "STRASSE ʼN FFI");
    EXPECT_EQ(TextTransforms::apply(TextTransform::lowerCase, "ΟΔΟΣ İI"), "οδος i̇i");
}

TEST(Dispatcher, DoesNotTouchTheTextAroundATransform) {
    EXPECT_EQ(TextTransforms::apply(TextTransform::upperCase, " \r\na\n\n"), " \r\nA\n\n");
}

/// What holds for every transform and every text, well-formed or not.
class EveryTransform : public testing::TestWithParam<TextTransform> {};

TEST_P(EveryTransform, TurnsValidTextIntoValidTextAndAlwaysTheSame) {
    Oracle::Texts texts(Oracle::kTextAlphabet, 40);
    for (int i = 0; i < 1'500; ++i) {
        const std::string text = texts.next();
        const std::string result = TextTransforms::apply(GetParam(), text);
        ASSERT_TRUE(Unicode::isValidUTF8(result)) << testing::PrintToString(text);
        ASSERT_EQ(TextTransforms::apply(GetParam(), text), result) << testing::PrintToString(text);
    }
}

TEST_P(EveryTransform, SurvivesBytesThatAreNoText) {
    std::mt19937 random(3);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int i = 0; i < 500; ++i) {
        std::string text;
        for (int k = 0; k < 30; ++k) text += static_cast<char>(byte(random));
        TextTransforms::apply(GetParam(), text);
    }
    for (const std::string_view end : {"\xC3", "\xE2\x82", "\xF0\x9F\x98", "\x80", "\r", "'\xE2"})
        TextTransforms::apply(GetParam(), "abc " + std::string(end));
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryTransform,
                         testing::ValuesIn(TextTransform::allCases().begin(), TextTransform::allCases().end()),
                         [](const auto& row) { return std::string(row.param.rawValue()); });

TEST(Idempotence, OfTransformsThatClean) {
    const TextTransform transforms[] = {TextTransform::stripFormatting, TextTransform::upperCase,
                                        TextTransform::lowerCase, TextTransform::tabsToSpaces,
                                        TextTransform::normalizeDashes};
    Oracle::Texts texts(Oracle::kTextAlphabet, 30);
    for (int i = 0; i < 5'000; ++i) {
        const std::string text = texts.next();
        for (const TextTransform transform : transforms) {
            const std::string once = transform.apply(text);
            ASSERT_EQ(transform.apply(once), once) << transform.rawValue() << testing::PrintToString(text);
        }
    }
}

TEST(Permutation, OfTransformsThatOnlyMoveThings) {
    Oracle::Texts texts(Oracle::kTextAlphabet, 30);
    for (int i = 0; i < 5'000; ++i) {
        const std::string text = texts.next();
        for (const TextTransform transform : {TextTransform::reverseLines, TextTransform::reverseCharacters})
            ASSERT_EQ(sorted(transform.apply(text)), sorted(text)) << testing::PrintToString(text);
    }
}

TEST(RoundTrip, OfLineOrderAndPercentEscapes) {
    Oracle::Texts texts(Oracle::kTextAlphabet, 30);
    for (int i = 0; i < 5'000; ++i) {
        const std::string text = texts.next();
        const auto apply = [](TextTransform transform, const std::string& to) { return transform.apply(to); };
        ASSERT_EQ(apply(TextTransform::reverseLines, apply(TextTransform::reverseLines, text)), text);
        ASSERT_EQ(apply(TextTransform::urlDecode, apply(TextTransform::urlEncode, text)), text);
    }
}

TEST(EmptyText, StaysEmpty) {
    for (const TextTransform transform :
         {TextTransform::stripFormatting, TextTransform::upperCase, TextTransform::lowerCase, TextTransform::titleCase,
          TextTransform::reverseLines, TextTransform::tabsToSpaces, TextTransform::normalizeDashes,
          TextTransform::reverseCharacters, TextTransform::base64Encode, TextTransform::urlEncode,
          TextTransform::urlDecode, TextTransform::htmlEntitiesEncode})
        EXPECT_EQ(transform.apply(""), "") << transform.rawValue();
}

}  // namespace
}  // namespace ravlin
