#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Slow and plain versions of what the engine does quickly, built on ICU's own services, and random texts to compare
/// the two with. Every random text comes from a fixed seed, so a failure shows itself again.
namespace ravlin::Oracle {

/// The user-perceived characters of `text`, by ICU's root character iterator.
std::vector<std::string> characters(std::string_view text);

/// The code points of `text`, which is well-formed.
std::vector<char32_t> scalars(std::string_view text);

std::string utf8(std::span<const char32_t> scalars);
std::string utf8(char32_t scalar);

/// Whole-text case mapping by ICU.
std::string lowerCased(std::string_view text);
std::string upperCased(std::string_view text);

/// One code point mapped to title case by ICU.
std::string titleCased(char32_t scalar);

/// Every occurrence of `from` that begins and ends with whole characters replaced by `to`, found by ICU's iterator; the
/// point between CR and LF counts as such an end.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

/// Random well-formed texts of up to `maxLength` code points from an alphabet.
class Texts {
public:
    Texts(std::u32string_view alphabet, std::size_t maxLength, std::uint32_t seed = 1)
        : alphabet_(alphabet), maxLength_(maxLength), random_(seed) {}

    std::string next();

private:
    std::u32string alphabet_;
    std::size_t maxLength_;
    std::mt19937 random_;
};

/// Code points from every class that the rules of user-perceived characters tell apart, and from their borders.
extern const std::u32string_view kClusterAlphabet;

/// The same and letters, digits, white space, quotes and punctuation that text functions look at.
extern const std::u32string_view kTextAlphabet;

}  // namespace ravlin::Oracle
