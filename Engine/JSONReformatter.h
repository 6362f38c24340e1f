#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ravlin::TextTransforms {

/// The longest indented JSON that is written. Indentation grows with the square of the nesting, so that 200 KB of
/// brackets would fill 20 GB.
inline constexpr std::size_t kMaxPrettySize = std::size_t{1} << 30U;  // UTF-8 bytes

/// One JSON value (RFC 8259) written anew: indented by two spaces a level where `pretty`, else without any space. Only
/// the white space between tokens changes: strings, numbers and the order of keys stay exactly as they stand, and
/// escapes are not looked into. White space around the value goes. The text comes back unchanged where it is not one
/// well-formed value, or where the indented form is longer than `kMaxPrettySize`.
///     jsonReformat("[1.0,{}]", true)    ->  "[\n  1.0,\n  {}\n]"
///     jsonReformat("[ 1.0, { } ]", false)  ->  "[1.0,{}]"        jsonReformat("[1,]", false)  ->  "[1,]"
std::string jsonReformat(std::string_view text, bool pretty);

}  // namespace ravlin::TextTransforms
