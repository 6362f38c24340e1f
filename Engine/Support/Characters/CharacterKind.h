#pragma once

#include "Engine/Support/LazyTable.h"

#include <cstdint>
#include <string_view>

/// What a user-perceived character is when a text is split into words: a letter or a number by its first code point,
/// upper or lower case as a whole.
namespace ravlin::CharacterKind {

/// Any number of these.
using Kind = std::uint8_t;
inline constexpr Kind kKnown = 1;  // so that no kind is 0, which means no character
inline constexpr Kind kLetter = 2;
inline constexpr Kind kNumber = 4;
inline constexpr Kind kUpper = 8;
inline constexpr Kind kLower = 16;

constexpr bool isSeparator(Kind kind) noexcept {
    return (kind & (kLetter | kNumber)) == 0;
}

/// The kind of `character`, which may have several code points.
///     of("e\u0301")  ->  kLetter and kLower
Kind of(std::string_view character) noexcept;

namespace detail {
Kind compute(char32_t scalar) noexcept;
inline constinit LazyTable<Kind, 0x110000, compute> kinds;
}  // namespace detail

/// The kind of a character of one code point.
inline Kind of(char32_t scalar) noexcept {
    return detail::kinds[scalar];
}

/// The kind of an ASCII character.
inline Kind of(char byte) noexcept {
    return of(static_cast<char32_t>(static_cast<unsigned char>(byte)));
}

}  // namespace ravlin::CharacterKind
