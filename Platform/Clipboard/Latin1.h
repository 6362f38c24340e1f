#pragma once

#include <optional>
#include <string>
#include <string_view>

/// ISO 8859-1, the encoding of X11's old STRING target: one byte for each of U+0000 to U+00FF.
namespace ravlin::Latin1 {

/// `latin1` as UTF-8. Every byte is a character, so this cannot fail.
///     toUTF8("caf\xE9")  ->  "caf\xC3\xA9"
std::string toUTF8(std::string_view latin1);

/// Whether every character of `text`, which must be valid UTF-8, lies in U+0000 to U+00FF.
bool canHold(std::string_view text);

/// `text`, which must be valid UTF-8, as ISO 8859-1; nothing if one of its characters does not fit.
///     fromUTF8("caf\xC3\xA9")  ->  "caf\xE9"
///     fromUTF8("\xE2\x82\xAC")  ->  nothing (the euro sign is U+20AC)
std::optional<std::string> fromUTF8(std::string_view text);

}  // namespace ravlin::Latin1
