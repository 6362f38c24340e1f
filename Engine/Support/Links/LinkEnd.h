#pragma once

#include <cstddef>
#include <string_view>

/// What stands at the end of a link and behind it.
namespace ravlin::Links {

/// The end of the link of bytes [`begin`, `end`) without the punctuation that no link ends with: that of the sentence,
/// a character reference, an apostrophe without its twin, and the mark of emphasis that stands before the link.
///     trimmedEnd("a.test/x!...", 0, 12)  ->  8
std::size_t trimmedEnd(std::string_view text, std::size_t begin, std::size_t end) noexcept;

/// Whether what follows the link of bytes [`begin`, `end`) stands for a part of it: an escape of some programming or
/// markup language as in "?a=1\u0026b=2", or a placeholder as in "?a={{ a }}".
bool goesOn(std::string_view text, std::size_t begin, std::size_t end) noexcept;

}  // namespace ravlin::Links
