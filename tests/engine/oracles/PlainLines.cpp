#include "tests/engine/oracles/PlainLines.h"

#include "tests/engine/oracles/Oracle.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace ravlin::tests {
namespace {

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines = {""};
    for (const char byte : text) {
        if (byte == '\n')
            lines.emplace_back();
        else
            lines.back() += byte;
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines, std::string_view separator = "\n") {
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0) text += separator;
        text += lines[i];
    }
    return text;
}

std::string trimmed(std::string_view text) {
    std::vector<char32_t> scalars = Oracle::scalars(text);
    const auto isBlank = [](char32_t c) {
        return c == U'\t' || u_charType(static_cast<UChar32>(c)) == U_SPACE_SEPARATOR;
    };
    while (!scalars.empty() && isBlank(scalars.back())) scalars.pop_back();
    while (!scalars.empty() && isBlank(scalars.front())) scalars.erase(scalars.begin());
    return Oracle::utf8(scalars);
}

std::string inNFC(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::string result;
    const icu::UnicodeString units = icu::UnicodeString::fromUTF8(text);
    icu::Normalizer2::getNFCInstance(status)->normalize(units, status).toUTF8String(result);
    return result;
}

}  // namespace

std::string plainListify(std::string_view text, bool numbered) {
    std::vector<std::string> lines = linesOf(text);
    int counter = 0;
    for (std::string& line : lines) {
        line = trimmed(line);
        if (line.empty()) continue;
        line = (numbered ? std::to_string(++counter) + ". " : "- ") + line;
    }
    return joined(lines);
}

std::string plainShuffleLines(std::string_view text) {
    std::vector<std::string> lines = linesOf(text);
    std::uint64_t state = 11400714819323198485U;
    for (std::size_t i = lines.size(); i >= 2; --i) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        const std::size_t j = state % i;
        if (j != i - 1) std::swap(lines[i - 1], lines[j]);
    }
    return joined(lines);
}

std::string plainRemoveDuplicateLines(std::string_view text) {
    std::set<std::string> seen;
    std::vector<std::string> kept;
    for (const std::string& line : linesOf(text))
        if (seen.insert(inNFC(line)).second) kept.push_back(line);
    return joined(kept);
}

std::string plainRemoveEmptyLines(std::string_view text) {
    std::vector<std::string> kept;
    for (const std::string& line : linesOf(text))
        if (!trimmed(line).empty()) kept.push_back(line);
    return joined(kept);
}

std::string plainTrimEachLine(std::string_view text) {
    std::vector<std::string> lines = linesOf(text);
    for (std::string& line : lines) line = trimmed(line);
    return joined(lines);
}

std::string plainJoinLines(std::string_view text) {
    std::vector<std::string> kept;
    for (const std::string& line : linesOf(text))
        if (!trimmed(line).empty()) kept.push_back(trimmed(line));
    return joined(kept, " ");
}

std::string plainQuoteLines(std::string_view text) {
    std::vector<std::string> lines = linesOf(text);
    for (std::string& line : lines) line = line.empty() ? ">" : "> " + line;
    return joined(lines);
}

}  // namespace ravlin::tests
