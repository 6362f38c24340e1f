// The transforms at 50 MB against a plain copy, and at 1 and 2 MB against themselves.

#include "Engine/TextTransform.h"

#include "benchmarks/Texts.h"
#include <benchmark/benchmark.h>

namespace {

using namespace ravlin;

void registerTransform(const std::string& name, TextTransform transform, std::string (*makeText)(std::size_t),
                       std::size_t size) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string text = makeText(size);
        for (auto _ : state) {
            const std::string result = transform.apply(text);
            benchmark::DoNotOptimize(result.data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

void registerCopy(const std::string& name, std::size_t size) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string text = Benchmarks::words(size);
        for (auto _ : state) {
            const std::string copy(text);
            benchmark::DoNotOptimize(copy.data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

const bool kRegistered = [] {
    registerCopy("50MB/copy", 50 * Benchmarks::kMegabyte);
    for (const TextTransform transform :
         {TextTransform::stripFormatting, TextTransform::upperCase, TextTransform::lowerCase, TextTransform::titleCase,
          TextTransform::reverseLines, TextTransform::tabsToSpaces, TextTransform::normalizeDashes,
          TextTransform::reverseCharacters, TextTransform::base64Encode, TextTransform::urlEncode,
          TextTransform::urlDecode, TextTransform::htmlEntitiesEncode}) {
        const std::string name(transform.rawValue());
        registerTransform("50MB/" + name, transform, Benchmarks::words, 50 * Benchmarks::kMegabyte);
    }
    return true;
}();

}  // namespace
