#include "Engine/Support/LineModel.h"

#include <algorithm>

namespace ravlin::LineModel {

std::size_t count(std::string_view text) noexcept {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
}

std::vector<std::string_view> split(std::string_view text) {
    std::vector<std::string_view> lines;
    lines.reserve(count(text));
    forEachLine(text, [&](std::string_view line) { lines.push_back(line); });
    return lines;
}

std::string join(std::span<const std::string_view> lines) {
    std::size_t size = lines.empty() ? 0 : lines.size() - 1;
    for (const std::string_view line : lines) size += line.size();
    Joiner joiner(size);
    for (const std::string_view line : lines) joiner.startLine() += line;
    return std::move(joiner).text();
}

}  // namespace ravlin::LineModel
