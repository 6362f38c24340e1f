#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/oracles/Oracle.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <fstream>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

constexpr char32_t kLastScalar = 0x10FFFF;

bool isSurrogate(char32_t scalar) {
    return scalar >= 0xD800 && scalar <= 0xDFFF;
}

/// Every code point that a text can hold, passed to `check` with its UTF-8.
template <typename Check>
void forEveryScalar(Check check) {
    for (char32_t scalar = 0; scalar <= kLastScalar; ++scalar)
        if (!isSurrogate(scalar)) check(scalar, Oracle::utf8(scalar));
}

std::vector<std::string> charactersOf(std::string_view text) {
    std::vector<std::string> result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = Unicode::characterEnd(text, at);
        result.emplace_back(text.substr(at, end - at));
        at = end;
    }
    return result;
}

// --- UTF-8 -----------------------------------------------------------------------------------------------------------

TEST(UTF8, EveryCodePointIsWrittenAndReadBackFromBothEnds) {
    forEveryScalar([](char32_t scalar, const std::string& bytes) {
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

TEST(UTF8, ValidityHoldsWhereverTheFaultStands) {
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
    for (char32_t scalar = 0; scalar <= kLastScalar; ++scalar) {
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
        {"\xA0", "\xA0", "\xA0"},  // ill-formed, so no no-break space
    };
    for (const auto& vector : vectors) {
        EXPECT_EQ(Unicode::trimWhitespaces(vector.text), vector.trimmed);
        EXPECT_EQ(Unicode::trimWhitespacesAndNewlines(vector.text), vector.trimmedWithNewlines);
    }
}

// --- Characters ------------------------------------------------------------------------------------------------------

TEST(Characters, AreWhatUsersSeeAsOne) {
    const struct {
        std::string_view text;
        std::int64_t count;
    } vectors[] = {
        {"", 0},
        {"abc", 3},
        {"a\r\nb", 3},
        {"\r\r\n", 2},
        {"\n\r", 2},
        {"e\u0301", 1},
        {"\u0301", 1},
        {"\n\u0301", 2},
        {"🇫🇷🇩🇪", 2},
        {"🇫🇷🇩", 2},
        {"👩‍👩‍👧‍👦", 1},
        {"👍🏽", 1},
        {"1️⃣", 1},
        {"각", 1},
        {"각", 1},
        {"क्षि", 1},
        {"क्‍ष", 1},
        {"த்த", 2},  // no conjuncts in Tamil
        {"\u0600\u0661", 1},
        {"\u0600\n", 2},
    };
    for (const auto& vector : vectors) {
        EXPECT_EQ(Unicode::characterCount(vector.text), vector.count) << vector.text;
        EXPECT_EQ(charactersOf(vector.text), Oracle::characters(vector.text)) << vector.text;
    }
}

void expectSameCharactersAsICU(const std::string& text) {
    const std::vector<std::string> expected = Oracle::characters(text);
    ASSERT_EQ(Unicode::characterCount(text), static_cast<std::int64_t>(expected.size()))
        << testing::PrintToString(text);
    ASSERT_EQ(charactersOf(text), expected) << testing::PrintToString(text);

    std::size_t boundary = 0;
    auto character = expected.begin();
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const bool isStart = at == text.size() || (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80;
        if (isStart) {
            ASSERT_EQ(Unicode::isCharacterBoundary(text, at), at == boundary) << testing::PrintToString(text);
        }
        if (at == boundary && character != expected.end()) boundary += (character++)->size();
    }
}

TEST(Characters, AreThoseOfICUInRandomTexts) {
    Oracle::Texts texts(Oracle::kClusterAlphabet, 12);
    for (int i = 0; i < 600'000 && !testing::Test::HasFatalFailure(); ++i) expectSameCharactersAsICU(texts.next());
}

TEST(Characters, AreThoseOfICUWhateverTwoCodePointsMeet) {
    // Every code point before and after a representative of each class; the classes themselves come from ICU.
    const std::u32string representatives = U"a\n\u0301\u034f\u200d\u0903\u0600\u1100\u1161\u11a8\uac00\U0001f1e6";
    forEveryScalar([&](char32_t scalar, const std::string& bytes) {
        if (scalar >= 0x20000 && scalar < 0xE0000) return;  // ideographs and unassigned planes
        if (scalar > 0xE1000) return;                       // private use
        for (const char32_t representative : representatives) {
            const std::string other = Oracle::utf8(representative);
            const std::string text = other + bytes + other;
            ASSERT_EQ(Unicode::characterCount(text), static_cast<std::int64_t>(Oracle::characters(text).size()))
                << std::hex << static_cast<unsigned>(scalar) << " " << static_cast<unsigned>(representative);
        }
    });
}

TEST(Characters, AreCountedAlikeAcrossTheBlocksOfLongTexts) {
    Oracle::Texts texts(Oracle::kClusterAlphabet, 6);
    for (std::size_t length = 1000; length < 1060; ++length) {
        for (const std::string_view filler : {"x", "\r\n", "\r", "\n"}) {
            std::string text;
            while (text.size() < length) text += filler;
            text += texts.next();
            text += std::string(2000, 'y') + texts.next() + std::string(1500, '\n');
            ASSERT_EQ(Unicode::characterCount(text), static_cast<std::int64_t>(Oracle::characters(text).size()));
        }
    }
}

TEST(Characters, OfIllFormedTextsAreCountedWithoutHarm) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int i = 0; i < 50'000; ++i) {
        std::string text;
        for (int k = 0; k < 12; ++k) text += static_cast<char>(byte(random));
        ASSERT_EQ(Unicode::characterCount(text), static_cast<std::int64_t>(charactersOf(text).size()));
        ASSERT_EQ(Unicode::characterCount(text), static_cast<std::int64_t>(Oracle::characters(text).size()));
    }
}

TEST(Characters, PassTheBreakTestOfTheUnicodeCharacterDatabase) {
    std::ifstream file("/usr/share/unicode/auxiliary/GraphemeBreakTest.txt");
    if (!file) GTEST_SKIP() << "the package unicode-data is not installed";
    if (std::string_view(U_UNICODE_VERSION) != "15.0") GTEST_SKIP() << "the file is of another version than ICU";
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line.substr(0, line.find('#')));
        std::string text;
        std::int64_t count = -1;  // as many divisions as characters, and one before the first
        for (std::string field; fields >> field;) {
            if (field == "÷")
                ++count;
            else if (field != "×")
                Unicode::append(text, static_cast<char32_t>(std::stoul(field, nullptr, 16)));
        }
        if (text.empty()) continue;
        ++cases;
        EXPECT_EQ(Unicode::characterCount(text), count) << line;
    }
    EXPECT_GE(cases, 600);
}

TEST(Characters, BoundariesInLongRunsOfFlagsAreFoundByTheirParity) {
    std::string flags;
    for (int i = 0; i < 101; ++i) flags += "🇦";
    for (std::size_t i = 0; i < 101; ++i) EXPECT_EQ(Unicode::isCharacterBoundary(flags, 4 * i), i % 2 == 0);
}

// --- Case ------------------------------------------------------------------------------------------------------------

TEST(CaseMapping, OfEveryCodePointIsTheFullMappingOfICU) {
    forEveryScalar([](char32_t scalar, const std::string& bytes) {
        std::string title;
        Unicode::appendTitleCased(title, scalar);
        ASSERT_EQ(title, Oracle::titleCased(scalar)) << std::hex << static_cast<unsigned>(scalar);
        ASSERT_EQ(Unicode::upperCased(bytes), Oracle::upperCased(bytes)) << std::hex << static_cast<unsigned>(scalar);
        ASSERT_EQ(Unicode::lowerCased(bytes), Oracle::lowerCased(bytes)) << std::hex << static_cast<unsigned>(scalar);
    });
}

TEST(CaseMapping, OfRandomTextsIsThatOfICU) {
    Oracle::Texts texts(Oracle::kTextAlphabet, 20);
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
    Oracle::Texts texts(U"ΣΑσ'. a\u0301\u0130", 8);
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

// --- Normalisation ---------------------------------------------------------------------------------------------------

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
    Oracle::Texts texts(U"aeo\u0301\u0308\u0327\u0345\u0323é\u212b\u1100\u1161\u11a8\uac00\u0958\u093c\u0340\u037e", 8);
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
    Oracle::Texts runs(U"\u0301\u0316\u0345\u0323\u0f71\u0f72\u0f73\u0344\u0334\u093c\u3099\u20d0", 200);
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

// --- Pieces ----------------------------------------------------------------------------------------------------------

TEST(Pieces, AreRunsOfPlainCharactersAndSingleOthers) {
    Oracle::Texts texts(U"aaab1 \r\n\u0301\u0600é\u200d\U0001f468", 16);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        std::vector<std::string> characters;
        for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
            const Unicode::Piece piece = pieces.next();
            ASSERT_FALSE(piece.text.empty());
            if (piece.isPlain)
                for (const char byte : piece.text) characters.emplace_back(1, byte);
            else
                characters.emplace_back(piece.text);
        }
        ASSERT_EQ(characters, Oracle::characters(text)) << testing::PrintToString(text);
    }
}

TEST(IndependentParts, AreMappedAndCutApartLikeTheWhole) {
    Oracle::Texts texts(U"aΣσ'.1 \r\n\u0301\u0600é中\u200d\U0001f468\u0130\u24c2\u0915\u094d", 12);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        for (std::size_t from = 0; from < text.size(); from += Unicode::decode(text, from).byteSize) {
            const std::size_t end = Unicode::independentPartEnd(text, from);
            ASSERT_GE(end, from);
            const std::string first = text.substr(0, end);
            const std::string second = text.substr(end);
            ASSERT_EQ(Oracle::lowerCased(first) + Oracle::lowerCased(second), Oracle::lowerCased(text));
            std::vector<std::string> characters = Oracle::characters(first);
            for (const std::string& character : Oracle::characters(second)) characters.push_back(character);
            ASSERT_EQ(characters, Oracle::characters(text)) << testing::PrintToString(text);
        }
    }
    EXPECT_EQ(Unicode::independentPartEnd("ab cd", 1), 3U);
    EXPECT_EQ(Unicode::independentPartEnd("中文字", 3), 3U);
    EXPECT_EQ(Unicode::independentPartEnd("abcd", 1), 4U);
}

}  // namespace
}  // namespace ravlin
