#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Text in URLs and forms: bytes as "%" and two hexadecimal digits (RFC 3986, section 2.1).
namespace ravlin::PercentEncoding {

/// Every UTF-8 byte but those of the unreserved characters of RFC 3986 in upper-case digits.
///     encode("a b/~")  ->  "a%20b%2F~"
std::string encode(std::string_view text);

/// The text that `text` stands for, every "+" as a space. Nothing where a "%" is not followed by two digits, and where
/// the result is not UTF-8.
///     decode("a+b%20c")  ->  "a b c"        decode("100%"), decode("%E9")  ->  nothing
std::optional<std::string> decode(std::string_view text);

}  // namespace ravlin::PercentEncoding
