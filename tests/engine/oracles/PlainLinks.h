#pragma once

#include <string>
#include <string_view>

/// What cleaning may do to a text with links, step by step, without hurry.
namespace ravlin::tests {

/// The text with only its links cleaned, and those without a scheme completed.
std::string cleanedAround(std::string_view text);

/// What holds for all links of a text but is broken in this one; null if nothing is.
const char* brokenRuleOfLinks(std::string_view text);

}  // namespace ravlin::tests
