#include "Engine/Support/Unicode.h"
#include "Engine/TextTransforms.h"
#include "tests/engine/Oracle.h"
#include "tests/engine/Sanitizers.h"

#include <unicode/uloc.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <set>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

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

// The allocator of AddressSanitizer ends the process instead of throwing.
#ifndef RAVLIN_ADDRESS_SANITIZER
TEST(DispatcherDeathTest, GivesTheTextBackWhereTheResultDoesNotFitInMemory) {
    const auto transformInLittleMemory = [] {
        constexpr rlim_t kMegabyte = 1U << 20U;
        const std::string text(100 * kMegabyte, ' ');
        // Room for the text a second time, but not for three bytes for every one of it.
        std::ifstream statm("/proc/self/statm");
        rlim_t pages = 0;
        statm >> pages;
        const rlim_t size = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + 150 * kMegabyte;
        const rlimit limit = {.rlim_cur = size, .rlim_max = size};
        setrlimit(RLIMIT_AS, &limit);
        const std::string result = TextTransforms::apply(TextTransform::urlEncode, text);
        std::exit(result == text ? 0 : 1);
    };
    EXPECT_EXIT(transformInLittleMemory(), testing::ExitedWithCode(0), "");
}
#endif

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

TEST_P(EveryTransform, TakesHostileTextsInItsStride) {
    const auto repeated = [](std::string_view piece) {
        constexpr std::size_t kSize = 200'000;  // bytes
        std::string text;
        while (text.size() < kSize) text += piece;
        return text;
    };
    const std::string texts[] = {
        repeated("x"),
        repeated("\n"),
        repeated("\r\n"),
        repeated(" "),
        repeated("\u0301"),
        repeated("\u0316\u0301") + "\n" + repeated("\u0301\u0316"),
        repeated("\u0f71") + "\na" + repeated("\u0f71"),
        repeated("\u0f73\u0344\u0316\n"),
        repeated("\U0001f1e6"),
        repeated("\U0001f468\u200d"),
        repeated("\u0915\u094d"),
        repeated("\u0600"),
        repeated("\u1100\u1161"),
        repeated("\u03a3'"),
        repeated("aBCd1E"),
        repeated("'\"-. +%&<\u2014.\u0301"),
        repeated("same again and again ") + "a\n" + repeated("same again and again "),
    };
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& text : texts) TextTransforms::apply(GetParam(), text);
    // Anything but linear takes minutes. Sanitizers and a busy machine do not.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryTransform,
                         testing::ValuesIn(TextTransform::allCases().begin(), TextTransform::allCases().end()),
                         [](const auto& row) { return std::string(row.param.rawValue()); });

// Two that look as if they belonged here do not. constantCase: a letter may have no upper case in one code point, and
// then starts a word the next time, as in "1\u01F0". slugify: a vowel sign that stood alone joins the "-" before it.
TEST(Idempotence, OfTransformsThatCleanOrOrder) {
    const TextTransform transforms[] = {
        TextTransform::stripFormatting,  TextTransform::upperCase,           TextTransform::lowerCase,
        TextTransform::tabsToSpaces,     TextTransform::normalizeDashes,     TextTransform::capitalizeWords,
        TextTransform::sortLinesAsc,     TextTransform::sortLinesDesc,       TextTransform::trimEachLine,
        TextTransform::removeEmptyLines, TextTransform::joinLines,           TextTransform::straightenQuotes,
        TextTransform::removeAllSpaces,  TextTransform::removeDuplicateLines};
    Oracle::Texts texts(Oracle::kTextAlphabet, 30);
    for (int i = 0; i < 3'000; ++i) {
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
        for (const TextTransform transform :
             {TextTransform::reverseLines, TextTransform::reverseCharacters, TextTransform::shuffleLines,
              TextTransform::sortLinesAsc, TextTransform::sortLinesDesc})
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

// Turkish has an "i" with and one without a dot, Lithuanian keeps the dot below an accent, Dutch capitalises "ij".
TEST(Language, OfTheUserMattersInSortingOnly) {
    constexpr std::string_view kText = "I\u0307 i \u0131 \u0130 I\u0300 ij title TITLE https://a.test/?GCLID=1&ID=2";
    UErrorCode status = U_ZERO_ERROR;
    const std::string before = uloc_getDefault();
    for (const TextTransform transform : TextTransform::allCases()) {
        if (transform == TextTransform::sortLinesAsc || transform == TextTransform::sortLinesDesc) continue;
        uloc_setDefault("en_US", &status);
        const std::string expected = transform.apply(kText);
        for (const char* const language : {"tr_TR", "lt_LT", "nl_NL", "de_DE", "el_GR"}) {
            uloc_setDefault(language, &status);
            EXPECT_EQ(transform.apply(kText), expected) << transform.rawValue() << " in " << language;
        }
    }
    uloc_setDefault(before.c_str(), &status);
}

TEST(EmptyText, StaysEmptyButForItsMark) {
    for (const TextTransform transform : TextTransform::allCases()) {
        const TransformCategory category = transform.category();
        const bool isCaseLineOrSpacing = category == TransformCategory::caseGroup ||
                                         category == TransformCategory::lines || category == TransformCategory::spacing;
        if (!isCaseLineOrSpacing || transform == TextTransform::quoteLines) continue;
        EXPECT_EQ(transform.apply(""), "") << transform.rawValue();
    }
    for (const TextTransform transform :
         {TextTransform::stripFormatting, TextTransform::base64Encode, TextTransform::urlEncode,
          TextTransform::urlDecode, TextTransform::htmlEntitiesEncode})
        EXPECT_EQ(transform.apply(""), "") << transform.rawValue();
    EXPECT_EQ(TextTransform(TextTransform::quoteLines).apply(""), ">");
}

}  // namespace
}  // namespace ravlin
