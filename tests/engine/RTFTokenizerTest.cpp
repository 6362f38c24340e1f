#include "Engine/Support/RichText/RTFTokenizer.h"

#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::ElementsAreArray;

/// A token on one line: "{", "}", "bytes a", "word b", "word b 1", "symbol ~".
std::string described(const RTFToken& token) {
    const std::string text(token.text);
    switch (token.kind) {
        case RTFToken::Kind::end: return "end";
        case RTFToken::Kind::groupStart: return "{";
        case RTFToken::Kind::groupEnd: return "}";
        case RTFToken::Kind::bytes: return "bytes " + text;
        case RTFToken::Kind::word: return "word " + text + (token.hasNumber ? " " + std::to_string(token.number) : "");
        case RTFToken::Kind::symbol: return "symbol " + text;
    }
    return "none";
}

std::vector<std::string> tokensOf(std::string_view rtf) {
    std::vector<std::string> tokens;
    RTFTokenizer tokenizer(rtf);
    for (RTFToken token = tokenizer.next(); token.kind != RTFToken::Kind::end; token = tokenizer.next())
        tokens.push_back(described(token));
    return tokens;
}

TEST(RTFTokenizer, CutsADocumentIntoItsTokens) {
    EXPECT_THAT(tokensOf("{\\rtf1\\ansi{\\b Hi}\\par \\~x\\'e9}"),
                ElementsAre("{", "word rtf 1", "word ansi", "{", "word b", "bytes Hi", "}", "word par", "symbol ~",
                            "bytes x", "bytes \xE9", "}"));
}

TEST(RTFTokenizer, EndsAgainAndAgain) {
    for (const char* const rtf : {"", "a", "\\", "\\'", "\\'4", "\\b", "\\b-", "{", "\r\n"}) {
        RTFTokenizer tokenizer(rtf);
        for (std::size_t i = 0; i <= std::string_view(rtf).size(); ++i) tokenizer.next();
        for (int i = 0; i < 3; ++i) EXPECT_EQ(tokenizer.next().kind, RTFToken::Kind::end) << rtf;
    }
}

TEST(RTFTokenizer, LeavesLineEndsAndNULsOut) {
    EXPECT_THAT(tokensOf("\r\na\nb\0c\r"s), ElementsAre("bytes a", "bytes b", "bytes c"));
    EXPECT_THAT(tokensOf("{\n}\0"s), ElementsAre("{", "}"));
}

TEST(RTFTokenizer, WordsTakeTheirNumberAndOneSpaceWithThem) {
    EXPECT_THAT(tokensOf("\\b a"), ElementsAre("word b", "bytes a"));
    EXPECT_THAT(tokensOf("\\b  a"), ElementsAre("word b", "bytes  a"));
    EXPECT_THAT(tokensOf("\\b0a"), ElementsAre("word b 0", "bytes a"));
    EXPECT_THAT(tokensOf("\\li-12 a"), ElementsAre("word li -12", "bytes a"));
    EXPECT_THAT(tokensOf("\\b-a"), ElementsAre("word b", "bytes -a"));
    EXPECT_THAT(tokensOf("\\b\na"), ElementsAre("word b", "bytes a"));
    EXPECT_THAT(tokensOf("\\Bb1C"), ElementsAre("word Bb 1", "bytes C"));
    EXPECT_THAT(tokensOf("\\b\\i"), ElementsAre("word b", "word i"));
}

TEST(RTFTokenizer, NumbersTooLargeForTheirTypeAreTheLargest) {
    const std::string largest = std::to_string(std::numeric_limits<int>::max());
    EXPECT_THAT(tokensOf("\\u2147483647"), ElementsAre("word u " + largest));
    EXPECT_THAT(tokensOf("\\u2147483648"), ElementsAre("word u " + largest));
    EXPECT_THAT(tokensOf("\\u" + std::string(1000, '9')), ElementsAre("word u " + largest));
    EXPECT_THAT(tokensOf("\\u-" + std::string(1000, '9')), ElementsAre("word u -" + largest));
}

TEST(RTFTokenizer, SymbolsAreOneCharacterThatIsNoLetter) {
    EXPECT_THAT(tokensOf("\\~\\-\\_\\*\\|"), ElementsAre("symbol ~", "symbol -", "symbol _", "symbol *", "symbol |"));
    EXPECT_THAT(tokensOf("\\\\\\{\\}"), ElementsAre("bytes \\", "bytes {", "bytes }"));
    EXPECT_THAT(tokensOf("\\\na\\\r"), ElementsAre("symbol \n", "bytes a", "symbol \r"));
    EXPECT_THAT(tokensOf("\\1a"), ElementsAre("symbol 1", "bytes a"));
}

TEST(RTFTokenizer, HexadecimalBytesInARowAreOneToken) {
    EXPECT_THAT(tokensOf("\\'e9\\'E8\\'41"), ElementsAre("bytes \xE9\xE8\x41"));
    EXPECT_THAT(tokensOf("\\'e9 \\'e8"), ElementsAre("bytes \xE9", "bytes  ", "bytes \xE8"));
    for (const std::size_t count : {63U, 64U, 65U, 200U}) {
        std::string rtf;
        for (std::size_t i = 0; i < count; ++i) rtf += "\\'41";
        std::string bytes;
        RTFTokenizer tokenizer(rtf);
        for (RTFToken token = tokenizer.next(); token.kind != RTFToken::Kind::end; token = tokenizer.next())
            bytes += token.text;
        EXPECT_EQ(bytes, std::string(count, 'A'));
    }
}

TEST(RTFTokenizer, HexadecimalWithoutTwoDigitsIsASymbol) {
    EXPECT_THAT(tokensOf("\\'zz"), ElementsAre("symbol '", "bytes zz"));
    EXPECT_THAT(tokensOf("\\'4g"), ElementsAre("symbol '", "bytes 4g"));
    EXPECT_THAT(tokensOf("\\'4"), ElementsAre("symbol '", "bytes 4"));
    EXPECT_THAT(tokensOf("\\'41\\'4"), ElementsAre("bytes A", "symbol '", "bytes 4"));
    EXPECT_THAT(tokensOf("a\\'00b"), ElementsAre("bytes a", "symbol '", "bytes b"));  // NUL is no character here
}

TEST(RTFTokenizer, LeavesBinaryDataOut) {
    EXPECT_THAT(tokensOf("\\bin3 }{\\a"), ElementsAre("word bin 3", "bytes a"));
    EXPECT_THAT(tokensOf("\\bin2147483647 }{\\a"), ElementsAre("word bin 2147483647"));
    EXPECT_THAT(tokensOf("\\bin0 a"), ElementsAre("word bin 0", "bytes a"));
    EXPECT_THAT(tokensOf("\\bin-3 abc"), ElementsAre("word bin -3", "bytes abc"));
    EXPECT_THAT(tokensOf("\\bin abc"), ElementsAre("word bin", "bytes abc"));
}

/// Every byte of a document is in some token, or known to be left out: nothing is read twice, or beyond the end.
TEST(RTFTokenizer, ReadsRandomBytesFromTheirBeginningToTheirEnd) {
    constexpr std::string_view kBytes = "{}\\'*~- \n\r\tab019efEF\x80\xE9";
    std::mt19937 random(1);
    for (int i = 0; i < 50'000; ++i) {
        std::string rtf;
        for (auto size = random() % 30; size > 0; --size) rtf += kBytes[random() % kBytes.size()];
        // The rest is not looked at.
        const std::vector<std::string> tokens = tokensOf(rtf);
        ASSERT_THAT(tokensOf(std::string_view(rtf + "1a").substr(0, rtf.size())), ElementsAreArray(tokens)) << rtf;
        ASSERT_LE(tokens.size(), rtf.size());
    }
}

}  // namespace
}  // namespace ravlin
