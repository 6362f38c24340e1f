// growth_html [COUNT [SEED]]: whether time grows in proportion to the size of the text, whatever it holds.
//
// Runs the HTML and Markdown transforms on COUNT random periodic texts (10,000 by default) of n and of 4 n bytes, and
// lists those that take more than 6.5 times as long. Ends with status 1 if there are any.

#include "Engine/HTMLTransforms.h"
#include "Engine/MarkdownTransforms.h"
#include "tests/engine/HTMLTokens.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <span>
#include <string>

#include "benchmarks/Texts.h"
#include <malloc.h>

namespace {

using namespace ravlin;
using TextFunction = std::string (*)(std::string_view);

constexpr std::size_t kSmallSize = 65'536;
constexpr std::size_t kLargeSize = 4 * kSmallSize;
constexpr double kMostGrowth = 6.5;
constexpr int kMostRuns = 9;

double cpuSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double secondsOf(TextFunction function, const std::string& text) {
    const double start = cpuSeconds();
    const std::string result = function(text);
    const double seconds = cpuSeconds() - start;
    return result.empty() ? std::max(seconds, 1e-9) : seconds;
}

/// Three units, each again and again, one after another or taking turns.
struct Recipe {
    std::array<std::string, 3> units;
    bool areTakingTurns = false;

    /// A text of up to `size` bytes, which does not end within a unit.
    std::string text(std::size_t size) const {
        if (areTakingTurns) return Benchmarks::repeated(units[0] + units[1] + units[2], size);
        std::string text;
        for (const std::string& unit : units) text += Benchmarks::repeated(unit, size / units.size());
        return text;
    }
};

class Recipes {
public:
    Recipes(std::span<const std::string_view> tokens, std::uint64_t seed) : tokens_(tokens), random_(seed) {}

    Recipe next() {
        Recipe recipe;
        for (std::string& unit : recipe.units)
            for (std::uint64_t count = 1 + random_() % 3; count > 0; --count)
                unit += tokens_[random_() % tokens_.size()];
        recipe.areTakingTurns = random_() % 4 == 0;
        return recipe;
    }

private:
    std::span<const std::string_view> tokens_;
    std::mt19937_64 random_;
};

/// The best times so far of one function on two texts.
struct Times {
    double small = 1e9;
    double large = 1e9;

    void measure(TextFunction function, const std::string& smallText, const std::string& largeText) {
        small = std::min(small, secondsOf(function, smallText));
        large = std::min(large, secondsOf(function, largeText));
    }
    double growth() const { return large / small; }
};

struct Summary {
    std::uint64_t count = 0;
    std::uint64_t flaggedCount = 0;
    double mostGrowth = 0;
    double mostSeconds = 0;
};

void run(const char* name, TextFunction function, const Recipe& recipe, Summary& summary) {
    const std::string smallText = recipe.text(kSmallSize);
    const std::string largeText = recipe.text(kLargeSize);
    Times times;
    // What disturbs one measurement is gone in the next; what is slow remains slow.
    for (int i = 0; i < kMostRuns && (i == 0 || times.growth() > kMostGrowth); ++i)
        times.measure(function, smallText, largeText);
    ++summary.count;
    summary.mostGrowth = std::max(summary.mostGrowth, times.growth());
    summary.mostSeconds = std::max(summary.mostSeconds, times.large);
    if (times.growth() <= kMostGrowth) return;
    ++summary.flaggedCount;
    std::printf("%s: %.1f times, %.1f ms: \"%s\" \"%s\" \"%s\"\n", name, times.growth(), times.large * 1e3,
                recipe.units[0].c_str(), recipe.units[1].c_str(), recipe.units[2].c_str());
}

void print(const char* name, const Summary& summary) {
    std::printf("%-15s %llu texts, growth at most %.2f, %zu bytes take at most %.1f ms, %llu above %.1f\n", name,
                static_cast<unsigned long long>(summary.count), summary.mostGrowth, kLargeSize,
                summary.mostSeconds * 1e3, static_cast<unsigned long long>(summary.flaggedCount), kMostGrowth);
}

}  // namespace

int main(int argc, char** argv) {
    // Memory stays with the process, so that it is not page faults, which only large texts cause, that are compared.
    mallopt(M_MMAP_THRESHOLD, 1 << 25);
    mallopt(M_TRIM_THRESHOLD, 1 << 28);
    const std::uint64_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 10'000;
    const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    struct Subject {
        const char* name;
        TextFunction function;
        std::span<const std::string_view> tokens;
    };
    const Subject subjects[] = {
        {"stripHTML", TextTransforms::stripHTML, tests::kHTMLTokens},
        {"htmlToMarkdown", TextTransforms::htmlToMarkdown, tests::kHTMLTokens},
        {"decodeEntities", TextTransforms::decodeEntities, tests::kReferenceTokens},
        {"markdownToHTML", TextTransforms::markdownToHTML, tests::kMarkdownTokens},
    };
    bool isLinear = true;
    for (const Subject& subject : subjects) {
        Recipes recipes(subject.tokens, seed);
        Summary summary;
        for (std::uint64_t i = 0; i < count; ++i) run(subject.name, subject.function, recipes.next(), summary);
        print(subject.name, summary);
        isLinear = isLinear && summary.flaggedCount == 0;
    }
    return isLinear ? EXIT_SUCCESS : EXIT_FAILURE;
}
