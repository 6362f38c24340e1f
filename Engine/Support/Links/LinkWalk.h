#pragma once

#include <cstddef>
#include <string_view>

namespace ravlin::Links {

/// Whether a query item will be removed, by its name as written.
using IsRemoved = bool (*)(std::string_view rawName);

/// The result of a walk over a link.
struct Walked {
    std::size_t end = 0;      // of the link
    std::size_t readEnd = 0;  // of what was examined: no other link begins before it
    bool isWhole = true;      // see Link::isWhole
};

/// Walks once over the link that starts at byte `begin`, from byte `from` on, up to which it is known, and finds its
/// end: where the brackets, quotation marks, markup or other link around it continue, or where foreign text begins in
/// an item that will be removed.
Walked walkOverLink(std::string_view text, std::size_t begin, std::size_t from, IsRemoved isRemoved);

}  // namespace ravlin::Links
