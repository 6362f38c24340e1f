#include "Engine/Support/Links/LinkCharacters.h"

#include "Engine/Support/Characters/Unicode.h"

#include <algorithm>
#include <array>

namespace ravlin::Links {
namespace {

constexpr auto kBoundaries = std::to_array<char32_t>({
    0x00AB, 0x00BB,  // double angle quotation marks
    0x2014,          // em dash
    0x201C, 0x201D,
    0x201E, 0x201F,  // double quotation marks
    0x2026,          // ellipsis
    0x2039, 0x203A,  // single angle quotation marks
    0x3001, 0x3002,  // ideographic comma and full stop
    0x3008, 0x3009,
    0x300A, 0x300B,
    0x300C, 0x300D,
    0x300E, 0x300F,  // East Asian brackets
    0x3010, 0x3011,
    0x3014, 0x3015,  // more of them
    0x30FB,          // katakana middle dot
    0xFF01, 0xFF02,
    0xFF07, 0xFF08,
    0xFF09, 0xFF0C,
    0xFF0E,  // full-width ! " ' ( ) , .
    0xFF1A, 0xFF1B,
    0xFF1F, 0xFF3B,
    0xFF3D, 0xFF5B,
    0xFF5C, 0xFF5D,                 // full-width : ; ? [ ] { | }
    0xFF65,                         // half-width katakana middle dot
    0xFFFC, Unicode::kReplacement,  // object replacement, replacement character
});
static_assert(std::is_sorted(kBoundaries.begin(), kBoundaries.end()));

}  // namespace

bool isBoundary(char32_t scalar) noexcept {
    if (scalar < 0x80) return isASCIIBoundary(static_cast<char>(scalar));
    if (std::binary_search(kBoundaries.begin(), kBoundaries.end(), scalar)) return true;
    return Unicode::isWhitespaceOrNewline(scalar) || (Unicode::isOther(scalar) && !Unicode::isJoiner(scalar));
}

bool mayFollowWithoutSpace(char32_t scalar) noexcept {
    return !Unicode::isCased(scalar) && !Unicode::isMark(scalar) && !Unicode::isJoiner(scalar);
}

}  // namespace ravlin::Links
