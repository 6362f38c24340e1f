#pragma once

#include "Engine/Support/Characters/ASCII.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Bytes as text, and back.
namespace ravlin::Bytes {

/// Every byte as two lower-case hexadecimal digits.
///     toHex("Hi")  ->  "4869"
std::string toHex(std::string_view bytes);

namespace detail {
/// The values of the hexadecimal digits by byte, -1 for any other byte.
inline constexpr auto kHexValues = [] {
    std::array<std::int16_t, 256> values = {};
    values.fill(-1);
    std::int16_t value = 0;
    for (const char digit : std::string_view("0123456789abcdef")) values[static_cast<unsigned char>(digit)] = value++;
    for (const char digit : std::string_view("ABCDEF"))
        values[static_cast<unsigned char>(digit)] = values[static_cast<unsigned char>(ASCII::toLower(digit))];
    return values;
}();
}  // namespace detail

/// The value of one hexadecimal digit of either case; nothing for any other byte.
constexpr std::optional<unsigned> hexValue(char digit) noexcept {
    const int value = detail::kHexValues[static_cast<unsigned char>(digit)];
    return value < 0 ? std::nullopt : std::optional(static_cast<unsigned>(value));
}

/// The byte that two hexadecimal digits stand for; nothing if either is not a digit.
///     hexByte('e', '9')  ->  0xE9
constexpr std::optional<unsigned> hexByte(char high, char low) noexcept {
    // Negative if either is.
    const int byte =
        16 * detail::kHexValues[static_cast<unsigned char>(high)] | detail::kHexValues[static_cast<unsigned char>(low)];
    return byte < 0 ? std::nullopt : std::optional(static_cast<unsigned>(byte));
}

/// The Base64 (RFC 4648, section 4) of `bytes` on one line, padded.
///     toBase64("hi")  ->  "aGk="
std::string toBase64(std::string_view bytes);

/// Whether Base64 must be padded with "=" to groups of four characters.
enum class Padding : std::uint8_t { required, optional };

/// Decodes Base64, whose digits 62 and 63 may be those of section 4 or of section 5 of RFC 4648. Nothing if `text`
/// holds anything else, line breaks included, or if its padding is wrong, or missing though required. Bits left over in
/// the last digit are ignored.
///     fromBase64("aGk=")  ->  "hi"        fromBase64("aGk"), fromBase64("aG=k")  ->  nothing
std::optional<std::string> fromBase64(std::string_view text, Padding padding = Padding::required);

}  // namespace ravlin::Bytes
