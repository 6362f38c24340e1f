#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/oracles/Oracle.h"

#include <ios>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

// --- UTF-8 -----------------------------------------------------------------------------------------------------------

TEST(UTF8, EveryCodePointIsWrittenAndReadBackFromBothEnds) {
    Oracle::forEveryScalar([](char32_t scalar, const std::string& bytes) {
        std::string written;
        Unicode::append(written, scalar);
        ASSERT_EQ(written, bytes) << std::hex << static_cast<unsigned>(scalar);
        ASSERT_TRUE(Unicode::isValidUTF8(bytes));
        for (const Unicode::Scalar read : {Unicode::decode(bytes, 0), Unicode::decodeBefore(bytes, bytes.size())}) {
            ASSERT_EQ(read.value, scalar);
            ASSERT_EQ(read.byteSize, bytes.size());
            ASSERT_TRUE(read.isWellFormed);
        }
    });
}

TEST(UTF8, IllFormedSequencesAreOneReplacementCharacterPerLongestBeginning) {
    const struct {
        std::string_view bytes;
        std::vector<int> sizes;  // of the pieces, in bytes
    } vectors[] = {
        {"\x80", {1}},
        {"\xC0\xAF", {1, 1}},                // overlong
        {"\xE0\x80\xAF", {1, 1, 1}},         // overlong
        {"\xF0\x80\x80\xAF", {1, 1, 1, 1}},  // overlong
        {"\xED\xA0\x80", {1, 1, 1}},         // a surrogate
        {"\xF4\x90\x80\x80", {1, 1, 1, 1}},  // above U+10FFFF
        {"\xF5\x80", {1, 1}},
        {"\xFF\xFE", {1, 1}},
        {"\xC3", {1}},  // cut off
        {"\xE2\x82", {2}},
        {"\xF0\x9F\x98", {3}},
        {"\xF0\x9F\x98\x61", {3, 1}},
        {"\xE2\x82\xE2\x82\xAC", {2, 3}},
    };
    for (const auto& vector : vectors) {
        EXPECT_FALSE(Unicode::isValidUTF8(vector.bytes));
        std::vector<int> sizes;
        for (std::size_t at = 0; at < vector.bytes.size(); at += static_cast<std::size_t>(sizes.back()))
            sizes.push_back(Unicode::decode(vector.bytes, at).byteSize);
        EXPECT_EQ(sizes, vector.sizes) << testing::PrintToString(vector.bytes);
    }
}

TEST(UTF8, FaultsAreFoundWhereverTheyAre) {
    for (std::size_t position = 0; position < 40; ++position) {
        std::string text(40, 'x');
        EXPECT_TRUE(Unicode::isValidUTF8(text));
        text[position] = '\xC3';
        EXPECT_FALSE(Unicode::isValidUTF8(text)) << position;
    }
    EXPECT_TRUE(Unicode::isValidUTF8(""));
    EXPECT_TRUE(Unicode::isValidUTF8(std::string_view("\0", 1)));
}

TEST(UTF8, RunsOfASCIIEndAtTheFirstOtherByte) {
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string run(length, 'x');
        for (std::size_t from = 0; from <= length; ++from) {
            EXPECT_EQ(Unicode::asciiRunEnd(run, from), length);
            EXPECT_EQ(Unicode::asciiRunEnd(run + "é and more", from), length);
        }
    }
}

// --- Properties ------------------------------------------------------------------------------------------------------

TEST(UnicodeProperties, WhitespacesAreSpaceSeparatorsAndTheTab) {
    std::u32string whitespaces;
    std::u32string withNewlines;
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (Unicode::isWhitespace(scalar)) whitespaces += scalar;
        if (Unicode::isWhitespaceOrNewline(scalar)) withNewlines += scalar;
    }
    EXPECT_EQ(whitespaces,
              U"\t \u00a0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200a\u202f\u205f\u3000");
    EXPECT_EQ(withNewlines,
              U"\t\n\v\f\r \u0085\u00a0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200a"
              U"\u2028\u2029\u202f\u205f\u3000");
}

TEST(UnicodeProperties, LettersNumbersAndCasesOfCharactersThatOftenGoWrong) {
    const struct {
        char32_t scalar;
        bool letter, number, upper, lower, cased;
    } vectors[] = {
        {U'a', true, false, false, true, true},
        {U'A', true, false, true, false, true},
        {U'1', false, true, false, false, false},
        {U'_', false, false, false, false, false},
        {U'\u00bd', false, true, false, false, false},    // one half
        {U'\u2167', true, true, true, false, true},       // roman numeral eight
        {U'\u4e00', true, true, false, false, false},     // the ideograph for one
        {U'\u01c5', true, false, false, false, true},     // title-case digraph
        {U'\u00aa', true, false, false, true, true},      // feminine ordinal
        {U'\u02b0', true, false, false, true, true},      // modifier letter
        {U'\U0001d400', true, false, true, false, true},  // mathematical bold A
        {U'\u093e', true, false, false, false, false},    // vowel sign: alphabetic mark
        {U'\u0301', false, false, false, false, false},
        {U'\uff14', false, true, false, false, false},  // full-width four
    };
    for (const auto& vector : vectors) {
        SCOPED_TRACE(static_cast<unsigned>(vector.scalar));
        EXPECT_EQ(Unicode::isLetter(vector.scalar), vector.letter);
        EXPECT_EQ(Unicode::isNumber(vector.scalar), vector.number);
        EXPECT_EQ(Unicode::isUppercase(vector.scalar), vector.upper);
        EXPECT_EQ(Unicode::isLowercase(vector.scalar), vector.lower);
        EXPECT_EQ(Unicode::isCased(vector.scalar), vector.cased);
    }
}

TEST(UnicodeProperties, WordCharactersAreThoseOfARegularExpression) {
    for (const char32_t scalar : std::u32string(U"aZ9_é\u0301\u203f\u200c\u200d\u0663中"))
        EXPECT_TRUE(Unicode::isWordCharacter(scalar)) << static_cast<unsigned>(scalar);
    for (const char32_t scalar : std::u32string(U" -'\u00b2\u00a0\u200b\u2019\U0001f600"))
        EXPECT_FALSE(Unicode::isWordCharacter(scalar)) << static_cast<unsigned>(scalar);
    EXPECT_TRUE(Unicode::isDecimalDigit(U'\u0663'));
    EXPECT_FALSE(Unicode::isDecimalDigit(U'\u00b2'));
}

TEST(UnicodeProperties, TrimmingLooksAtCodePoints) {
    const struct {
        std::string_view text, trimmed, trimmedWithNewlines;
    } vectors[] = {
        {"", "", ""},
        {"a", "a", "a"},
        {" \t a b\u00a0\u3000", "a b", "a b"},
        {"\n a \r", "\n a \r", "a"},
        {"\u2028a\u0085", "\u2028a\u0085", "a"},
        {"\u200ba\ufeff", "\u200ba\ufeff", "\u200ba\ufeff"},
        {" \u0301x", "\u0301x", "\u0301x"},
        {"   ", "", ""},
        {"\xA0", "\xA0", "\xA0"},  // ill-formed, so not a no-break space
    };
    for (const auto& vector : vectors) {
        EXPECT_EQ(Unicode::trimWhitespaces(vector.text), vector.trimmed);
        EXPECT_EQ(Unicode::trimWhitespacesAndNewlines(vector.text), vector.trimmedWithNewlines);
    }
}

}  // namespace
}  // namespace ravlin
