#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin::tests {

/// Random texts made of tokens. Each text uses only a few of them, so that the same ones meet repeatedly. Equal seeds
/// give equal texts.
class RandomTexts {
public:
    RandomTexts(std::span<const std::string_view> tokens, std::uint64_t seed) : tokens_(tokens), random_(seed) {}

    std::string next() {
        std::vector<std::string_view> chosen(upTo(12));
        for (std::string_view& token : chosen) token = tokens_[upTo(tokens_.size()) - 1];
        std::string text;
        for (std::size_t length = upTo(upTo(3) == 1 ? 60 : 16); length > 0; --length)
            text += chosen[upTo(chosen.size()) - 1];
        return text;
    }

private:
    /// 1 ... limit
    std::size_t upTo(std::size_t limit) { return 1 + static_cast<std::size_t>(random_() % limit); }

    std::span<const std::string_view> tokens_;
    std::mt19937_64 random_;
};

}  // namespace ravlin::tests
