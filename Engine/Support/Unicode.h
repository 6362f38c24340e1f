#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The only place that decodes UTF-8. Properties, case mappings and normalisation come from ICU with the root locale.
namespace ravlin::Unicode {

/// How many user-perceived characters `text` has: extended grapheme clusters as ICU's root character iterator sees
/// them.
///     characterCount("a\r\nb")  ->  3
std::int64_t characterCount(std::string_view text);

/// Whether `text` is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUTF8(std::string_view text);

/// The full, locale-independent lower-case mapping of the whole text, final sigma included.
std::string lowerCased(std::string_view text);

/// The full, locale-independent upper-case mapping of the whole text.
///     upperCased("stra\u00DFe")  ->  "STRASSE"
std::string upperCased(std::string_view text);

/// `text` in normalisation form C (UAX #15).
std::string nfc(std::string_view text);

/// `text` without the tabs and Unicode space separators (Zs) at its two ends. The view points into `text`.
std::string_view trimWhitespaces(std::string_view text);

}  // namespace ravlin::Unicode
