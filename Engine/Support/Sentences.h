#pragma once

#include <string>

/// A sentence ends at ".", "!" or "?" directly before a space, a line feed, a tab or the end of the text.
namespace ravlin::Sentences {

/// `text` with the first letter of it and of every sentence in upper case, and nothing else changed. Digits do not
/// start a sentence.
///     capitalised("is it? 1st. yes")  ->  "Is it? 1St. Yes"
std::string capitalised(std::string text);

}  // namespace ravlin::Sentences
