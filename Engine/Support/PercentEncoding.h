#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Text in URLs and forms: bytes as "%" and two hexadecimal digits (RFC 3986, section 2.1).
namespace ravlin::PercentEncoding {

/// Every UTF-8 byte except the unreserved characters of RFC 3986 in upper-case digits.
///     encode("a b/~")  ->  "a%20b%2F~"
std::string encode(std::string_view text);

/// Decodes `text`, with every "+" as a space. Nothing if a "%" is not followed by two digits, or if the result is not
/// UTF-8.
///     decode("a+b%20c")  ->  "a b c"        decode("100%"), decode("%E9")  ->  nothing
std::optional<std::string> decode(std::string_view text);

}  // namespace ravlin::PercentEncoding
