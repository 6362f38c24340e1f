#include "Engine/Support/Characters/Unicode.h"

#include "Engine/Support/Characters/ASCII.h"

#include <unicode/uchar.h>

#include <array>
#include <cstring>

namespace ravlin::Unicode {
namespace {

constexpr Scalar kIllFormedByte = {.value = kReplacement, .byteSize = 1, .isWellFormed = false};
constexpr std::size_t kLongestEncoding = 4;  // bytes

constexpr unsigned byteAt(std::string_view text, std::size_t at) noexcept {
    return static_cast<unsigned char>(text[at]);
}

/// Whether `byte` may follow `lead`: the narrower ranges exclude overlong forms, surrogates and values too large.
constexpr bool isSecond(unsigned lead, unsigned byte) noexcept {
    switch (lead) {
        case 0xE0: return byte >= 0xA0 && byte <= 0xBF;
        case 0xED: return byte >= 0x80 && byte <= 0x9F;
        case 0xF0: return byte >= 0x90 && byte <= 0xBF;
        case 0xF4: return byte >= 0x80 && byte <= 0x8F;
        default: return byte >= 0x80 && byte <= 0xBF;
    }
}

constexpr std::size_t encodedSize(unsigned lead) noexcept {
    if (lead < 0xC2 || lead > 0xF4) return 1;
    if (lead < 0xE0) return 2;
    return lead < 0xF0 ? 3 : 4;
}

bool isInCategories(char32_t scalar, std::uint32_t mask) noexcept {
    return (U_MASK(u_charType(static_cast<UChar32>(scalar))) & mask) != 0;
}

bool hasProperty(char32_t scalar, UProperty property) noexcept {
    return u_hasBinaryProperty(static_cast<UChar32>(scalar), property) != 0;
}

template <typename Belongs>
std::string_view trim(std::string_view text, Belongs belongs) noexcept {
    while (!text.empty()) {
        const Scalar first = decode(text, 0);
        if (!belongs(first.value)) break;
        text.remove_prefix(first.byteSize);
    }
    while (!text.empty()) {
        const Scalar last = decodeBefore(text, text.size());
        if (!belongs(last.value)) break;
        text.remove_suffix(last.byteSize);
    }
    return text;
}

}  // namespace

Scalar detail::decodeByRules(std::string_view text, std::size_t at) noexcept {
    const unsigned lead = byteAt(text, at);
    const std::size_t size = encodedSize(lead);
    if (size == 1) return kIllFormedByte;
    if (at + 1 == text.size() || !isSecond(lead, byteAt(text, at + 1))) return kIllFormedByte;
    char32_t value = ((lead & (0x7FU >> size)) << 6U) | (byteAt(text, at + 1) & 0x3FU);
    for (std::size_t i = 2; i < size; ++i) {
        if (at + i == text.size() || !isTrail(text[at + i]))
            return {.value = kReplacement, .byteSize = static_cast<std::uint8_t>(i), .isWellFormed = false};
        value = (value << 6U) | (byteAt(text, at + i) & 0x3FU);
    }
    return {.value = value, .byteSize = static_cast<std::uint8_t>(size)};
}

Scalar decodeBefore(std::string_view text, std::size_t end) noexcept {
    for (std::size_t size = 1; size <= kLongestEncoding && size <= end; ++size) {
        if (detail::isTrail(text[end - size])) continue;
        const Scalar scalar = decode(text.substr(0, end), end - size);
        return scalar.byteSize == size ? scalar : kIllFormedByte;
    }
    return kIllFormedByte;
}

void append(std::string& text, char32_t scalar) {
    const auto byte = [](char32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); };
    const auto trail = [&](unsigned shift) { return byte(0x80U | ((static_cast<unsigned>(scalar) >> shift) & 0x3FU)); };
    const char lead = byte(leadByte(scalar));
    if (scalar < 0x80) {
        text += lead;
    } else if (scalar < 0x800) {
        text.append({lead, trail(0)});
    } else if (scalar < 0x10000) {
        text.append({lead, trail(6), trail(0)});
    } else {
        text.append({lead, trail(12), trail(6), trail(0)});
    }
}

bool isValidUTF8(std::string_view text) noexcept {
    for (std::size_t at = asciiRunEnd(text, 0); at < text.size();) {
        const Scalar scalar = decode(text, at);
        if (!scalar.isWellFormed) return false;
        at = asciiRunEnd(text, at + scalar.byteSize);
    }
    return true;
}

std::size_t asciiRunEnd(std::string_view text, std::size_t from) noexcept {
    constexpr std::size_t kStride = sizeof(std::uint64_t);
    for (; text.size() - from >= kStride; from += kStride) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + from, kStride);
        if ((bytes & 0x8080808080808080U) != 0) break;
    }
    while (from < text.size() && isASCII(text[from])) ++from;
    return from;
}

bool isLetter(char32_t scalar) noexcept {
    return u_isUAlphabetic(static_cast<UChar32>(scalar)) != 0;
}

bool isNumber(char32_t scalar) noexcept {
    return u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

bool isDecimalDigit(char32_t scalar) noexcept {
    return isInCategories(scalar, U_GC_ND_MASK);
}

bool isMark(char32_t scalar) noexcept {
    return isInCategories(scalar, U_GC_M_MASK);
}

bool isFormat(char32_t scalar) noexcept {
    return isInCategories(scalar, U_GC_CF_MASK);
}

bool isOther(char32_t scalar) noexcept {
    return isInCategories(scalar, U_GC_C_MASK);
}

bool isUppercase(char32_t scalar) noexcept {
    return u_isUUppercase(static_cast<UChar32>(scalar)) != 0;
}

bool isLowercase(char32_t scalar) noexcept {
    return u_isULowercase(static_cast<UChar32>(scalar)) != 0;
}

bool isCased(char32_t scalar) noexcept {
    return hasProperty(scalar, UCHAR_CASED);
}

bool isCaseIgnorable(char32_t scalar) noexcept {
    return hasProperty(scalar, UCHAR_CASE_IGNORABLE);
}

bool isGraphemeExtend(char32_t scalar) noexcept {
    return hasProperty(scalar, UCHAR_GRAPHEME_EXTEND);
}

bool isWordCharacter(char32_t scalar) noexcept {
    return isLetter(scalar) || isInCategories(scalar, U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK) || isJoiner(scalar);
}

bool isWhitespace(char32_t scalar) noexcept {
    if (scalar < 0x80) return scalar == ' ' || scalar == '\t';
    return isInCategories(scalar, U_GC_ZS_MASK);
}

bool isWhitespaceOrNewline(char32_t scalar) noexcept {
    if (scalar < 0x80) return ASCII::isWhitespaceOrNewline(static_cast<char>(scalar));
    return u_isUWhiteSpace(static_cast<UChar32>(scalar)) != 0;
}

std::string_view trimWhitespaces(std::string_view text) noexcept {
    return trim(text, isWhitespace);
}

std::string_view trimWhitespacesAndNewlines(std::string_view text) noexcept {
    return trim(text, isWhitespaceOrNewline);
}

}  // namespace ravlin::Unicode
