#pragma once

#include <cstddef>
#include <string_view>

/// HTML's character references, as found around and within links in source text.
namespace ravlin::Links {

/// "&amp;", "&#38;", "&nbsp;" and the like.
struct CharacterReference {
    std::size_t size = 0;  // bytes; 0 if there is none
    bool isAmpersand = false;
};

/// The reference that starts with the "&" at byte `at`: a number, or a name that HTML knows. Any other name is that of
/// a query item, even if a ";" follows it.
CharacterReference referenceAt(std::string_view text, std::size_t at) noexcept;

/// The size of the reference that ends before byte `end` and starts at or after `begin`, or 0.
std::size_t sizeOfReferenceBefore(std::string_view text, std::size_t begin, std::size_t end) noexcept;

}  // namespace ravlin::Links
