#pragma once

#include <string>
#include <string_view>

/// What cleaning may do to a text with links, step by step and without haste.
namespace ravlin::tests {

/// The text with nothing but its links cleaned, and those without a scheme completed.
std::string cleanedAround(std::string_view text);

/// What holds for all links of a text, and is broken in this one; null where nothing is.
const char* brokenRuleOfLinks(std::string_view text);

}  // namespace ravlin::tests
