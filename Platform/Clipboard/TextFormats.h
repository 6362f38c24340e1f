#pragma once

#include "Engine/Pasteboard.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin {

/// One of the formats in which text is exchanged over a clipboard. X11's targets and Wayland's types have the same
/// names.
struct TextFormat {
    enum class Encoding : std::uint8_t {
        utf8,
        usuallyUTF8,  // the type of an answer may say otherwise
        told,         // by the type of an answer; UTF-8 if answers have no type
        latin1,       // if answers have no type, some programs send UTF-8
    };
    std::string_view name;
    Pasteboard::Type type = Pasteboard::Type::string;
    Encoding encoding = Encoding::utf8;
};

namespace TextFormats {

using Type = Pasteboard::Type;
using Encoding = TextFormat::Encoding;

/// All formats that are read, in the order in which they are requested. Our own text is offered in those of type
/// `string`.
inline constexpr auto kAll = std::to_array<TextFormat>({
    {"UTF8_STRING", Type::string, Encoding::utf8},
    {"text/plain;charset=utf-8", Type::string, Encoding::utf8},
    {"text/plain", Type::string, Encoding::usuallyUTF8},
    {"STRING", Type::string, Encoding::latin1},
    {"TEXT", Type::string, Encoding::told},
    {"text/rtf", Type::rtf},
    {"application/rtf", Type::rtf},
    {"text/richtext", Type::rtf},
    {"text/html", Type::html},
});
inline constexpr const TextFormat& kUTF8String = kAll.front();

/// By this name password managers say that what they have copied is a secret. It stands beside the text, and programs
/// that remember what is copied honour it.
inline constexpr std::string_view kPasswordHint = "x-kde-passwordManagerHint";
inline constexpr std::size_t kMaximumPasswordHintSize = 64;  // bytes; "secret" is the one in use

/// Whether `offered` is the name of `format`, ignoring letter case and blanks.
///     isNameOf("text/plain; charset=UTF-8", text/plain;charset=utf-8)  ->  true
bool isNameOf(std::string_view offered, const TextFormat& format);

struct Match {
    const TextFormat& format;
    std::string name;
};
/// The best format of `type` among the `offered` ones, and the name under which it is offered.
std::optional<Match> best(Type type, const std::vector<std::string>& offered);

/// The encoding of an answer in `format` whose own type is `told`, null for one that is not in the table; nothing if it
/// is not an encoding we understand.
std::optional<Encoding> encodingOf(const TextFormat& format, const TextFormat* told);

/// `bytes` as text, without one NUL at their end, which some programs include. Nothing if they should be UTF-8 and are
/// not.
std::optional<std::string> decoded(Encoding encoding, std::string bytes);

/// The same for an answer in `format` that has no type of its own.
///     STRING, "caf\xE9"      ->  "caf\u00e9"
///     UTF8_STRING, "caf\xE9" ->  nothing
std::optional<std::string> decodedUntyped(const TextFormat& format, std::string bytes);

}  // namespace TextFormats
}  // namespace ravlin
