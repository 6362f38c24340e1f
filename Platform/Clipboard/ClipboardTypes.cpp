#include "Platform/Clipboard/ClipboardTypes.h"

#include "Engine/Support/Characters/Unicode.h"
#include "Platform/Clipboard/Latin1.h"

#include <algorithm>
#include <array>
#include <span>

namespace ravlin::ClipboardTypes {
namespace {

constexpr std::string_view kLatin1Type = "STRING";

// The best first. What has no name of a character set is UTF-8 nowadays; "STRING", which X11 programs behind a
// Wayland compositor mean as Latin-1, may be either.
constexpr auto kPlainTypes =
    std::to_array<std::string_view>({"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", kLatin1Type, "TEXT"});
constexpr auto kRTFTypes = std::to_array<std::string_view>({"text/rtf", "application/rtf", "text/richtext"});
constexpr auto kHTMLTypes = std::to_array<std::string_view>({"text/html"});

// What our text is offered as besides `kLatin1Type`, always in UTF-8.
constexpr auto kServedTypes =
    std::to_array<std::string_view>({"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", "TEXT"});

std::span<const std::string_view> namesOf(Pasteboard::Type type) {
    switch (type) {
        case Pasteboard::Type::string: return kPlainTypes;
        case Pasteboard::Type::rtf: return kRTFTypes;
        case Pasteboard::Type::html: return kHTMLTypes;
    }
    return {};
}

/// A MIME type in the one form that it is compared in: programs differ in case and in spaces before parameters.
std::string normalized(std::string_view type) {
    std::string result;
    for (const char each : type) {
        if (each != ' ') result += each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
    }
    return result;
}

}  // namespace

const std::string* best(Pasteboard::Type type, const std::vector<std::string>& offered) {
    for (const std::string_view name : namesOf(type)) {
        const auto isMeant = [wanted = normalized(name)](const std::string& each) {
            return normalized(each) == wanted;
        };
        const auto found = std::ranges::find_if(offered, isMeant);
        if (found != offered.end()) return &*found;
    }
    return nullptr;
}

std::optional<std::string> decoded(std::string_view name, std::string bytes) {
    if (bytes.ends_with('\0')) bytes.pop_back();  // which some programs count in
    if (Unicode::isValidUTF8(bytes)) return bytes;
    return normalized(name) == normalized(kLatin1Type) ? std::optional(Latin1::toUTF8(bytes)) : std::nullopt;
}

std::vector<std::string> servedTypes(std::string_view text) {
    std::vector<std::string> types(kServedTypes.begin(), kServedTypes.end());
    if (Latin1::canHold(text)) types.emplace_back(kLatin1Type);
    return types;
}

std::shared_ptr<const std::string> encoded(std::string_view name, std::shared_ptr<const std::string> text) {
    if (name != kLatin1Type) return text;
    return std::make_shared<const std::string>(Latin1::fromUTF8(*text).value_or(""));
}

}  // namespace ravlin::ClipboardTypes
