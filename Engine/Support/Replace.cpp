#include "Engine/Support/Replace.h"

#include "Engine/Support/Characters/Unicode.h"

#include <algorithm>

namespace ravlin::Replace {
namespace {

bool isEdge(std::string_view text, std::size_t at) noexcept {
    if (at == 0 || at == text.size()) return true;
    // Between ASCII neighbours only CR LF has no boundary, and here it counts as one.
    if (Unicode::isASCII(text[at - 1]) && Unicode::isASCII(text[at])) return true;
    return Unicode::isCharacterBoundary(text, at);
}

/// Calls `visit` with every piece of the new text. Run twice, it measures the new text and then writes it, so that a
/// text of many megabytes is never held a third time.
template <typename Find, typename Visit>
void forEachPiece(std::string_view text, Find find, Visit visit) {
    std::size_t copied = 0;
    for (std::size_t at = 0; const Literal* const found = find(at); copied = at) {
        visit(text.substr(copied, at - copied));
        visit(found->to);
        at += found->from.size();
    }
    visit(text.substr(copied));
}

template <typename Find>
std::string rewrite(std::string_view text, Find find) {
    std::size_t size = 0;
    forEachPiece(text, find, [&](std::string_view piece) { size += piece.size(); });
    std::string result;
    result.reserve(size);
    forEachPiece(text, find, [&](std::string_view piece) { result += piece; });
    return result;
}

const Literal* literalAt(std::string_view text, std::size_t at, std::span<const Literal> literals) noexcept {
    const std::string_view rest = text.substr(at);
    const auto found = std::find_if(literals.begin(), literals.end(),
                                    [&](const Literal& literal) { return rest.starts_with(literal.from); });
    if (found == literals.end() || !isWhole(text, at, found->from.size())) return nullptr;
    return &*found;
}

}  // namespace

bool isWhole(std::string_view text, std::size_t at, std::size_t size) noexcept {
    return isEdge(text, at) && isEdge(text, at + size);
}

std::string all(std::string_view text, std::string_view from, std::string_view to) {
    const Literal literal = {.from = from, .to = to};
    return rewrite(text, [&](std::size_t& at) -> const Literal* {
        for (at = text.find(from, at); at != std::string_view::npos; at = text.find(from, at + 1))
            if (isWhole(text, at, from.size())) return &literal;
        return nullptr;
    });
}

std::string detail::each(std::string_view text, std::span<const Literal> literals,
                         const std::array<bool, 256>& isLead) {
    return rewrite(text, [&](std::size_t& at) -> const Literal* {
        for (; at < text.size(); ++at) {
            if (!isLead[static_cast<unsigned char>(text[at])]) continue;
            if (const Literal* const found = literalAt(text, at, literals)) return found;
        }
        return nullptr;
    });
}

}  // namespace ravlin::Replace
