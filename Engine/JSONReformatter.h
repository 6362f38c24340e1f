#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ravlin::TextTransforms {

/// The longest indented JSON that is written. Indentation grows with the square of the nesting: 200 KB of brackets
/// would fill 20 GB.
inline constexpr std::size_t kMaxPrettySize = std::size_t{1} << 30U;  // UTF-8 bytes

/// Reformats one JSON value (RFC 8259): indented by two spaces per level if `pretty`, otherwise without any white
/// space. Only the white space between tokens changes: strings, numbers and the order of keys stay exactly as written,
/// and escapes are not interpreted. White space around the value is removed. The text comes back unchanged if it is not
/// one well-formed value, or if the indented form is longer than `kMaxPrettySize`.
///     jsonReformat("[1.0,{}]", true)    ->  "[\n  1.0,\n  {}\n]"
///     jsonReformat("[ 1.0, { } ]", false)  ->  "[1.0,{}]"        jsonReformat("[1,]", false)  ->  "[1,]"
std::string jsonReformat(std::string_view text, bool pretty);

}  // namespace ravlin::TextTransforms
