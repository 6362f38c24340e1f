#include "tests/engine/oracles/PlainSpacing.h"

#include "Engine/Support/LineModel.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/oracles/PatternOracle.h"

#include <utility>
#include <vector>

namespace ravlin::tests {

std::string plainSmartQuotes(std::string_view text) {
    std::string result;
    std::string before;
    bool opensNext = true;
    for (const std::string& character : Oracle::characters(text)) {
        if (character == "\"") {
            result += opensNext ? "“" : "”";
            opensNext = !opensNext;
        } else if (character == "'") {
            const bool opens =
                before.empty() || before == " " || before == "\n" || before == "\t" || before == "(" || before == "“";
            result += opens ? "‘" : "’";
        } else {
            result += character;
        }
        before = character;
    }
    for (const auto& [from, to] : {std::pair("---", "—"), {"--", "–"}, {"...", "…"}})
        result = Oracle::replaceAll(result, from, to);
    return result;
}

std::string plainCollapseSpaces(std::string_view text) {
    static const auto collapsed = PatternOracle::replacing("[ \t]{2,}", " ");
    static const auto trimmed = PatternOracle::replacing("\\A[\\p{Zs}\t]+|[\\p{Zs}\t]+\\z", "");
    static const auto withoutBlankLines = PatternOracle::replacing("\n{3,}", "\n\n");
    std::vector<std::string> lines;
    for (const std::string_view line : LineModel::split(text)) lines.push_back(trimmed(collapsed(line)));
    return withoutBlankLines(LineModel::join(std::vector<std::string_view>(lines.begin(), lines.end())));
}

std::string plainRemoveAllSpaces(std::string_view text) {
    static const auto removed = PatternOracle::replacing("\\p{White_Space}", "");
    return removed(text);
}

std::string plainSpacesToTabs(std::string_view text, std::int64_t width) {
    std::string result;
    for (const std::string_view line : LineModel::split(text)) {
        const std::vector<std::string> characters = Oracle::characters(line);
        std::size_t spaces = 0;
        while (spaces < characters.size() && characters[spaces] == " ") ++spaces;
        const std::size_t tabs = width == 0 ? 0 : spaces / static_cast<std::size_t>(width);
        result += std::string(tabs, '\t');
        for (std::size_t k = tabs * static_cast<std::size_t>(width); k < characters.size(); ++k)
            result += characters[k];
        result += '\n';
    }
    result.pop_back();
    return result;
}

}  // namespace ravlin::tests
