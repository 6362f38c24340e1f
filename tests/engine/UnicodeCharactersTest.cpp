#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <unicode/uchar.h>

#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

std::vector<std::string> charactersOf(std::string_view text) {
    std::vector<std::string> result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = Unicode::characterEnd(text, at);
        result.emplace_back(text.substr(at, end - at));
        at = end;
    }
    return result;
}

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
    tests::AlphabetTexts texts(tests::kClusterAlphabet, 12);
    for (int i = 0; i < 600'000 && !testing::Test::HasFatalFailure(); ++i) expectSameCharactersAsICU(texts.next());
}

TEST(Characters, AreThoseOfICUWhateverTwoCodePointsMeet) {
    // Every code point before and after a representative of each class; the classes themselves come from ICU.
    const std::u32string representatives = U"a\n\u0301\u034f\u200d\u0903\u0600\u1100\u1161\u11a8\uac00\U0001f1e6";
    Oracle::forEveryScalar([&](char32_t scalar, const std::string& bytes) {
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
    tests::AlphabetTexts texts(tests::kClusterAlphabet, 6);
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

TEST(Pieces, AreRunsOfPlainCharactersAndSingleOthers) {
    tests::AlphabetTexts texts(U"aaab1 \r\n\u0301\u0600é\u200d\U0001f468", 16);
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
    tests::AlphabetTexts texts(U"aΣσ'.1 \r\n\u0301\u0600é中\u200d\U0001f468\u0130\u24c2\u0915\u094d", 12);
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
