// Cleaning links: ordinary texts and hostile ones, all within the size limit.

#include "Engine/CleaningTransforms.h"
#include "benchmarks/Documents.h"
#include "benchmarks/HostileLinks.h"

#include <functional>

#include <benchmark/benchmark.h>

namespace {

using namespace ravlin;
using TextFunction = std::string (*)(std::string_view);
using MakeText = std::function<std::string(std::size_t size)>;

void add(const std::string& name, TextFunction function, const MakeText& makeText, std::size_t size) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string text = makeText(size);
        for (auto _ : state) {
            const std::string result = function(text);
            benchmark::DoNotOptimize(result.data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

const bool kRegistered = [] {
    constexpr std::size_t kOne = 1'000'000;  // bytes; twice that would be above the limit
    add("cleaning/words", TextTransforms::stripTracking, Benchmarks::words, kOne);
    for (const Benchmarks::Sample& script : Benchmarks::kScripts)
        add(
            std::string("cleaning/script/") + script.name, TextTransforms::stripTracking,
            [text = script.text](std::size_t size) { return Benchmarks::repeated(text, size); }, kOne);
    add("cleaning/mails", TextTransforms::stripTracking, Benchmarks::mails, kOne);
    for (const Benchmarks::HostileLinks& text : Benchmarks::kHostileLinks) {
        add(std::string("hostile/stripTracking/") + text.name, TextTransforms::stripTracking, text.make, kOne);
    }

    return true;
}();

}  // namespace
