#pragma once

#include <cstddef>
#include <string_view>

namespace ravlin::Links {

/// Whether a query item will be removed, by its name as it is written.
using IsRemoved = bool (*)(std::string_view rawName);

/// What a walk over a link found.
struct Walked {
    std::size_t end = 0;      // of the link
    std::size_t readEnd = 0;  // of what was looked at: no other link begins before
    bool isWhole = true;      // see Link::isWhole
};

/// Goes once over the link that starts at byte `begin`, from byte `from` on, up to which it is known, and finds where
/// it ends: where brackets, quotation marks, markup or another link around it go on, or foreign text in an item that
/// will be removed begins.
Walked walkOverLink(std::string_view text, std::size_t begin, std::size_t from, IsRemoved isRemoved);

}  // namespace ravlin::Links
