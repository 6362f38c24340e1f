#pragma once

#include "Engine/Pasteboard.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin {

/// One of the formats in which texts go over a clipboard. X11's targets and Wayland's types have the same names.
struct TextFormat {
    enum class Encoding : std::uint8_t {
        utf8,
        usuallyUTF8,  // the type of an answer may tell another one
        told,         // by the type of an answer; UTF-8 where answers have no type
        latin1,       // where answers have no type UTF-8 as well, to some programs
    };
    std::string_view name;
    Pasteboard::Type type = Pasteboard::Type::string;
    Encoding encoding = Encoding::utf8;
};

namespace TextFormats {

using Type = Pasteboard::Type;
using Encoding = TextFormat::Encoding;

/// All that are read, in the order in which they are asked for. Our own text is offered in those of the type `string`.
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

/// Whether `offered` is the name of `format`. Letter case and blanks do not count.
///     isNameOf("text/plain; charset=UTF-8", text/plain;charset=utf-8)  ->  true
bool isNameOf(std::string_view offered, const TextFormat& format);

struct Match {
    const TextFormat& format;
    std::string name;
};
/// The best format of `type` that is among the `offered` ones, and the name by which it is offered.
std::optional<Match> best(Type type, const std::vector<std::string>& offered);

/// The encoding of an answer in `format` whose own type is `told`, null for one that is not in the table; nothing where
/// that is none we understand.
std::optional<Encoding> encodingOf(const TextFormat& format, const TextFormat* told);

/// The text that `bytes` mean, less one NUL at their end, which some programs count in. Nothing where they should be
/// UTF-8 and are not.
std::optional<std::string> decoded(Encoding encoding, std::string bytes);

/// The same for an answer in `format` that has no type of its own.
///     STRING, "caf\xE9"      ->  "caf\u00e9"
///     UTF8_STRING, "caf\xE9" ->  nothing
std::optional<std::string> decodedUntyped(const TextFormat& format, std::string bytes);

/// Whether `text` is offered in `format`, which it is where nothing of it gets lost. A program that would get question
/// marks for letters cannot tell that anything is missing, whereas one that finds no STRING takes another format.
bool canHold(const TextFormat& format, std::string_view text);

/// The bytes of `text` in a format that can hold it.
std::shared_ptr<const std::string> encoded(const TextFormat& format, std::shared_ptr<const std::string> text);

}  // namespace TextFormats
}  // namespace ravlin
