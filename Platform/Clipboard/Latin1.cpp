#include "Platform/Clipboard/Latin1.h"

#include "Engine/Support/Characters/Unicode.h"

#include <cstddef>

namespace ravlin::Latin1 {
namespace {

constexpr char32_t kLast = 0xFF;

}  // namespace

std::string toUTF8(std::string_view latin1) {
    std::string text;
    text.reserve(latin1.size());
    for (std::size_t at = 0; at < latin1.size();) {
        const std::size_t asciiEnd = Unicode::asciiRunEnd(latin1, at);
        text += latin1.substr(at, asciiEnd - at);
        for (at = asciiEnd; at < latin1.size() && !Unicode::isASCII(latin1[at]); ++at)
            Unicode::append(text, static_cast<unsigned char>(latin1[at]));
    }
    return text;
}

bool canHold(std::string_view text) {
    for (std::size_t at = Unicode::asciiRunEnd(text, 0); at < text.size();) {
        const Unicode::Scalar scalar = Unicode::decode(text, at);
        if (scalar.value > kLast) return false;
        at = Unicode::asciiRunEnd(text, at + scalar.byteSize);
    }
    return true;
}

std::optional<std::string> fromUTF8(std::string_view text) {
    if (!canHold(text)) return std::nullopt;
    std::string latin1;
    latin1.reserve(text.size());
    Unicode::forEachRun(
        text, 0, [&](std::string_view run) { latin1 += run; },
        [&](char32_t scalar, std::string_view /*bytes*/) { latin1 += static_cast<char>(scalar); });
    return latin1;
}

}  // namespace ravlin::Latin1
