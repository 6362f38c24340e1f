#pragma once

#include <string>
#include <string_view>

namespace ravlin::Words {

/// The words of `text`, mapped by `appendMapped` and joined by `separator`, which, like any other, separates the
/// contexts of final sigmas.
///     joined("getJSON", '_', Unicode::appendUpperCased)  ->  "GET_JSON"
std::string joined(std::string_view text, char separator, void (*appendMapped)(std::string&, std::string_view));

/// The words of `text`, joined in lower case with upper-case first characters, except the first word unless
/// `isFirstCapitalised`. Every word is its own context for final sigmas.
///     capitalised("JSON parser", /*isFirstCapitalised=*/false)  ->  "jsonParser"
std::string capitalised(std::string_view text, bool isFirstCapitalised);

}  // namespace ravlin::Words
