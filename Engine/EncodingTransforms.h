#pragma once

#include <string>
#include <string_view>

/// Machine-readable encodings of text. Anything that cannot be decoded comes back unchanged.
namespace ravlin::TextTransforms {

/// The text's UTF-8 in Base64 (RFC 4648, section 4) on one line, padded.
///     base64Encode("hi")  ->  "aGk="
std::string base64Encode(std::string_view text);

/// Decodes Base64, ignoring white space around it. Both "+/" and "-_" are accepted. The text comes back unchanged if it
/// is empty, holds anything else, lacks padding, or does not decode to UTF-8.
///     base64Decode(" SGVsbG8=\n")  ->  "Hello"        base64Decode("SGVsbG8")  ->  "SGVsbG8"
std::string base64Decode(std::string_view text);

/// Every UTF-8 byte except the unreserved characters of RFC 3986 as "%" and two upper-case hexadecimal digits.
///     urlEncode("a b/~")  ->  "a%20b%2F~"
std::string urlEncode(std::string_view text);

/// Every "+" as a space and every percent escape as its byte. The text comes back unchanged, its "+" included, if a "%"
/// is not followed by two hexadecimal digits or the result is not UTF-8.
///     urlDecode("a+b%20c")  ->  "a b c"        urlDecode("100%+sure")  ->  "100%+sure"
std::string urlDecode(std::string_view text);

/// & < > " ' as "&amp;" "&lt;" "&gt;" "&quot;" "&#39;".
std::string htmlEntitiesEncode(std::string_view text);

/// Backslash, line feed, tab, carriage return, double quote, backspace, form feed and NUL as a backslash and one of
/// \ntr"bf0. They are matched as user-perceived characters, so CR LF line ends and quotes with accents stay.
std::string backslashEscape(std::string_view text);

/// The inverse, which also reads an escaped single quote. Any other backslash stays: numeric escapes are not decoded.
std::string backslashUnescape(std::string_view text);

/// The text's UTF-8 in lower-case hexadecimal digits, with nothing between them.
///     hexEncode("Hi")  ->  "4869"
std::string hexEncode(std::string_view text);

/// Decodes hexadecimal digits of either case, skipping white space and every "0x". The text comes back unchanged if it
/// has no digits, an odd number of them or anything else, or if the bytes are not UTF-8.
///     hexDecode("0x48 0x69")  ->  "Hi"        hexDecode("48:69")  ->  "48:69"
std::string hexDecode(std::string_view text);

/// Header and payload of a JSON Web Token (RFC 7519), indented, each under a line that names it. The signature is
/// ignored. The text comes back unchanged if it does not have two or three parts between dots, or if either of the
/// first two is not UTF-8 in Base64 (the padding may be missing).
std::string jwtDecode(std::string_view text);

/// Every letter from A to Z, of either case, rotated by 13 places; twice restores the text.
///     rot13("Hello")  ->  "Uryyb"
std::string rot13(std::string_view text);

}  // namespace ravlin::TextTransforms
