#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace ravlin::tests {

/// Code points from every class that the rules for user-perceived characters distinguish, and from their borders.
extern const std::u32string_view kClusterAlphabet;

/// The same, and letters, digits, white space, quotes and punctuation that text functions look for.
extern const std::u32string_view kTextAlphabet;

/// Random well-formed texts of up to `maxLength` code points from an alphabet. Equal seeds give equal texts, so a
/// failure can be reproduced.
class AlphabetTexts {
public:
    AlphabetTexts(std::u32string_view alphabet, std::size_t maxLength, std::uint32_t seed = 1)
        : alphabet_(alphabet), maxLength_(maxLength), random_(seed) {}

    std::string next();

private:
    std::u32string alphabet_;
    std::size_t maxLength_;
    std::mt19937 random_;
};

}  // namespace ravlin::tests
