#include "Engine/Support/Links/CharacterReference.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>

namespace ravlin::Links {
namespace {

constexpr std::size_t kLongest = 10;  // bytes

}  // namespace

CharacterReference referenceAt(std::string_view text, std::size_t at) noexcept {
    const std::string_view start = text.substr(at, kLongest);
    const std::size_t end = start.find(';');
    if (end == std::string_view::npos) return {};
    const std::string_view name = start.substr(1, end - 1);
    const std::string_view word = name.starts_with('#') ? name.substr(1) : name;
    const bool isWord = std::all_of(word.begin(), word.end(), ASCII::isAlphanumeric);
    if (!isWord || name.size() < 2 || ASCII::isDigit(name[0])) return {};
    constexpr auto kAmpersands = std::to_array<std::string_view>({"amp", "#38", "#038", "#x26"});
    const bool isAmpersand = std::any_of(kAmpersands.begin(), kAmpersands.end(),
                                         [&](std::string_view each) { return ASCII::isWord(name, each); });
    return {.size = end + 1, .isAmpersand = isAmpersand};
}

std::size_t sizeOfReferenceBefore(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    const std::size_t from = end - begin > kLongest ? end - kLongest : begin;
    const std::size_t ampersand = Scan::between(text, from, end).rfind('&');
    if (ampersand == std::string_view::npos) return 0;
    const std::size_t size = end - (from + ampersand);
    return referenceAt(text, from + ampersand).size == size ? size : 0;
}

}  // namespace ravlin::Links
