#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// Literal search-and-replace.
///
/// Occurrences match exact code points, from the start and without overlap. One counts only if both its ends are
/// boundaries of user-perceived characters, so "&" with an accent is not "&"; the point between CR and LF counts as
/// such a boundary, so that line ends can be taken apart.
namespace ravlin::Replace {

struct Literal {
    std::string_view from;
    std::string_view to;
};

/// Replaces every occurrence of `from`, which is not empty, with `to`.
///     all("a--b---", "--", "-")  ->  "a-b--"
std::string all(std::string_view text, std::string_view from, std::string_view to);

/// Whether the bytes [`at`, `at + size`) of `text`, an occurrence of a literal, begin and end with whole characters.
bool isWhole(std::string_view text, std::size_t at, std::size_t size) noexcept;

/// Several replacements of single code points, done in one pass.
template <std::size_t kCount>
class Table {
public:
    consteval explicit Table(const std::array<Literal, kCount>& literals) : literals_(literals) {
        for (const Literal& literal : literals_) isLead_[static_cast<unsigned char>(literal.from.front())] = true;
        if (!isSameAsStepByStep()) throw "a later step would act on what an earlier one wrote";
    }

    std::span<const Literal> literals() const noexcept { return literals_; }
    const std::array<bool, 256>& isLead() const noexcept { return isLead_; }

private:
    consteval bool isSameAsStepByStep() const {
        for (std::size_t step = 0; step < kCount; ++step)
            for (std::size_t later = step + 1; later < kCount; ++later)
                if (literals_[step].to.find(literals_[later].from) != std::string_view::npos ||
                    literals_[step].from == literals_[later].from)
                    return false;
        return true;
    }

    std::array<Literal, kCount> literals_;
    std::array<bool, 256> isLead_ = {};
};

namespace detail {
std::string each(std::string_view text, std::span<const Literal> literals, const std::array<bool, 256>& isLead);
}

/// Replaces the literals of `table`, with the same result as replacing them one after another.
template <std::size_t kCount>
std::string each(std::string_view text, const Table<kCount>& table) {
    return detail::each(text, table.literals(), table.isLead());
}

}  // namespace ravlin::Replace
