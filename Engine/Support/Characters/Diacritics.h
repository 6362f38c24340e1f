#pragma once

#include <string>
#include <string_view>

namespace ravlin::Unicode {

/// `text` without the diacritics of Latin, Greek and Cyrillic. Other scripts lose only marks that are not their own.
///     withoutDiacritics("H\u00E9llo")  ->  "Hello"
std::string withoutDiacritics(std::string_view text);

}  // namespace ravlin::Unicode
