// growth [REGEX [COUNT [SEED]]]: whether time grows in proportion to the size of the text, whatever is in it.
//
// Runs each transform whose identifier matches, and the rich-text reader, on COUNT random periodic texts (1,000 by
// default), and lists those that take long and more than 6.5 times as long as a quarter of the same text. Ends with
// status 1 if there are any.

#include "benchmarks/Growth.h"

#include "Engine/CleaningTransforms.h"
#include "Engine/HTMLTransforms.h"
#include "Engine/Support/RichText/RichText.h"
#include "Engine/TextTransform.h"
#include "benchmarks/Texts.h"
#include "tests/engine/texts/HTMLTokens.h"
#include "tests/engine/texts/LinkTokens.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <regex>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <time.h>

namespace {

using namespace ravlin;
using Tokens = std::span<const std::string_view>;

constexpr double kMostGrowth = 6.5;  // linear is 4 to 5, quadratic 16
constexpr int kMostRuns = 9;

// More than all but the sorts take on ordinary text. Anything faster is left alone, because its times are not exact.
constexpr double kSecondsPerByte = 5e-8;

// --- Texts -----------------------------------------------------------------------------------------------------------

constexpr auto kGeneralTokens = std::to_array<std::string_view>({
    "a",  "b",  "Z",  "word", "Word",   "WORD",   "0",      "19",     "007",    " ",      "  ",     "    ",   "\t",
    "\n", "\r", "\n", "\n\n", ".",      ". ",     ", ",     ":",      "-",      "--",     "---",    "_",      "'",
    "\"", "`",  "(",  ")",    "[",      "]",      "{",      "}",      "<",      ">",      "&",      "&amp",   ";",
    "#",  "%",  "%4", "%41",  "%E9",    "+",      "=",      "/",      "\\",     "\\n",    "\\u",    "0x",     "4a",
    "|",  "~",  "*",  "!",    "?",      "@",      "eyJ",    "e30",    "\u00e9", "\u0301", "\u0345", "ß",      "İ",
    "Σ",  "ς",  "ﬁ",  "ǅ",    "“",      "’",      "—",      "…",      "\u00a0", "\u2003", "\u200b", "\u00ad", "谢",
    "が", "각", "ᄀ", "क",    "\u094d", "\u0600", "\u0d4e", "\u200d", "😀",      "👨",      "🏽",   "🇫",
});

constexpr auto kJSONTokens = std::to_array<std::string_view>({
    "[",   "]", "{", "}",   ",",   ":",    "[]",   "{}", "\"", "\"a\"", "\"a\":", "\\",     "\\\"",
    "\\u", "0", "-", "1.5", "1e9", "true", "null", " ",  "\n", "\t",    "x",      "\u00e9", "\u00a0",
});

constexpr auto kRTFTokens = std::to_array<std::string_view>({
    "{",
    "}",
    "{\\*",
    "\\",
    "\\'",
    "\\'e9",
    "\\u233",
    "\\u-3",
    "?",
    "\\uc2 ",
    "\\b ",
    "\\par ",
    "\\line",
    "\\tab ",
    "\\cell",
    "\\row ",
    "\\f1 ",
    "\\plain ",
    "\\bin3 ",
    "\\pntext",
    "\\pard",
    "\\fonttbl",
    "{\\f1\\fcharset204 A;}",
    "\\ansicpg932 ",
    "\\'82\\'a0",
    "\n",
    "a",
    " ",
    ";",
    "\xE9",
});

/// Three units, each repeated, one after another or taking turns.
struct Recipe {
    std::array<std::string, 3> units;
    bool areTakingTurns = false;

    /// A text of up to `size` bytes that does not end within a unit.
    std::string text(std::size_t size) const {
        if (areTakingTurns) return Benchmarks::repeated(units[0] + units[1] + units[2], size);
        std::string text;
        for (const std::string& unit : units) text += Benchmarks::repeated(unit, size / units.size());
        return text;
    }
};

class Recipes {
public:
    Recipes(Tokens tokens, std::uint64_t seed) : tokens_(tokens), random_(seed) {}

    Recipe next() {
        Recipe recipe;
        for (std::string& unit : recipe.units)
            for (std::uint64_t count = 1 + random_() % 4; count > 0; --count)
                unit += tokens_[random_() % tokens_.size()];
        recipe.areTakingTurns = random_() % 4 == 0;
        return recipe;
    }

private:
    Tokens tokens_;
    std::mt19937_64 random_;
};

// --- Measuring -------------------------------------------------------------------------------------------------------

struct Subject {
    std::string name;
    std::function<std::string(const std::string&)> function;
    Tokens tokens;
    std::size_t size;  // bytes of the large text
    std::string start = {};
};

struct Run {
    double seconds = 1e9;
    std::size_t resultSize = 0;
};

void measure(const Subject& subject, const std::string& text, Run& run) {
    const auto now = [] {
        timespec time = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    const double start = now();
    run.resultSize = subject.function(text).size();
    run.seconds = std::min(run.seconds, now() - start);
}

struct Summary {
    std::uint64_t count = 0;
    std::uint64_t flaggedCount = 0;
    double mostSeconds = 0;
};

void look(const Subject& subject, const Recipe& recipe, Summary& summary) {
    const std::string large = subject.start + recipe.text(subject.size);
    Run ofLarge;
    measure(subject, large, ofLarge);
    ++summary.count;
    if (ofLarge.seconds > kSecondsPerByte * static_cast<double>(large.size())) {
        const std::string small = subject.start + recipe.text(subject.size / 4);
        Run ofSmall;
        // A disturbance is gone in the next measurement; what is slow remains slow.
        for (int i = 0; i < kMostRuns && (i == 0 || ofLarge.seconds > kMostGrowth * ofSmall.seconds); ++i) {
            measure(subject, small, ofSmall);
            measure(subject, large, ofLarge);
        }
        const double growth = ofLarge.seconds / ofSmall.seconds;
        // Deeply nested JSON, indented, grows to the square of its size, and writing that takes time.
        const bool isResultThatLarge =
            static_cast<double>(ofLarge.resultSize) > kMostGrowth * static_cast<double>(ofSmall.resultSize);
        if (growth > kMostGrowth && !isResultThatLarge) {
            ++summary.flaggedCount;
            std::printf("%s: %.1f times, %.1f ms: \"%s\" \"%s\" \"%s\"%s\n", subject.name.c_str(), growth,
                        ofLarge.seconds * 1e3, recipe.units[0].c_str(), recipe.units[1].c_str(),
                        recipe.units[2].c_str(), recipe.areTakingTurns ? " in turn" : "");
        }
    }
    summary.mostSeconds = std::max(summary.mostSeconds, ofLarge.seconds);
}

bool searches(const Subject& subject, std::uint64_t count, std::uint64_t seed) {
    Recipes recipes(subject.tokens, seed);
    Summary summary;
    for (std::uint64_t i = 0; i < count; ++i) look(subject, recipes.next(), summary);
    std::printf("%-20s %llu texts, %zu bytes take at most %.1f ms, %llu grow faster than their size\n",
                subject.name.c_str(), static_cast<unsigned long long>(summary.count), subject.size,
                summary.mostSeconds * 1e3, static_cast<unsigned long long>(summary.flaggedCount));
    std::fflush(stdout);
    return summary.flaggedCount == 0;
}

Tokens tokensFor(TextTransform transform) {
    switch (transform) {
        case TextTransform::stripTracking: return tests::kLinkTokens;
        case TextTransform::stripHTML:
        case TextTransform::htmlToMarkdown: return tests::kHTMLTokens;
        case TextTransform::htmlEntitiesDecode: return tests::kReferenceTokens;
        case TextTransform::markdownToHTML: return tests::kMarkdownTokens;
        case TextTransform::jsonPretty:
        case TextTransform::jsonMinify: return kJSONTokens;
        default: return kGeneralTokens;
    }
}

/// The largest text that a transform does not leave alone, but no more than 1 MiB.
std::size_t sizeFor(TextTransform transform) {
    const bool isHTML = transform == TextTransform::stripHTML || transform == TextTransform::htmlToMarkdown;
    return isHTML ? TextTransforms::kMaxHTMLSize : TextTransforms::kMaxTrackingSize;
}

std::vector<Subject> allSubjects() {
    std::vector<Subject> subjects;
    for (const TextTransform transform : TextTransform::allCases()) {
        subjects.push_back({.name = std::string(transform.rawValue()),
                            .function = [transform](const std::string& text) { return transform.apply(text); },
                            .tokens = tokensFor(transform),
                            .size = sizeFor(transform)});
    }
    subjects.push_back({.name = "richText",
                        .function = [](const std::string& text) { return RichText::plainText(text).value_or(""); },
                        .tokens = kRTFTokens,
                        .size = std::size_t{1} << 20U,
                        .start = "{\\rtf1\\ansi "});
    return subjects;
}

}  // namespace

int main(int argc, char** argv) {
    // The process keeps its memory, so that the comparison does not include page faults, which only large texts cause.
    Benchmarks::keepMemory();
    const std::regex pattern(argc > 1 ? argv[1] : ".");
    const std::uint64_t count = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1'000;
    const std::uint64_t seed = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
    bool isLinear = true;
    for (const Subject& subject : allSubjects())
        if (std::regex_search(subject.name, pattern)) isLinear = searches(subject, count, seed) && isLinear;
    return isLinear ? EXIT_SUCCESS : EXIT_FAILURE;
}
