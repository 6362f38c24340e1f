#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Bytes written as text, and read again.
namespace ravlin::Bytes {

/// Every byte as two lower-case hexadecimal digits.
///     toHex("Hi")  ->  "4869"
std::string toHex(std::string_view bytes);

/// The value of one hexadecimal digit of either case; nothing for any other byte.
constexpr std::optional<unsigned> hexValue(char digit) noexcept {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
    return std::nullopt;
}

/// The Base64 (RFC 4648, section 4) of `bytes` on one line, padded.
///     toBase64("hi")  ->  "aGk="
std::string toBase64(std::string_view bytes);

/// Whether Base64 has to be filled up to groups of four characters with "=".
enum class Padding : std::uint8_t { required, optional };

/// The bytes that `text` stands for in Base64, whose digits 62 and 63 may be those of section 4 or of section 5 of RFC
/// 4648. Nothing where it holds anything else, line breaks included, or where its padding is wrong or missing though
/// required. Bits that are left over in the last digit are not looked at.
///     fromBase64("aGk=")  ->  "hi"        fromBase64("aGk"), fromBase64("aG=k")  ->  nothing
std::optional<std::string> fromBase64(std::string_view text, Padding padding = Padding::required);

}  // namespace ravlin::Bytes
