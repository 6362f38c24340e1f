#pragma once

#include "Engine/Support/Characters/Unicode.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace ravlin::tests {

/// What random texts that look like JSON are made of.
inline constexpr auto kJSONTokens = std::to_array<std::string_view>({
    "{",
    "}",
    "[",
    "]",
    ",",
    ":",
    "\"",
    "\\",
    "\"\"",
    "\"a\"",
    "\"k\":",
    "\"\\",
    "\"\n",
    "0",
    "-",
    "1",
    "01",
    ".5",
    "1.5",
    "e",
    "E+1",
    "1e-3",
    "true",
    "false",
    "null",
    "t",
    "nul",
    " ",
    "\n",
    "\r\n",
    "\t",
    "\u00a0",
    "\u2028",
    "\v",
    "\uFEFF",
    "é",
    "😀",
    "[[[[[",
    "]]]]",
    "{}",
    "[]",
    "1,2",
    "[1,",
    ",2]",
    "\x7F",
    "\x01",
    "\\u12",
    "xxxxxxxxxxxxxxxx",
    "\"a string that is somewhat longer than the others, \\\" of two pieces\"",
});

/// Random documents: most are well-formed, the rest are damaged in one place.
class RandomJSON {
public:
    explicit RandomJSON(std::uint32_t seed) : random_(seed) {}

    std::string next() {
        keys_ = 0;
        std::string text = value(0);
        return space() + text + space();
    }

    /// The same with one character changed.
    std::string nextDamaged() {
        std::string text = next();
        constexpr std::string_view kBytes = "{}[],:\"\\ 0-.e\x01";
        char& byte = text[upTo(text.size())];
        if (Unicode::isASCII(byte)) byte = kBytes[upTo(kBytes.size())];
        return text;
    }

    bool hasPlainNumbers = false;  ///< Python has its own ways to write other numbers and escapes

private:
    std::size_t upTo(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

    std::string space() {
        constexpr std::string_view kSpaces[] = {"", "", "", " ", "\n", "\r\n\t", "          ", "\t\t"};
        return std::string(kSpaces[upTo(std::size(kSpaces))]);
    }

    std::string scalar() {
        constexpr std::string_view kPlain[] = {"1", "-20", "0", "true", "false", "null", "\"\"", "\"é 😀\""};
        constexpr std::string_view kAll[] = {"-0.0", "1E+05", "12345678901234567890.10", "\"\\\"\\\\\\/\\u12fG\"",
                                             "\"\\n{[,:]}\""};
        if (upTo(3) == 0) return "\"" + std::string(upTo(90), 'x') + "\"";
        if (hasPlainNumbers || upTo(2) == 0) return std::string(kPlain[upTo(std::size(kPlain))]);
        return std::string(kAll[upTo(std::size(kAll))]);
    }

    std::string value(std::size_t depth) {
        const std::size_t kind = upTo(depth == 0 ? 2 : 4);
        if (kind > 1 || depth > 8) return scalar();
        std::string text;
        for (std::size_t count = upTo(5); count > 0; --count) {
            if (kind == 1) text += space() + "\"key " + std::to_string(++keys_) + "\"" + space() + ":";
            text += space() + value(depth + 1) + space();
            if (count > 1) text += ',';
        }
        if (text.empty()) text = space();
        return kind == 1 ? "{" + text + "}" : "[" + text + "]";
    }

    std::mt19937 random_;
    int keys_ = 0;
};

}  // namespace ravlin::tests
