#pragma once

#include <string>
#include <string_view>

/// Encodings of text that programs read.
namespace ravlin::TextTransforms {

/// The text's UTF-8 in Base64 (RFC 4648, section 4) on one line, padded.
///     base64Encode("hi")  ->  "aGk="
std::string base64Encode(std::string_view text);

/// Every UTF-8 byte but the unreserved characters of RFC 3986 as "%" and two upper-case hexadecimal digits.
///     urlEncode("a b/~")  ->  "a%20b%2F~"
std::string urlEncode(std::string_view text);

/// Every "+" as a space and every percent escape as its byte. The text comes back unchanged, its "+" included, where a
/// "%" is not followed by two hexadecimal digits or where the result is not UTF-8.
///     urlDecode("a+b%20c")  ->  "a b c"        urlDecode("100%+sure")  ->  "100%+sure"
std::string urlDecode(std::string_view text);

/// & < > " ' as "&amp;" "&lt;" "&gt;" "&quot;" "&#39;".
std::string htmlEntitiesEncode(std::string_view text);

}  // namespace ravlin::TextTransforms
