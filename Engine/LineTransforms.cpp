#include "Engine/LineTransforms.h"

#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Collation.h"
#include "Engine/Support/LineModel.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace ravlin::TextTransforms {
namespace {

/// Runs `function` with the smallest type that can hold every offset into `text`: a list of millions of lines is half
/// as large that way.
template <typename Function>
std::string withOffsetType(std::string_view text, Function function) {
    if (text.size() < std::numeric_limits<std::uint32_t>::max()) return function(std::uint32_t{});
    return function(std::uint64_t{});
}

/// The line that starts at byte `start`.
std::string_view lineAt(std::string_view text, std::size_t start) noexcept {
    return text.substr(start, text.find('\n', start) - start);
}

// --- shuffleLines ----------------------------------------------------------------------------------------------------

/// A linear congruential generator with a fixed seed: the same text is always shuffled the same way.
class FixedRandom {
public:
    std::uint64_t next() noexcept {
        state_ = state_ * 0x5851F42D4C957F2D + 0x14057B7EF767814F;
        return state_;
    }

private:
    std::uint64_t state_ = 0x9E3779B97F4A7C15;
};

template <typename Offset>
std::string shuffled(std::string_view text) {
    std::vector<Offset> starts;
    starts.reserve(LineModel::count(text));
    LineModel::forEachLine(
        text, [&](std::string_view line) { starts.push_back(static_cast<Offset>(line.data() - text.data())); });

    FixedRandom random;
    for (std::size_t i = starts.size(); i >= 2; --i) std::swap(starts[i - 1], starts[random.next() % i]);

    LineModel::Joiner joiner(text.size());
    for (const Offset start : starts) joiner.startLine() += lineAt(text, start);
    return std::move(joiner).text();
}

// --- removeDuplicateLines --------------------------------------------------------------------------------------------

/// The distinct lines of a text, as a hash table of where they start. It holds no copies: lines are compared with the
/// text itself.
template <typename Offset>
class SeenLines {
public:
    explicit SeenLines(std::string_view text)
        : text_(text), isComposed_(Unicode::isNFC(text)), slots_(LineModel::count(text) * 3 / 2 + 1) {}

    /// Whether `line`, which points into the text, is the first one of its kind.
    bool isFirst(std::string_view line) {
        const bool isComposed = isComposed_ || Unicode::isNFC(line);
        const std::size_t hash =
            std::hash<std::string_view>()(isComposed ? line : std::string_view(Unicode::nfc(line)));
        for (std::size_t slot = firstSlot(hash);; slot = slot + 1 == slots_.size() ? 0 : slot + 1) {
            if (slots_[slot] == 0) {
                slots_[slot] = static_cast<Offset>(line.data() - text_.data() + 1);
                return true;
            }
            if (isSame(line, lineAt(text_, slots_[slot] - 1))) return false;
        }
    }

private:
    std::size_t firstSlot(std::size_t hash) const noexcept { return hash % slots_.size(); }

    bool isSame(std::string_view a, std::string_view b) const {
        if (a == b) return true;
        if (isComposed_ || (Unicode::isNFC(a) && Unicode::isNFC(b))) return false;
        return Unicode::nfc(a) == Unicode::nfc(b);
    }

    std::string_view text_;
    bool isComposed_;            // so that no line needs to be normalised
    std::vector<Offset> slots_;  // the start of a line plus 1, or 0 for an empty slot
};

template <typename Offset>
std::string withoutDuplicates(std::string_view text) {
    SeenLines<Offset> seen(text);
    LineModel::Joiner joiner(text.size());
    LineModel::forEachLine(text, [&](std::string_view line) {
        if (seen.isFirst(line)) joiner.startLine() += line;
    });
    return std::move(joiner).text();
}

void appendNumber(std::string& text, std::size_t number) {
    std::array<char, std::numeric_limits<std::size_t>::digits10 + 1> digits = {};
    char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text.append(digits.data(), end);
}

/// Whether sorting would leave `text` as it is.
bool isSorted(std::string_view text, const Collation::Sorter& sorter, bool ascending) {
    bool result = true;
    std::string_view previous = lineAt(text, 0);
    LineModel::forEachLine(text, [&](std::string_view line) {
        result = result && sorter.isInOrder(previous, line, ascending);
        previous = line;
    });
    return result;
}

}  // namespace

std::string listify(std::string_view text, bool numbered) {
    const std::size_t lineCount = LineModel::count(text);
    const std::size_t markerSize = numbered ? std::to_string(lineCount).size() + 2 : 2;
    LineModel::Joiner joiner(text.size() + lineCount * markerSize);
    std::size_t counter = 0;
    LineModel::forEachLine(text, [&](std::string_view line) {
        const std::string_view trimmed = Unicode::trimWhitespaces(line);
        std::string& result = joiner.startLine();
        if (trimmed.empty()) return;
        if (numbered) appendNumber(result, ++counter);
        result += numbered ? ". " : "- ";
        result += trimmed;
    });
    return std::move(joiner).text();
}

std::string sortLines(std::string_view text, bool ascending) {
    Collation::Sorter sorter(Collation::userLocale());
    if (isSorted(text, sorter, ascending)) return std::string(text);
    sorter.reserve(LineModel::count(text));
    std::string_view previous = "\n";  // unlike any line
    LineModel::forEachLine(text, [&](std::string_view line) {
        // Equal neighbours stay together, so they are sorted as one.
        if (line == previous) return sorter.extendLast(line.size() + 1);
        sorter.add(line);
        previous = line;
    });
    sorter.sort(ascending);
    LineModel::Joiner joiner(text.size());
    sorter.forEach([&](std::string_view line) { joiner.startLine() += line; });
    return std::move(joiner).text();
}

std::string reverseLines(std::string_view text) {
    LineModel::Joiner joiner(text.size());
    for (std::size_t end = text.rfind('\n'); end != std::string_view::npos; end = text.rfind('\n')) {
        joiner.startLine() += text.substr(end + 1);
        text = text.substr(0, end);
    }
    joiner.startLine() += text;
    return std::move(joiner).text();
}

std::string shuffleLines(std::string_view text) {
    return withOffsetType(text, [&](auto offset) { return shuffled<decltype(offset)>(text); });
}

std::string removeDuplicateLines(std::string_view text) {
    return withOffsetType(text, [&](auto offset) { return withoutDuplicates<decltype(offset)>(text); });
}

std::string removeEmptyLines(std::string_view text) {
    LineModel::Joiner joiner(text.size());
    LineModel::forEachLine(text, [&](std::string_view line) {
        if (!Unicode::trimWhitespaces(line).empty()) joiner.startLine() += line;
    });
    return std::move(joiner).text();
}

std::string trimEachLine(std::string_view text) {
    LineModel::Joiner joiner(text.size());
    LineModel::forEachLine(text, [&](std::string_view line) { joiner.startLine() += Unicode::trimWhitespaces(line); });
    return std::move(joiner).text();
}

std::string joinLines(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    LineModel::forEachLine(text, [&](std::string_view line) {
        const std::string_view trimmed = Unicode::trimWhitespaces(line);
        if (trimmed.empty()) return;
        if (!result.empty()) result += ' ';
        result += trimmed;
    });
    return result;
}

std::string quoteLines(std::string_view text) {
    LineModel::Joiner joiner(text.size() + 2 * LineModel::count(text));
    LineModel::forEachLine(text, [&](std::string_view line) {
        std::string& result = joiner.startLine();
        result += line.empty() ? ">" : "> ";
        result += line;
    });
    return std::move(joiner).text();
}

}  // namespace ravlin::TextTransforms
