#include "Engine/Support/Links/CharacterReference.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>

namespace ravlin::Links {
namespace {

constexpr auto kNames = std::to_array<std::string_view>({
#include "Engine/Support/Links/ReferenceNames.inc"
});
static_assert(std::is_sorted(kNames.begin(), kNames.end()));

/// The size of the longest reference, with its "&" and ";".
constexpr std::size_t kLongest = [] {
    std::size_t longest = 0;
    for (const std::string_view name : kNames) longest = std::max(longest, name.size() + 2);
    return longest;
}();

/// Whether `name`, the part between "&" and ";", is that of the ampersand itself, in any case.
constexpr bool isAmpersand(std::string_view name) noexcept {
    constexpr auto kAmpersands = std::to_array<std::string_view>({"amp", "#38", "#038", "#x26"});
    return std::any_of(kAmpersands.begin(), kAmpersands.end(),
                       [name](std::string_view each) { return ASCII::isWord(name, each); });
}

constexpr bool isNumber(std::string_view name) noexcept {
    return name.size() > 1 && name.front() == '#';
}

}  // namespace

CharacterReference referenceAt(std::string_view text, std::size_t at) noexcept {
    const std::size_t limit = std::min(text.size(), at + kLongest);
    std::size_t end = at + 1;
    if (Scan::peek(text, end) == '#') ++end;
    while (end < limit && ASCII::isAlphanumeric(text[end])) ++end;
    if (end >= limit || text[end] != ';') return {};
    const std::string_view name = Scan::between(text, at + 1, end);
    const std::size_t size = name.size() + 2;
    if (isAmpersand(name)) return {.size = size, .isAmpersand = true};
    return {.size = isNumber(name) || std::binary_search(kNames.begin(), kNames.end(), name) ? size : 0};
}

std::size_t sizeOfReferenceBefore(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    const std::size_t from = end - begin > kLongest ? end - kLongest : begin;
    std::size_t at = end - 1;
    while (at > from && ASCII::isAlphanumeric(text[at - 1])) --at;
    if (at > from && text[at - 1] == '#') --at;
    if (at == from || text[at - 1] != '&') return 0;
    const CharacterReference reference = referenceAt(text, at - 1);
    return reference.size == end - (at - 1) ? reference.size : 0;
}

}  // namespace ravlin::Links
