#pragma once

#include <string>
#include <string_view>

/// Transforms that treat the text as a sequence of lines, split and joined by Support/LineModel. A line is blank if it
/// holds nothing but tabs and space separators; one with a carriage return is not. Trimming removes the same characters
/// from both ends of a line.
namespace ravlin::TextTransforms {

/// Trims every line and puts "- " or, if `numbered`, its number and ". " before it. Blank lines become empty and are
/// not counted. Existing markers stay.
///     listify("  a\n\n b", /*numbered=*/true)  ->  "1. a\n\n2. b"
std::string listify(std::string_view text, bool numbered);

/// The lines in the order of the user's language, ignoring case and comparing digits one by one. Lines that compare
/// equal keep their order, whether ascending or descending.
///     sortLines("b\nB\na", /*ascending=*/false)  ->  "b\nB\na"
std::string sortLines(std::string_view text, bool ascending);

/// The lines in reverse order; a final line feed therefore becomes an empty first line.
///     reverseLines("one\r\ntwo")  ->  "two\none\r"
std::string reverseLines(std::string_view text);

/// The lines shuffled (Fisher-Yates), always in the same way for the same number of lines.
///     shuffleLines("a\nb\nc\nd\ne")  ->  "a\nc\nb\ne\nd"
std::string shuffleLines(std::string_view text);

/// Keeps the first of all canonically equivalent lines, as written. Nothing else makes lines equal: case and blanks
/// count.
std::string removeDuplicateLines(std::string_view text);

/// Drops the blank lines and keeps the others as they are.
std::string removeEmptyLines(std::string_view text);

/// Every line trimmed.
std::string trimEachLine(std::string_view text);

/// The lines, except blank ones, trimmed and joined by single spaces.
///     joinLines(" one\n\ntwo \n")  ->  "one two"
std::string joinLines(std::string_view text);

/// "> " before every line, ">" for an empty one.
///     quoteLines("a\n")  ->  "> a\n>"
std::string quoteLines(std::string_view text);

}  // namespace ravlin::TextTransforms
