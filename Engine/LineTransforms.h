#pragma once

#include <string>
#include <string_view>

/// What treats the text as a sequence of lines, cut and joined by Support/LineModel. A line is blank when it holds
/// nothing but tabs and space separators; one that holds a carriage return is not. Trimming removes the same at the
/// ends of a line.
namespace ravlin::TextTransforms {

/// Trims every line and puts "- " or, where `numbered`, its number and ". " before it. Blank lines become empty and are
/// not counted. Markers that are there already stay.
///     listify("  a\n\n b", /*numbered=*/true)  ->  "1. a\n\n2. b"
std::string listify(std::string_view text, bool numbered);

/// The lines in the order of the user's language, where case does not count and digits are compared one by one. Lines
/// that compare as equal keep their order, ascending and descending.
///     sortLines("b\nB\na", /*ascending=*/false)  ->  "b\nB\na"
std::string sortLines(std::string_view text, bool ascending);

/// The lines in reverse order; a final line feed therefore becomes an empty first line.
///     reverseLines("one\r\ntwo")  ->  "two\none\r"
std::string reverseLines(std::string_view text);

/// The lines shuffled (Fisher-Yates), in the same way whenever there are as many lines.
///     shuffleLines("a\nb\nc\nd\ne")  ->  "a\nc\nb\ne\nd"
std::string shuffleLines(std::string_view text);

/// Keeps the first of all lines that are canonically equivalent, as it was written. Nothing else makes lines equal:
/// case and blanks count.
std::string removeDuplicateLines(std::string_view text);

/// Drops the blank lines and keeps the others as they are.
std::string removeEmptyLines(std::string_view text);

/// Every line trimmed.
std::string trimEachLine(std::string_view text);

/// The lines trimmed and, but for the blank ones, joined by single spaces.
///     joinLines(" one\n\ntwo \n")  ->  "one two"
std::string joinLines(std::string_view text);

/// "> " before every line, ">" for an empty one.
///     quoteLines("a\n")  ->  "> a\n>"
std::string quoteLines(std::string_view text);

}  // namespace ravlin::TextTransforms
