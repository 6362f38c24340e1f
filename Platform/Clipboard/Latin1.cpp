#include "Platform/Clipboard/Latin1.h"

#include <algorithm>
#include <cstddef>

namespace ravlin::Latin1 {
namespace {

constexpr unsigned char kFirstBeyondASCII = 0x80;
// U+0080 to U+00BF are the lead byte C2 and the byte itself; U+00C0 to U+00FF are C3 and the byte less 40 (hex).
constexpr unsigned char kLowerHalf = 0xC2;
constexpr unsigned char kUpperHalf = 0xC3;
constexpr unsigned char kUpperHalfOffset = 0x40;

bool isASCII(char byte) {
    return static_cast<unsigned char>(byte) < kFirstBeyondASCII;
}

}  // namespace

std::string toUTF8(std::string_view latin1) {
    std::string text;
    text.reserve(latin1.size());
    while (!latin1.empty()) {
        const auto* const runEnd = std::find_if_not(latin1.begin(), latin1.end(), isASCII);
        text.append(latin1.begin(), runEnd);
        latin1.remove_prefix(static_cast<std::size_t>(runEnd - latin1.begin()));
        if (latin1.empty()) break;
        const auto byte = static_cast<unsigned char>(latin1.front());
        const bool isUpperHalf = byte >= kFirstBeyondASCII + kUpperHalfOffset;
        text.push_back(static_cast<char>(isUpperHalf ? kUpperHalf : kLowerHalf));
        text.push_back(static_cast<char>(isUpperHalf ? byte - kUpperHalfOffset : byte));
        latin1.remove_prefix(1);
    }
    return text;
}

bool canHold(std::string_view text) {
    // In valid UTF-8 every byte above C3 leads a character above U+00FF, and no other character has such a byte.
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) <= kUpperHalf; });
}

std::optional<std::string> fromUTF8(std::string_view text) {
    if (!canHold(text)) return std::nullopt;
    std::string latin1;
    latin1.reserve(text.size());
    bool isUpperHalf = false;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == kLowerHalf || byte == kUpperHalf) {
            isUpperHalf = byte == kUpperHalf;
        } else {
            latin1.push_back(static_cast<char>(isUpperHalf ? byte + kUpperHalfOffset : byte));
            isUpperHalf = false;
        }
    }
    return latin1;
}

}  // namespace ravlin::Latin1
