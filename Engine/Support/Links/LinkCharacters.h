#pragma once

#include "Engine/Support/Characters/ASCII.h"

#include <cstddef>
#include <string_view>

/// What single characters and words mean when links are separated from the text around them.
namespace ravlin::Links {

constexpr bool isOneOf(char byte, std::string_view set) noexcept {
    return set.find(byte) != std::string_view::npos;
}

/// Whether this ASCII character ends any link.
constexpr bool isASCIIBoundary(char byte) noexcept {
    return byte <= ' ' || byte == '\x7F' || isOneOf(byte, "<>\"`\\");
}

/// Whether this character ends any link: white space, invisible characters, quotation marks, dashes, full-width
/// punctuation and the like, which no one writes in a link.
bool isBoundary(char32_t scalar) noexcept;

/// Whether other text may start with this character without a space before it: a letter of a script without spaces, an
/// emoji or a sign.
bool mayFollowWithoutSpace(char32_t scalar) noexcept;

inline constexpr std::string_view kAfterScheme = "://";

/// The size of the "http" or "https" that ends before `colon` and starts at or after `floor`, or 0.
constexpr std::size_t webSchemeSize(std::string_view text, std::size_t floor, std::size_t colon) noexcept {
    for (const std::string_view scheme : {"http", "https"})
        if (colon - floor >= scheme.size() && ASCII::hasWordAt(text, colon - scheme.size(), scheme))
            return scheme.size();
    return 0;
}

}  // namespace ravlin::Links
