#include "Engine/EncodingTransforms.h"
#include "Engine/JSONReformatter.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/TextTransform.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/oracles/PlainEncodings.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <openssl/evp.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using std::string_view_literals::operator""sv;

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

// --- base64Decode ----------------------------------------------------------------------------------------------------

TEST(Base64Decode, ReadsEitherAlphabetAndPadding) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"SGVsbG8=", "Hello"},
        {"  SGVsbG8=\n", "Hello"},
        {"\u00a0\u3000SGVsbG8=\r\n", "Hello"},
        {"Zg==", "f"},
        {"Zm8=", "fo"},
        {"Zm9v", "foo"},
        {"wr7Cv8O/Pz4=", "\u00be\u00bf\u00ff?>"},
        {"wr7Cv8O_Pz4=", "\u00be\u00bf\u00ff?>"},
        {"fn5-Pz8_fn5+Pz8/", "~~~???~~~???"},
        {"aGl=", "hi"},
        {"aGn=", "hi"},
        {"Zh==", "f"},
        {"77u/", "\uFEFF"},
        {"AAAA", std::string_view("\0\0\0", 3)},
        {"8J+YgA==", "😀"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::base64Decode(text), expected) << text;
}

TEST(Base64Decode, GivesTheTextBackWhereItIsNotBase64) {
    const std::string_view texts[] = {"",          " \n",        "SGVsbG8",   " SGVsbG8 ", "SGVs\nbG8=",
                                      "SGVs bG8=", "_-8=",       "====",      "SGVs====",  "aG=k",
                                      "a===",      "=",          "==",        "===",       "=aaa",
                                      "aaaa=",     "aaa==",      "aa==aa==",  "aaaaa===",  "aG k",
                                      "aGk\u0301", "aG\u200bk",  "aGk=x",     "aGk.",      std::string_view("a\0aa", 4),
                                      "(aGk)",     "\uFEFFaGk=", "Hello",     "Hi there",  "/w==",
                                      "wyg=",      "7aCA",       "-\u0301aa", "é",         "aGk=aGk=",
                                      "data:x,"};
    for (const std::string_view text : texts) EXPECT_EQ(TextTransforms::base64Decode(text), text);
}

TEST(Base64Decode, IsThatOfThePlainVersionInRandomTexts) {
    tests::AlphabetTexts texts(U"aGkQWZ09+/-_==== \né", 9);
    for (int i = 0; i < 300'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::base64Decode(text), tests::plainBase64Decode(text)) << text;
    }
}

TEST(Base64Decode, RefusesEveryByteThatIsNoDigitInEveryPlace) {
    const std::string digits = "aGVsbG8gd29ybGQh";
    for (std::size_t at = 0; at < digits.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string text = digits;
            text[at] = static_cast<char>(byte);
            ASSERT_EQ(TextTransforms::base64Decode(text), tests::plainBase64Decode(text)) << text;
        }
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

TEST(URLDecode, IsThatOfThePlainVersionInRandomTexts) {
    tests::AlphabetTexts loose(U"%%%%0123cCaAdDeEfF89+ \u0301é", 8);
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = loose.next();
        ASSERT_EQ(TextTransforms::urlDecode(text), tests::plainURLDecode(text)) << text;
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
    tests::AlphabetTexts texts(U"&<>\"'a;#\u0301\u0338\u0600\n", 10);
    for (int i = 0; i < 50'000; ++i) {
        const std::string text = texts.next();
        std::string expected = text;
        for (const auto& [from, to] :
             {std::pair("&", "&amp;"), {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}, {"'", "&#39;"}})
            expected = Oracle::replaceAll(expected, from, to);
        ASSERT_EQ(TextTransforms::htmlEntitiesEncode(text), expected);
    }
}

// --- backslashEscape, backslashUnescape ------------------------------------------------------------------------------

TEST(BackslashEscape, WritesEightEscapes) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"\t\"\\", R"(\t\"\\)"},
        {"\n\r\b\f", R"(\n\r\b\f)"},
        {std::string_view("a\0b", 3), R"(a\0b)"},
        {"é'/\a\v\x1b\x7f\u2028", "é'/\a\v\x1b\x7f\u2028"},
        {R"(\n)", R"(\\n)"},
        {R"(C:\temp)", R"(C:\\temp)"},
        {"say \"hi\"\n", R"(say \"hi\"\n)"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::backslashEscape(text), expected) << text;
}

TEST(BackslashEscape, LooksAtWholeCharacters) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"\r\n", "\r\n"},         {"a\r\nb", "a\r\nb"},      {"\r\r\n\n", "\\r\r\n\\n"},
        {"\n\r", R"(\n\r)"},      {"\"\u0301", "\"\u0301"},  {"\\\u0338", "\\\u0338"},
        {"\u0600\"", "\u0600\""}, {"\n\u0301", "\\n\u0301"}, {"\u0301\"", "\u0301\\\""},
    };
    for (const auto& [text, expected] : vectors)
        EXPECT_EQ(TextTransforms::backslashEscape(text), expected) << testing::PrintToString(text);
}

TEST(BackslashUnescape, ReadsNineEscapes) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {R"(a\nb)", "a\nb"},
        {R"(\t\r\"\\\'\b\f)", "\t\r\"\\'\b\f"},
        {R"(\0)", std::string_view("\0", 1)},
        {R"(\\n)", R"(\n)"},
        {R"(\\\n)", "\\\n"},
        {R"(\\\\)", R"(\\)"},
        {R"(C:\\temp)", R"(C:\temp)"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::backslashUnescape(text), expected) << text;
}

TEST(BackslashUnescape, KeepsWhatIsNoEscape) {
    for (const std::string_view text :
         {"\\", "a\\", R"(\q)", R"(\x41)", R"(\u0041)", R"(\1)", R"(\N)", R"(\/)", R"(\ n)", "\\\n", "\\\r\n", "\\é",
          "\\n\u0301", "\\\u0338n", "\u0600\\n", "\\\"\u0301"})
        EXPECT_EQ(TextTransforms::backslashUnescape(text), text) << testing::PrintToString(text);
    EXPECT_EQ(TextTransforms::backslashUnescape(R"(\q\n)"), "\\q\n");
    EXPECT_EQ(TextTransforms::backslashUnescape(R"(\\\q)"), R"(\\q)");
    EXPECT_EQ(TextTransforms::backslashUnescape("\\n\\"), "\n\\");
}

/// Everything that can be part of an escape, and what joins other characters.
constexpr std::u32string_view kEscapes =
    U"\\\\\\\\\\ntr\"'bf0qxu1 \n\r\n\t\b\f\0\u0301\u0338\u200d\ufe0f\u0600\u0903\u0915\u094d\U0001f1e6\U0001f600é";

TEST(BackslashEscapes, AreThoseOfThePlainVersionInRandomTexts) {
    tests::AlphabetTexts texts(kEscapes, 12);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        const std::vector<std::string> characters = Oracle::characters(text);
        ASSERT_EQ(TextTransforms::backslashEscape(text), tests::plainBackslashEscape(characters));
        ASSERT_EQ(TextTransforms::backslashUnescape(text), tests::plainBackslashUnescape(characters));
    }
}

// --- hexEncode, hexDecode --------------------------------------------------------------------------------------------

TEST(HexEncode, WritesTwoDigitsForEveryByte) {
    EXPECT_EQ(TextTransforms::hexEncode(""), "");
    EXPECT_EQ(TextTransforms::hexEncode("Hi"), "4869");
    EXPECT_EQ(TextTransforms::hexEncode("é"), "c3a9");
    EXPECT_EQ(TextTransforms::hexEncode("\r\n\t"), "0d0a09");
    for (int byte = 0; byte < 256; ++byte) {
        char expected[3];
        std::snprintf(expected, sizeof(expected), "%02x", static_cast<unsigned>(byte));
        EXPECT_EQ(TextTransforms::hexEncode(std::string(1, static_cast<char>(byte))), expected);
    }
}

TEST(HexDecode, LeavesSpaceAndPrefixesOut) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"4869", "Hi"},
        {"0x48 0x69", "Hi"},
        {"0X480X69", "Hi"},
        {"c3A9", "é"},
        {"C3 a9", "é"},
        {" 4 8\n6\r\n9\t", "Hi"},
        {"4\u00a08\u30006\u20289\v\f\u0085", "Hi"},
        {"100x41",
         "\x10"
         "A"},
        {"40x869000x0x", "Hi\0"sv},
        {"00", "\0"sv},
        {"efbbbf41",
         "\uFEFF"
         "A"},
        {"f09f9880", "😀"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::hexDecode(text), expected) << text;
}

TEST(HexDecode, GivesTheTextBackWhereItIsNotHexadecimal) {
    for (const std::string_view text : {"",
                                        " ",
                                        "0x",
                                        "0x 0X",
                                        "48:69",
                                        "48-69",
                                        "486",
                                        "4",
                                        "ff",
                                        "c3",
                                        "eda080",
                                        "c0af",
                                        "00x41",
                                        "0 x41",
                                        "x41",
                                        "4x1",
                                        "\\x41",
                                        "#41",
                                        "4g",
                                        "４８",
                                        "4\u03018",
                                        "48\u200b69",
                                        "0x\u030148",
                                        "\uFEFF"
                                        "48",
                                        "0x4x8",
                                        "é"})
        EXPECT_EQ(TextTransforms::hexDecode(text), text);
}

TEST(HexDecode, IsThatOfThePlainVersionInRandomTexts) {
    tests::AlphabetTexts texts(U"00000xxxX44448869cCaA9f \n\u00a0g", 10);
    for (int i = 0; i < 300'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::hexDecode(text), tests::plainHexDecode(text)) << text;
    }
}

// --- jwtDecode -------------------------------------------------------------------------------------------------------

std::string token(std::string_view header, std::string_view payload) {
    std::string result = TextTransforms::base64Encode(header) + "." + TextTransforms::base64Encode(payload) + ".c2ln";
    std::erase(result, '=');
    std::replace(result.begin(), result.end(), '+', '-');
    std::replace(result.begin(), result.end(), '/', '_');
    return result;
}

TEST(JWTDecode, ShowsHeaderAndPayload) {
    EXPECT_EQ(TextTransforms::jwtDecode(
                  "eyJhbGciOiJIUzI1NiIsInR5cCI6IkpXVCJ9.eyJzdWIiOiIxMjM0NTY3ODkwIiwibmFtZSI6IkpvaG4gRG9lIi"
                  "wiaWF0IjoxNTE2MjM5MDIyfQ.SflKxwRJSMeKKF2QT4fwpMeJf36POk6yJV_adQssw5c"),
              "// Header\n"
              "{\n"
              "  \"alg\": \"HS256\",\n"
              "  \"typ\": \"JWT\"\n"
              "}\n"
              "\n"
              "// Payload\n"
              "{\n"
              "  \"sub\": \"1234567890\",\n"
              "  \"name\": \"John Doe\",\n"
              "  \"iat\": 1516239022\n"
              "}");
}

TEST(JWTDecode, TakesTwoOrThreeParts) {
    const std::string expected = "// Header\n{}\n\n// Payload\n[]";
    for (const std::string_view text : {"e30.W10", "e30.W10.", "e30.W10.sig", " e30.W10.sig\n", "\u00a0e30.W10.\u00a0",
                                        "e30=.W10=.", "e30.W10.not Base64 at all", "e30.W10.\u0301"})
        EXPECT_EQ(TextTransforms::jwtDecode(text), text == "e30.W10.\u0301" ? std::string(text) : expected) << text;
}

TEST(JWTDecode, CountsDotsWithoutAccentsOnly) {
    EXPECT_EQ(TextTransforms::jwtDecode("e30.W10.a.\u0301b"), "// Header\n{}\n\n// Payload\n[]");
    EXPECT_EQ(TextTransforms::jwtDecode("e30.\u0301W10"), "e30.\u0301W10");
}

TEST(JWTDecode, ShowsTextThatIsNoJSONAsItStands) {
    EXPECT_EQ(TextTransforms::jwtDecode(token("hello ", " {1}\n")), "// Header\nhello \n\n// Payload\n {1}\n");
    EXPECT_EQ(TextTransforms::jwtDecode("."), "// Header\n\n\n// Payload\n");
    EXPECT_EQ(TextTransforms::jwtDecode(".."), "// Header\n\n\n// Payload\n");
    EXPECT_EQ(TextTransforms::jwtDecode("aGl=.aGk"), "// Header\nhi\n\n// Payload\nhi");
    EXPECT_EQ(TextTransforms::jwtDecode("aG=.aG"), "// Header\nh\n\n// Payload\nh");
}

TEST(JWTDecode, GivesTheTextBackWhereItIsNoToken) {
    for (const std::string_view text :
         {"", " ", "e30", "not.a.jwt.token", "e30.W10.a.b", "...", "e3.W10!.x", "e30.W1 0.x", "e30.a.x", "a.e30.x",
          "e30.aGk==.x", "e30._w.x", "_w.e30.x", "e30.\nW10", "\u00e9.e30", "e30..W10.", "www.example.org/x", "3.14",
          "e30\u3002W10"})
        EXPECT_EQ(TextTransforms::jwtDecode(text), text);
}

TEST(JWTDecode, TakesPaddingThatIsLeftOutAsIfItStoodThere) {
    tests::AlphabetTexts parts(U"AAaGkl93-_+/==", 9);
    for (int i = 0; i < 100'000; ++i) {
        const std::string part = parts.next();
        const std::string padded = part + std::string((4 - part.size() % 4) % 4, '=');
        bool isValid = false;
        const std::string bytes = tests::plainBase64Bytes(padded, isValid);
        const bool isText = isValid && Unicode::isValidUTF8(bytes);
        ASSERT_EQ(TextTransforms::jwtDecode("." + part),
                  isText ? "// Header\n\n\n// Payload\n" + TextTransforms::jsonReformat(bytes, true) : "." + part);
    }
}

TEST(JWTDecode, StopsAtTheFourthPart) {
    const std::string dots(10'000'000, '.');
    EXPECT_TRUE(TextTransforms::jwtDecode(dots) == dots);
}

// --- rot13 -----------------------------------------------------------------------------------------------------------

TEST(ROT13, MovesTheLettersFromAToZ) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"Hello, World!", "Uryyb, Jbeyq!"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZ", "NOPQRSTUVWXYZABCDEFGHIJKLM"},
        {"abcdefghijklmnopqrstuvwxyz", "nopqrstuvwxyzabcdefghijklm"},
        {"@[`{0189", "@[`{0189"},
        {"éÄßÐþ", "éÄßÐþ"},
        {"e\u0301\r\n", "r\u0301\r\n"},
        {"ａＺ Ж", "ａＺ Ж"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::rot13(text), expected);
}

// --- There and back --------------------------------------------------------------------------------------------------

TEST(RoundTrip, OfBase64HexadecimalDigitsPercentEscapesAndLetters) {
    tests::AlphabetTexts texts(tests::kTextAlphabet, 40);
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::base64Decode(TextTransforms::base64Encode(text)), text);
        ASSERT_EQ(TextTransforms::hexDecode(TextTransforms::hexEncode(text)), text);
        ASSERT_EQ(TextTransforms::urlDecode(TextTransforms::urlEncode(text)), text);
        ASSERT_EQ(TextTransforms::rot13(TextTransforms::rot13(text)), text);
    }
}

// A control character is always a character. The letter written for it is not if a mark follows, and the backslash is
// not after a character that joins the next one: then the escape cannot be read back.
TEST(RoundTrip, OfBackslashEscapesUnlessTheyJoinTheirNeighbours) {
    const auto standsAlone = [](char32_t scalar) {
        const std::string text = Oracle::utf8(scalar);
        return Oracle::characters("n" + text).size() == 2 && Oracle::characters(text + "\\").size() == 2;
    };
    std::u32string alphabet;
    std::copy_if(tests::kTextAlphabet.begin(), tests::kTextAlphabet.end(), std::back_inserter(alphabet), standsAlone);
    EXPECT_GT(alphabet.size(), 100U);
    tests::AlphabetTexts texts(alphabet, 40);
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::backslashUnescape(TextTransforms::backslashEscape(text)), text);
    }
    EXPECT_EQ(TextTransforms::backslashUnescape(TextTransforms::backslashEscape("\n\u0301")), "\\n\u0301");
}

TEST(RoundTrip, OfTextsOfEveryLength) {
    std::string text;
    for (int length = 0; length < 300; ++length, text += static_cast<char>(' ' + length % 95)) {
        ASSERT_EQ(TextTransforms::base64Decode(TextTransforms::base64Encode(text)), text);
        ASSERT_EQ(TextTransforms::hexDecode(TextTransforms::hexEncode(text)), text);
        ASSERT_EQ(TextTransforms::backslashUnescape(TextTransforms::backslashEscape(text)), text);
    }
}

TEST(EmptyText, StaysEmptyWhenEncodedOrDecoded) {
    for (const TextTransform transform :
         {TextTransform::jsonPretty, TextTransform::jsonMinify, TextTransform::base64Encode,
          TextTransform::base64Decode, TextTransform::backslashEscape, TextTransform::backslashUnescape,
          TextTransform::hexEncode, TextTransform::hexDecode, TextTransform::jwtDecode, TextTransform::rot13})
        EXPECT_EQ(transform.apply(""), "") << transform.rawValue();
}

}  // namespace
}  // namespace ravlin
