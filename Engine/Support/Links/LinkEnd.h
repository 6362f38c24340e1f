#pragma once

#include <cstddef>
#include <string_view>

/// The end of a link and what follows it.
namespace ravlin::Links {

/// The end of the link of bytes [`begin`, `end`) without the punctuation that no link ends with: that of the sentence,
/// a character reference, an unpaired apostrophe, and the emphasis mark that also precedes the link.
///     trimmedEnd("a.test/x!...", 0, 12)  ->  8
std::size_t trimmedEnd(std::string_view text, std::size_t begin, std::size_t end) noexcept;

/// Whether what follows the link of bytes [`begin`, `end`) is a part of it: an escape of some programming or markup
/// language as in "?a=1\u0026b=2", or a placeholder as in "?a={{ a }}".
bool goesOn(std::string_view text, std::size_t begin, std::size_t end) noexcept;

}  // namespace ravlin::Links
