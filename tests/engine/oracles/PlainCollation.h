#pragma once

#include <string>
#include <string_view>

namespace ravlin::tests {

/// The lines of `text`, sorted by a stable sort that asks ICU about every pair.
std::string plainlySorted(std::string_view text, const char* locale, bool ascending);

}  // namespace ravlin::tests
