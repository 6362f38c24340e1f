// Counting characters, which every click does twice, against ICU's own iterator.

#include "Engine/Support/Characters/Unicode.h"
#include "benchmarks/Texts.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/utext.h>

#include <memory>

#include <benchmark/benchmark.h>

namespace {

using namespace ravlin;

std::int64_t countWithICU(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    static const std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText* const utext = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator->setText(utext, status);
    std::int64_t count = 0;
    while (iterator->next() != icu::BreakIterator::DONE) ++count;
    utext_close(utext);
    return count;
}

template <typename Count>
void registerCount(const std::string& name, std::string_view sample, Count count) {
    benchmark::RegisterBenchmark(name.c_str(), [sample, count](benchmark::State& state) {
        const std::string text = Benchmarks::repeated(sample, 4 * Benchmarks::kMegabyte);
        for (auto _ : state) benchmark::DoNotOptimize(count(text));
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

const bool kRegistered = [] {
    for (const Benchmarks::Sample& sample : Benchmarks::kScripts) {
        registerCount(std::string("count/") + sample.name, sample.text, Unicode::characterCount);
        registerCount(std::string("countWithICU/") + sample.name, sample.text, countWithICU);
    }
    return true;
}();

}  // namespace
