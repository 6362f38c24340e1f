#pragma once

#include <string>
#include <string_view>

/// Letter case and words.
namespace ravlin::TextTransforms {

/// Maps the first character of every word to title case and the others to lower case.
///
/// A word starts at a letter or number and goes on over letters, numbers, marks and what is ignored between cased
/// letters: apostrophes, soft hyphens, modifiers. White space, "-", "_", ".", ":", "/", quotation marks, symbols and
/// emoji end it.
///     titleCase("hELLO o'neil, science-based 3D")  ->  "Hello O'neil, Science-Based 3d"
std::string titleCase(std::string_view text);

}  // namespace ravlin::TextTransforms
