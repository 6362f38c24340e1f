#pragma once

#include <string>
#include <string_view>

/// Digests of the text's UTF-8, byte for byte, in lower-case hexadecimal digits. They are for comparing and looking up,
/// not for security.
namespace ravlin::TextTransforms {

/// RFC 1321, 32 digits.
///     md5("")  ->  "d41d8cd98f00b204e9800998ecf8427e"
std::string md5(std::string_view text);

/// FIPS 180-4, 40 digits.
std::string sha1(std::string_view text);

/// FIPS 180-4, 64 digits.
std::string sha256(std::string_view text);

}  // namespace ravlin::TextTransforms
