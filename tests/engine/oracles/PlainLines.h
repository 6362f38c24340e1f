#pragma once

#include <string>
#include <string_view>

/// The line transforms again, slow and plain.
namespace ravlin::tests {

std::string plainListify(std::string_view text, bool numbered);
std::string plainShuffleLines(std::string_view text);
std::string plainRemoveDuplicateLines(std::string_view text);
std::string plainRemoveEmptyLines(std::string_view text);
std::string plainTrimEachLine(std::string_view text);
std::string plainJoinLines(std::string_view text);
std::string plainQuoteLines(std::string_view text);

}  // namespace ravlin::tests
