#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The spacing and typography transforms again, as they are described.
namespace ravlin::tests {

std::string plainSmartQuotes(std::string_view text);
std::string plainCollapseSpaces(std::string_view text);
std::string plainRemoveAllSpaces(std::string_view text);
std::string plainSpacesToTabs(std::string_view text, std::int64_t width);

}  // namespace ravlin::tests
