#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The one rule for splitting text into lines and joining them again.
///
/// Text is split at every "\n" and nowhere else, so N line feeds give N + 1 lines; a carriage return stays in its line.
/// Lines are joined with exactly one "\n" between neighbours and none after the last.
namespace ravlin::LineModel {

/// How many lines `text` has: at least one.
std::size_t count(std::string_view text) noexcept;

/// The lines of `text`, pointing into it.
///     split("a\r\nb\n")  ->  {"a\r", "b", ""}
std::vector<std::string_view> split(std::string_view text);

/// The inverse of `split`.
std::string join(std::span<const std::string_view> lines);

/// Calls `visit` with every line of `text` in order, without building a list.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        visit(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    visit(text);
}

/// Joins lines that are each written in several steps.
///     joiner.startLine() += "a"; joiner.startLine() += "b"; std::move(joiner).text()  ->  "a\nb"
class Joiner {
public:
    /// Reserves room for a text of `expectedSize` bytes.
    explicit Joiner(std::size_t expectedSize) { text_.reserve(expectedSize); }

    /// Starts the next line and returns the text to append it to.
    std::string& startLine() {
        if (hasLines_) text_ += '\n';
        hasLines_ = true;
        return text_;
    }

    std::string text() && { return std::move(text_); }

private:
    std::string text_;
    bool hasLines_ = false;
};

}  // namespace ravlin::LineModel
