#include "Platform/Clipboard/TextFormats.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Platform/Clipboard/Latin1.h"

#include <algorithm>
#include <utility>

namespace ravlin::TextFormats {
namespace {

/// The form in which names are compared.
std::string normalized(std::string_view name) {
    std::string result;
    for (const char each : name) {
        if (each != ' ') result += ASCII::toLower(each);
    }
    return result;
}

}  // namespace

bool isNameOf(std::string_view offered, const TextFormat& format) {
    return normalized(offered) == normalized(format.name);
}

std::optional<Match> best(Type type, const std::vector<std::string>& offered) {
    for (const TextFormat& format : kAll) {
        if (format.type != type) continue;
        const auto isMeant = [&format](const std::string& name) { return isNameOf(name, format); };
        const auto found = std::ranges::find_if(offered, isMeant);
        if (found != offered.end()) return Match{format, *found};
    }
    return std::nullopt;
}

std::optional<Encoding> encodingOf(const TextFormat& format, const TextFormat* told) {
    if (format.encoding == Encoding::utf8) return Encoding::utf8;
    if (told != nullptr) return told->encoding == Encoding::latin1 ? Encoding::latin1 : Encoding::utf8;
    return format.encoding == Encoding::usuallyUTF8 ? std::optional(Encoding::utf8) : std::nullopt;
}

std::optional<std::string> decoded(Encoding encoding, std::string bytes) {
    if (bytes.ends_with('\0')) bytes.pop_back();
    if (encoding == Encoding::latin1) return Latin1::toUTF8(bytes);
    return Unicode::isValidUTF8(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<std::string> decodedUntyped(const TextFormat& format, std::string bytes) {
    const bool isLatin1 = format.encoding == Encoding::latin1 && !Unicode::isValidUTF8(bytes);
    return decoded(isLatin1 ? Encoding::latin1 : Encoding::utf8, std::move(bytes));
}

}  // namespace ravlin::TextFormats
