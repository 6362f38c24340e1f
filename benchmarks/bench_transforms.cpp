// The transforms at 50 MB against a plain copy, and at 8 MB against 4 MB, on ordinary and on hostile texts. Smaller
// ones would measure where the processor's caches end.

#include "Engine/TextTransform.h"

#include <map>
#include <utility>

#include "benchmarks/Growth.h"
#include "benchmarks/Texts.h"
#include <benchmark/benchmark.h>

namespace {

using namespace ravlin;
using Benchmarks::kMegabyte;

using MakeText = std::string (*)(std::size_t size);

/// The text of a benchmark, made once: making it takes longer than most transforms.
const std::string& cachedText(MakeText makeText, std::size_t size) {
    static std::map<std::pair<MakeText, std::size_t>, std::string> texts;
    std::string& text = texts[{makeText, size}];
    if (text.empty()) text = makeText(size);
    return text;
}

benchmark::internal::Benchmark* registerTransform(const std::string& name, TextTransform transform, MakeText makeText,
                                                  std::size_t size) {
    return benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string& text = cachedText(makeText, size);
        for (auto _ : state) {
            const std::string result = transform.apply(text);
            benchmark::DoNotOptimize(result.data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

void registerCopy(const std::string& name, std::size_t size) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string& text = cachedText(Benchmarks::words, size);
        for (auto _ : state) {
            const std::string copy(text);
            benchmark::DoNotOptimize(copy.data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

const struct {
    const char* name;
    MakeText make;
} kTexts[] = {
    {"words", Benchmarks::words},
    {"oneLine", [](std::size_t size) { return std::string(size, 'x'); }},
    {"emptyLines", [](std::size_t size) { return std::string(size, '\n'); }},
    {"crlf", [](std::size_t size) { return Benchmarks::repeated("\r\n", size); }},
    {"marks", [](std::size_t size) { return Benchmarks::repeated("\u0301", size); }},
    {"mixedMarks", [](std::size_t size) { return Benchmarks::repeated("\u0316\u0301\u0f71", size); }},
    {"punctuation", [](std::size_t size) { return Benchmarks::repeated("'\"-.- +%&<\u2014.\u0301 ", size); }},
    {"changingCase", [](std::size_t size) { return Benchmarks::repeated("aBCd1E\u03a3'\u03a3.", size); }},
};

bool isSort(TextTransform transform) {
    return transform == TextTransform::sortLinesAsc || transform == TextTransform::sortLinesDesc;
}

const bool kRegistered = [] {
    registerCopy("50MB/copy", 50 * kMegabyte);
    for (const TextTransform transform : TextTransform::allCases()) {
        const std::string name(transform.rawValue());
        // The other categories have benchmarks of their own, with texts that are hostile to them.
        if (transform.category() < TransformCategory::caseGroup && transform != TextTransform::stripFormatting)
            continue;
        if (!isSort(transform)) registerTransform("50MB/" + name, transform, Benchmarks::words, 50 * kMegabyte);
        for (const auto& text : kTexts) {
            for (const std::size_t megabytes : {std::size_t{4}, std::size_t{8}}) {
                registerTransform(name + "/" + text.name + "/" + std::to_string(megabytes) + "MB", transform, text.make,
                                  megabytes * kMegabyte)
                    ->Setup(Benchmarks::keepMemory)
                    ->Teardown(Benchmarks::giveMemoryBack);
            }
        }
    }
    return true;
}();

}  // namespace
