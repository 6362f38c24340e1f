#include "Engine/Support/Bytes.h"

#include <cctype>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Bytes::Padding;

std::string randomBytes(std::size_t size, std::mt19937& random) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(random() % 256);
    return bytes;
}

TEST(Hexadecimal, IsTwoLowerCaseDigitsForEveryByte) {
    EXPECT_EQ(Bytes::toHex(""), "");
    EXPECT_EQ(Bytes::toHex("Hi"), "4869");
    for (unsigned byte = 0; byte < 256; ++byte) {
        const std::string digits = Bytes::toHex(std::string(1, static_cast<char>(byte)));
        ASSERT_EQ(digits.size(), 2U);
        EXPECT_EQ(std::strtoul(digits.c_str(), nullptr, 16), byte);
        EXPECT_EQ(digits.find_first_not_of("0123456789abcdef"), std::string::npos) << digits;
    }
}

TEST(Hexadecimal, DigitsAreOfEitherCase) {
    for (int byte = 0; byte < 256; ++byte) {
        const char digit[] = {static_cast<char>(byte), '\0'};
        const std::optional<unsigned> value = Bytes::hexValue(digit[0]);
        ASSERT_EQ(value.has_value(), std::isxdigit(byte) != 0) << byte;
        EXPECT_EQ(value.value_or(0), std::strtoul(digit, nullptr, 16)) << byte;
    }
}

TEST(Base64, IsThatOfTheRFC) {
    const std::pair<const char*, const char*> vectors[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
        {"\xfb\xff\xfe", "+//+"},
    };
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(Bytes::toBase64(bytes), text);
        EXPECT_EQ(Bytes::fromBase64(text), bytes) << text;
    }
}

TEST(Base64, GivesBytesOfEveryLengthBackWithAndWithoutPadding) {
    std::mt19937 random(1);
    for (std::size_t size = 0; size < 300; ++size) {
        const std::string bytes = randomBytes(size, random);
        std::string text = Bytes::toBase64(bytes);
        ASSERT_EQ(text.size(), (size + 2) / 3 * 4);
        ASSERT_EQ(Bytes::fromBase64(text), bytes);
        ASSERT_EQ(Bytes::fromBase64(text, Padding::optional), bytes);
        while (text.ends_with('=')) text.pop_back();
        ASSERT_EQ(Bytes::fromBase64(text, Padding::optional), bytes);
        ASSERT_EQ(Bytes::fromBase64(text).has_value(), size % 3 == 0);
    }
}

TEST(Base64, HasTwoAlphabets) {
    EXPECT_EQ(Bytes::fromBase64("-__-"), "\xfb\xff\xfe");
    EXPECT_EQ(Bytes::fromBase64("+/_-"), "\xfb\xff\xfe");
}

TEST(Base64, LooksAtNoBitsThatAreLeftOver) {
    EXPECT_EQ(Bytes::fromBase64("Zh=="), "f");
    EXPECT_EQ(Bytes::fromBase64("aGl="), "hi");
}

TEST(Base64, RefusesWrongPadding) {
    for (const char* const text :
         {"Zg", "Zg=", "Z", "Z===", "====", "=", "Zg==Zg==", "Z=g=", "=Zg=", "Zm9v=", "Zm9v===="})
        EXPECT_EQ(Bytes::fromBase64(text), std::nullopt) << text;
    for (const char* const text : {"Z", "Z=", "Z===", "====", "=", "Zg==Zg==", "Z=g=", "=Zg=", "Zm9vZ"})
        EXPECT_EQ(Bytes::fromBase64(text, Padding::optional), std::nullopt) << text;
}

TEST(Base64, RefusesEveryOtherByteInEveryPlace) {
    const std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/-_";
    for (std::size_t at = 0; at < 8; ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string text = "Zm9vYmFy";
            text[at] = static_cast<char>(byte);
            const bool isPadding = at == 7 && byte == '=';
            const bool isDigit = digits.find(text[at]) != std::string_view::npos;
            EXPECT_EQ(Bytes::fromBase64(text).has_value(), isDigit || isPadding) << byte << " at " << at;
        }
    }
}

}  // namespace
}  // namespace ravlin
