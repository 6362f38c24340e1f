#include "Engine/SpacingTransforms.h"

#include "Engine/Support/Replace.h"
#include "Engine/Support/Unicode.h"

#include <algorithm>
#include <array>

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
    for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
        const auto [piece, isPlain] = pieces.next();
        to -= piece.size();
        if (isPlain)
            std::reverse_copy(piece.begin(), piece.end(), to);
        else
            std::copy(piece.begin(), piece.end(), to);
    }
    return result;
}

}  // namespace ravlin::TextTransforms
