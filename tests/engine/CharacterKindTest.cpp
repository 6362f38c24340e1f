#include "Engine/Support/Characters/CharacterKind.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <unicode/uchar.h>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using CharacterKind::Kind;
using CharacterKind::kKnown;
using CharacterKind::kLetter;
using CharacterKind::kLower;
using CharacterKind::kNumber;
using CharacterKind::kUpper;

/// The kind of a code point by Unicode's properties.
Kind expectedKind(UChar32 scalar) {
    const auto is = [&](UProperty property) { return u_hasBinaryProperty(scalar, property) != 0; };
    const bool isCased = is(UCHAR_CASED) || is(UCHAR_CHANGES_WHEN_CASEMAPPED);
    const bool isUpper = is(UCHAR_UPPERCASE) || (isCased && !is(UCHAR_CHANGES_WHEN_UPPERCASED));
    const bool isLower = is(UCHAR_LOWERCASE) || (isCased && !is(UCHAR_CHANGES_WHEN_LOWERCASED));
    const bool isNumber = u_getIntPropertyValue(scalar, UCHAR_NUMERIC_TYPE) != U_NT_NONE;
    return static_cast<Kind>(kKnown | (is(UCHAR_ALPHABETIC) ? kLetter : 0) | (isNumber ? kNumber : 0) |
                             (isUpper ? kUpper : 0) | (isLower ? kLower : 0));
}

TEST(CharacterKind, IsThatOfUnicodesPropertiesForEveryCodePoint) {
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
        const auto character = static_cast<UChar32>(scalar);
        ASSERT_EQ(CharacterKind::of(scalar), expectedKind(character)) << std::hex << character;
    }
}

TEST(CharacterKind, SeparatesUnlessItIsALetterOrANumber) {
    for (const char byte : {'a', 'Z', '0'}) EXPECT_FALSE(CharacterKind::isSeparator(CharacterKind::of(byte))) << byte;
    for (const char byte : {' ', '-', '_', '\0'}) EXPECT_TRUE(CharacterKind::isSeparator(CharacterKind::of(byte)));
}

TEST(CharacterKind, OfBytesIsThatOfCodePoints) {
    for (char32_t scalar = 0; scalar < 0x80; ++scalar)
        EXPECT_EQ(CharacterKind::of(static_cast<char>(scalar)), CharacterKind::of(scalar));
}

TEST(CharacterKind, OfSeveralCodePointsGoesByTheFirstAndByTheCaseOfAll) {
    EXPECT_EQ(CharacterKind::of("e\u0301"), kKnown | kLetter | kLower);
    EXPECT_EQ(CharacterKind::of("E\u0301"), kKnown | kLetter | kUpper);
    EXPECT_EQ(CharacterKind::of("1\u20E3"), kKnown | kNumber);
    EXPECT_EQ(CharacterKind::of("-\u0345"), kKnown | kLower);  // its upper case is another
    EXPECT_EQ(CharacterKind::of("\r\n"), kKnown);
}

TEST(CharacterKind, OfACharacterOfOneCodePointIsThatOfTheCodePoint) {
    for (const char32_t scalar : tests::kTextAlphabet)
        EXPECT_EQ(CharacterKind::of(std::string_view(Oracle::utf8(scalar))), CharacterKind::of(scalar));
}

}  // namespace
}  // namespace ravlin
