#include "Engine/EncodingTransforms.h"
#include "Engine/Support/Unicode.h"
#include "tests/engine/Oracle.h"

#include <openssl/evp.h>

#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

// --- base64Encode ----------------------------------------------------------------------------------------------------

TEST(Base64Encode, WritesTheTestVectorsOfTheRFC) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
        {"hi", "aGk="},
        {"é", "w6k="},
        {"\u00be\u00bf\u00ff?>", "wr7Cv8O/Pz4="},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::base64Encode(text), expected);
}

TEST(Base64Encode, IsThatOfOpenSSLForBytesOfEveryLength) {
    std::mt19937 random(5);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int length = 0; length < 600; ++length) {
        std::string text;
        for (int i = 0; i < length; ++i) text += static_cast<char>(byte(random));
        std::vector<unsigned char> expected(text.size() * 2 + 4);
        const int size = EVP_EncodeBlock(expected.data(), reinterpret_cast<const unsigned char*>(text.data()), length);
        ASSERT_EQ(TextTransforms::base64Encode(text), std::string(expected.begin(), expected.begin() + size));
    }
}

// --- urlEncode, urlDecode --------------------------------------------------------------------------------------------

TEST(URLEncode, KeepsUnreservedCharactersOnly) {
    const std::string unreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~";
    EXPECT_EQ(TextTransforms::urlEncode(unreserved), unreserved);
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"a b/é", "a%20b%2F%C3%A9"},
        {"~-._", "~-._"},
        {"e\u0301", "e%CC%81"},
        {"\r\n", "%0D%0A"},
        {"100%+", "100%25%2B"},
        {"日本", "%E6%97%A5%E6%9C%AC"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::urlEncode(text), expected);
}

TEST(URLEncode, WritesEveryOtherByteInTwoDigits) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        const std::string result = TextTransforms::urlEncode(text);
        if (result == text) continue;
        ASSERT_EQ(result.size(), 3U);
        EXPECT_EQ(result[0], '%');
        EXPECT_EQ(std::stoi(result.substr(1), nullptr, 16), byte);
        EXPECT_EQ(result.find_first_of("abcdef"), std::string::npos);
    }
}

TEST(URLDecode, ReadsEscapesAndPluses) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"a+b%20c", "a b c"},
        {"%c3%A9", "é"},
        {"%2B", "+"},
        {"é+%C3%A9", "é é"},
        {"%00", std::string_view("\0", 1)},
        {"%F0%9F%98%80", "😀"},
        {"+\u0301+", "+\u0301 "},
        {"+%CC%81", " \u0301"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::urlDecode(text), expected);
}

TEST(URLDecode, GivesTheTextBackWhereItIsNotEncoded) {
    for (const std::string_view text : {"100%+sure", "%E9", "%C0%AF", "%ED%A0%80", "%F4%90%80%80", "%4", "%", "%%41",
                                        "%zz", "a+%", "%４１", "%C3%28", "%+1", "%-1", "%0x41"})
        EXPECT_EQ(TextTransforms::urlDecode(text), text);
}

/// Step by step: pluses in whole characters first, then escapes, then the check.
std::string plainURLDecode(const std::string& text) {
    const std::string spaced = Oracle::replaceAll(text, "+", " ");
    std::string bytes;
    for (std::size_t at = 0; at < spaced.size(); ++at) {
        if (spaced[at] != '%') {
            bytes += spaced[at];
            continue;
        }
        const std::string digits = spaced.substr(at + 1, 2);
        if (digits.size() != 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return text;
        bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
        at += 2;
    }
    return Unicode::isValidUTF8(bytes) ? bytes : text;
}

TEST(URLDecode, IsThatOfThePlainVersionInRandomTexts) {
    Oracle::Texts loose(U"%%%%0123cCaAdDeEfF89+ \u0301é", 8);
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = loose.next();
        ASSERT_EQ(TextTransforms::urlDecode(text), plainURLDecode(text)) << text;
    }
}

// --- htmlEntitiesEncode ----------------------------------------------------------------------------------------------

TEST(HTMLEntitiesEncode, EscapesFiveCharacters) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"Tom & Jerry's <b>", "Tom &amp; Jerry&#39;s &lt;b&gt;"},
        {"\"", "&quot;"},
        {"&amp;", "&amp;amp;"},
        {"&\u0301<\u0338", "&\u0301<\u0338"},
        {"&\r\n<", "&amp;\r\n&lt;"},
        {"é—", "é—"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::htmlEntitiesEncode(text), expected);
}

TEST(HTMLEntitiesEncode, IsFiveReplacementsOneAfterAnother) {
    Oracle::Texts texts(U"&<>\"'a;#\u0301\u0338\u0600\n", 10);
    for (int i = 0; i < 50'000; ++i) {
        const std::string text = texts.next();
        std::string expected = text;
        for (const auto& [from, to] :
             {std::pair("&", "&amp;"), {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}, {"'", "&#39;"}})
            expected = Oracle::replaceAll(expected, from, to);
        ASSERT_EQ(TextTransforms::htmlEntitiesEncode(text), expected);
    }
}

}  // namespace
}  // namespace ravlin
