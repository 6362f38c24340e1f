// What the transforms take beyond their input and output at 50 MB, as the system sees it: each runs in a process of its
// own, whose high-water mark is reset before.

#include "Engine/TextTransform.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/Documents.h"
#include "benchmarks/Texts.h"
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace ravlin;
using Benchmarks::kMegabyte;

constexpr std::size_t kTextSize = 50 * kMegabyte;

/// The line of /proc/self/status that starts with `label` and counts kilobytes, in bytes.
double statusBytes(std::string_view label) {
    std::FILE* const file = std::fopen("/proc/self/status", "r");
    if (file == nullptr) return 0;
    std::array<char, 256> line = {};
    double bytes = 0;
    while (bytes == 0 && std::fgets(line.data(), static_cast<int>(line.size()), file) != nullptr)
        if (std::string_view(line.data()).starts_with(label)) bytes = 1024 * std::atof(line.data() + label.size());
    std::fclose(file);
    return bytes;
}

void resetHighWaterMark() {
    std::FILE* const file = std::fopen("/proc/self/clear_refs", "w");
    if (file == nullptr) return;
    std::fputs("5", file);
    std::fclose(file);
}

/// The bytes that one run takes beyond the text and the result.
double extraBytes(TextTransform transform, const std::string& text) {
    transform.apply("a\nb");  // loads what ICU loads once
    resetHighWaterMark();
    const double before = statusBytes("VmRSS:");
    const std::string result = transform.apply(text);
    return statusBytes("VmHWM:") - before - static_cast<double>(result.size());
}

/// The same in a process of its own, since freed memory would serve the next transform.
double extraBytesInChild(TextTransform transform, const std::string& text) {
    std::array<int, 2> ends = {};
    if (pipe(ends.data()) != 0) std::abort();
    const pid_t child = fork();
    double bytes = 0;
    if (child == 0) {
        bytes = extraBytes(transform, std::string(text));
        _exit(write(ends[1], &bytes, sizeof(bytes)) == sizeof(bytes) ? 0 : 1);
    }
    close(ends[1]);
    if (read(ends[0], &bytes, sizeof(bytes)) != sizeof(bytes)) std::abort();
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return bytes;
}

void registerTransform(const std::string& name, TextTransform transform, const std::string& text) {
    benchmark::RegisterBenchmark(
        name.c_str(),
        [&text, transform](benchmark::State& state) {
            double extra = 0;
            for (auto _ : state) extra = extraBytesInChild(transform, text);
            const auto lines = static_cast<double>(std::count(text.begin(), text.end(), '\n') + 1);
            state.counters["extraMiB"] = extra / 0x100000;
            // What sorting may take: one and a half times the text, and 32 bytes per line.
            state.counters["sortShare"] = extra / (1.5 * static_cast<double>(text.size()) + 32 * lines);
        })
        ->Iterations(1)
        ->Repetitions(1);
}

const bool kRegistered = [] {
    static const std::string words = Benchmarks::words(kTextSize);
    static const std::string french = Benchmarks::repeated(Benchmarks::kScripts[1].text, kTextSize);
    static_assert(Benchmarks::kScripts[1].name[0] == 'f');
    for (const TextTransform transform : TextTransform::allCases()) {
        const bool isSort = transform.rawValue().starts_with("sort");
        const std::string name = (isSort ? "memoryOfSort/" : "memory/") + std::string(transform.rawValue());
        registerTransform(name + "/words", transform, words);
        registerTransform(name + "/french", transform, french);
    }
    // Texts that these transforms do something with. The brackets would fill 20 GB.
    static const std::string document = Benchmarks::jsonDocument(kTextSize);
    static const std::string brackets = std::string(100'000, '[') + std::string(100'000, ']');
    static const std::string base64 = TextTransform(TextTransform::base64Encode).apply(words);
    static const std::string digits = TextTransform(TextTransform::hexEncode).apply(words);
    registerTransform("memory/jsonPretty/document", TextTransform::jsonPretty, document);
    registerTransform("memory/jsonMinify/document", TextTransform::jsonMinify, document);
    registerTransform("memory/jsonPretty/nestedArrays", TextTransform::jsonPretty, brackets);
    registerTransform("memory/base64Decode/encoded", TextTransform::base64Decode, base64);
    registerTransform("memory/hexDecode/encoded", TextTransform::hexDecode, digits);
    registerTransform("memory/backslashEscape/document", TextTransform::backslashEscape, document);
    return true;
}();

}  // namespace
