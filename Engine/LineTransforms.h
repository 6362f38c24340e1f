#pragma once

#include <string>
#include <string_view>

/// What treats the text as a sequence of lines, cut and joined by Support/LineModel.
namespace ravlin::TextTransforms {

/// The lines in reverse order; a final line feed therefore becomes an empty first line.
///     reverseLines("one\r\ntwo")  ->  "two\none\r"
std::string reverseLines(std::string_view text);

}  // namespace ravlin::TextTransforms
