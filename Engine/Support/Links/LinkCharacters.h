#pragma once

#include "Engine/Support/Characters/ASCII.h"

#include <cstddef>
#include <string_view>

/// What single characters and words mean where links are told from the text around them.
namespace ravlin::Links {

constexpr bool isOneOf(char byte, std::string_view set) noexcept {
    return set.find(byte) != std::string_view::npos;
}

/// Whether no link goes on over this ASCII character.
constexpr bool isASCIIBoundary(char byte) noexcept {
    return byte <= ' ' || byte == '\x7F' || isOneOf(byte, "<>\"`\\");
}

/// Whether no link goes on over this character: white space, what is not seen, quotation marks, dashes, full-width
/// punctuation and the like, which no one writes in a link.
bool isBoundary(char32_t scalar) noexcept;

/// Whether text of a script that has no spaces, or an emoji or a sign, may begin here without a space before it.
bool mayFollowWithoutSpace(char32_t scalar) noexcept;

inline constexpr std::string_view kAfterScheme = "://";

/// The size of the "http" or "https" that ends before `colon` and starts not before `floor`, or 0.
constexpr std::size_t webSchemeSize(std::string_view text, std::size_t floor, std::size_t colon) noexcept {
    for (const std::string_view scheme : {"http", "https"})
        if (colon - floor >= scheme.size() && ASCII::hasWordAt(text, colon - scheme.size(), scheme))
            return scheme.size();
    return 0;
}

}  // namespace ravlin::Links
