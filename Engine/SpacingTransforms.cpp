#include "Engine/SpacingTransforms.h"

#include "Engine/Support/Replace.h"
#include "Engine/Support/Unicode.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ravlin::TextTransforms {
namespace {

constexpr Replace::Table kPlainDashes(std::to_array<Replace::Literal>({
    {"\u2026", "..."},
    {"\u2014", "--"},
    {"\u2013", "-"},
    {"\u2012", "-"},
    {"\u2015", "--"},
}));

constexpr Replace::Table kSpacesForTabs(std::to_array<Replace::Literal>({{"\t", "    "}}));

/// The end of the bytes from `at` on that are characters of their own, given where the run of ASCII ends.
std::size_t singlesEnd(std::string_view text, std::size_t at, std::size_t asciiEnd) noexcept {
    if (at + 1 >= asciiEnd) return at;
    const std::string_view run = text.substr(at, asciiEnd - 1 - at);
    return at + std::min(run.find('\r'), run.size());
}

}  // namespace

std::string stripFormatting(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t end = text.find('\r'); end != std::string_view::npos; end = text.find('\r')) {
        result += text.substr(0, end);
        result += '\n';
        text.remove_prefix(end + 1);
        if (text.starts_with('\n')) text.remove_prefix(1);
    }
    result += text;
    return result;
}

std::string tabsToSpaces(std::string_view text) {
    return Replace::each(text, kSpacesForTabs);
}

std::string normalizeDashes(std::string_view text) {
    return Replace::each(text, kPlainDashes);
}

std::string reverseCharacters(std::string_view text) {
    std::string result(text.size(), '\0');
    char* to = result.data() + result.size();
    for (std::size_t at = 0, asciiEnd = 0; at < text.size();) {
        if (at >= asciiEnd) asciiEnd = Unicode::asciiRunEnd(text, at);
        // Up to a CR, and to the last ASCII character, which may carry a mark, every byte is a character.
        const std::size_t end = singlesEnd(text, at, asciiEnd);
        to = std::reverse_copy(text.data() + at, text.data() + end, to - (end - at)) - (end - at);
        at = end;
        if (at == text.size()) break;

        const std::size_t size = Unicode::characterEnd(text, at) - at;
        to -= size;
        std::memcpy(to, text.data() + at, size);
        at += size;
    }
    return result;
}

}  // namespace ravlin::TextTransforms
