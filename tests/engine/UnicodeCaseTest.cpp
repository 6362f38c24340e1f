#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(CaseMapping, OfEveryCodePointIsTheFullMappingOfICU) {
    Oracle::forEveryScalar([](char32_t scalar, const std::string& bytes) {
        std::string title;
        Unicode::appendTitleCased(title, scalar);
        ASSERT_EQ(title, Oracle::titleCased(scalar)) << std::hex << static_cast<unsigned>(scalar);
        ASSERT_EQ(Unicode::upperCased(bytes), Oracle::upperCased(bytes)) << std::hex << static_cast<unsigned>(scalar);
        ASSERT_EQ(Unicode::lowerCased(bytes), Oracle::lowerCased(bytes)) << std::hex << static_cast<unsigned>(scalar);
    });
}

TEST(CaseMapping, OfRandomTextsIsThatOfICU) {
    tests::AlphabetTexts texts(tests::kTextAlphabet, 20);
    for (int i = 0; i < 300'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(Unicode::upperCased(text), Oracle::upperCased(text)) << testing::PrintToString(text);
        ASSERT_EQ(Unicode::lowerCased(text), Oracle::lowerCased(text)) << testing::PrintToString(text);
    }
}

TEST(CaseMapping, DecidesFinalSigmaByWhatStandsAround) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"ΟΔΟΣ", "οδος"},
        {"ΟΔΟΣ ΟΔΟΣ", "οδος οδος"},
        {"Σ", "σ"},
        {"ΑΣ.", "ας."},
        {"ΑΣ.Α", "ασ.α"},
        {"ΑΣ'", "ας'"},
        {"Α'Σ", "α'ς"},
        {"1Σ", "1σ"},
        {"ΑΣ\u0301", "ας\u0301"},
        {"ΑΣ1", "ας1"},
        {"ΣΑΣ", "σας"},
        {"aΣb", "aσb"},
    };
    for (const auto& [text, expected] : vectors) {
        EXPECT_EQ(Unicode::lowerCased(text), expected);
        EXPECT_EQ(Oracle::lowerCased(text), expected);
    }
}

TEST(CaseMapping, PieceByPieceIsTheSameAsAtOnce) {
    tests::AlphabetTexts texts(U"ΣΑσ'. a\u0301\u0130", 8);
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = texts.next();
        std::string pieces;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = at + Unicode::decode(text, at).byteSize;
            Unicode::appendLowerCased(pieces, text, at, end);
            at = end;
        }
        ASSERT_EQ(pieces, Unicode::lowerCased(text));
    }
}

TEST(CaseMapping, OfLongASCIITextsMissesNoByte) {
    std::string text;
    std::string lower;
    std::string upper;
    for (int i = 0; i < 20'000; ++i) {
        const char byte = static_cast<char>(i % 128);
        text += byte;
        lower += byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
        upper += byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 32) : byte;
    }
    EXPECT_EQ(Unicode::lowerCased(text), lower);
    EXPECT_EQ(Unicode::upperCased(text), upper);
}

TEST(CaseMapping, OfIllFormedTextsIsValid) {
    std::mt19937 random(8);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int i = 0; i < 20'000; ++i) {
        std::string text;
        for (int k = 0; k < 10; ++k) text += static_cast<char>(byte(random));
        EXPECT_TRUE(Unicode::isValidUTF8(Unicode::lowerCased(text)));
        EXPECT_TRUE(Unicode::isValidUTF8(Unicode::upperCased(text)));
    }
}

}  // namespace
}  // namespace ravlin
