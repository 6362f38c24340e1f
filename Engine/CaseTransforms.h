#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Letter case and words, by user-perceived character: its first code point decides whether a character is a letter or
/// a number, and it is upper or lower case as a whole.
namespace ravlin::TextTransforms {

/// Maps the first character of every word to title case and the others to lower case.
///
/// A word starts at a letter or number and continues through letters, numbers, marks and anything ignored between cased
/// letters: apostrophes, soft hyphens, modifiers. White space, "-", "_", ".", ":", "/", quotation marks, symbols and
/// emoji end it.
///     titleCase("hELLO o'neil, science-based 3D")  ->  "Hello O'neil, Science-Based 3d"
std::string titleCase(std::string_view text);

/// Lower-cases the text, then upper-cases the first letter of it and of every sentence. A sentence ends at ".", "!" or
/// "?" directly before a space, a line feed, a tab or the end of the text; digits do not start one.
///     sentenceCase("is IT? 1st. yes")  ->  "Is it? 1St. Yes"
std::string sentenceCase(std::string_view text);

/// Upper-cases every letter that follows a character that is neither a letter nor a number; lower-cases nothing.
///     capitalizeWords("wORLD-foo o'neil 3d")  ->  "WORLD-Foo O'Neil 3d"
std::string capitalizeWords(std::string_view text);

/// The words of `text`, case kept: split at anything but letters and numbers, between lower case or a digit and upper
/// case, and before the last of several capitals that lower case follows.
///     tokenizeWords("getJSONResponse2Go don't")  ->  {"get", "JSON", "Response2", "Go", "don", "t"}
std::vector<std::string> tokenizeWords(std::string_view text);

/// The words lower-cased and joined without a separator, all but the first with an upper-case first character.
///     camelCase("JSONParser error")  ->  "jsonParserError"
std::string camelCase(std::string_view text);

/// The same, with an upper-case first character in the first word as well.
std::string pascalCase(std::string_view text);

/// The words lower-cased and joined by "_".
///     snakeCase("JSONParser error")  ->  "json_parser_error"
std::string snakeCase(std::string_view text);

/// The words lower-cased and joined by "-".
std::string kebabCase(std::string_view text);

/// The words upper-cased and joined by "_".
std::string constantCase(std::string_view text);

/// The runs of letters and numbers, lower-cased, without the diacritics of Latin, Greek and Cyrillic, joined by "-".
/// Other scripts keep their marks; nothing is transliterated.
///     slugify("H\u00E9llo, W\u00F6rld! 2024")  ->  "hello-world-2024"
std::string slugify(std::string_view text);

}  // namespace ravlin::TextTransforms
