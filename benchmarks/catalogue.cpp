// catalogue [REGEX [TOPICS]]: measures every transform whose identifier matches, at 1 KB, 1 MB and 50 MB, and its
// growth and its memory; or only the topics that match the second expression: "md5/50MB", "click/md5", "md5/one line"
// (growth), "memory/md5". Writes JSON: numbers in nanoseconds of processor time by name, and the texts they were
// measured on. catalogue --text IDENTIFIER BYTES: writes a transform's ordinary text, to measure other programs with.

#include "Engine/Support/Characters/Unicode.h"
#include "benchmarks/CatalogueTexts.h"
#include "benchmarks/Growth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <regex>

#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace {

using namespace ravlin;
using Benchmarks::kMegabyte;
using Benchmarks::NamedText;

constexpr std::size_t kLargest = 50 * kMegabyte;

bool isSort(TextTransform transform) {
    return transform == TextTransform::sortLinesAsc || transform == TextTransform::sortLinesDesc;
}

bool isToken(TextTransform transform) {
    return transform == TextTransform::jwtDecode;
}

/// A sort is not, and a digest is only a few bytes, however long the text.
bool isMeantToBeAsFastAsACopy(TextTransform transform) {
    const bool isDigest =
        transform == TextTransform::md5 || transform == TextTransform::sha1 || transform == TextTransform::sha256;
    return !isSort(transform) && !isDigest;
}

// ---- Topics --------------------------------------------------------------------------------------------------------

std::regex wantedTopics(".");

bool isWanted(const std::string& topic) {
    return std::regex_search(topic, wantedTopics);
}

// ---- Results -------------------------------------------------------------------------------------------------------

std::vector<std::pair<std::string, double>> numbers;
std::vector<std::pair<std::string, std::string>> texts;

void note(const std::string& name, double number) {
    numbers.emplace_back(name, number);
}

template <class Value>
void writeObject(const char* name, const std::vector<std::pair<std::string, Value>>& members, const char* quote) {
    std::cout << '"' << name << "\": {";
    const char* separator = "";
    for (const auto& [key, value] : members) {
        std::cout << separator << "\n \"" << TextTransform(TextTransform::backslashEscape).apply(key) << "\": " << quote
                  << value << quote;
        separator = ",";
    }
    std::cout << "}";
}

// ---- Time ----------------------------------------------------------------------------------------------------------

using Action = std::function<void()>;

double now() {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double timeOf(const Action& action, int times) {
    const double start = now();
    for (int i = 0; i < times; ++i) action();
    return (now() - start) / times;
}

/// The least time of each action, in nanoseconds. They run in turns, so that a busy moment of the machine affects them
/// all; actions too quick to be measured run several times in a row, and quick ones in more rounds.
std::vector<double> race(const std::vector<Action>& actions, int leastRounds) {
    constexpr double kLeast = 300'000;          // nanoseconds
    constexpr double kWellSpent = 100'000'000;  // nanoseconds
    std::vector<double> best;
    std::vector<int> times;
    double roundTime = 0;
    for (const Action& action : actions) {
        best.push_back(timeOf(action, 1) + 1);
        times.push_back(std::clamp(static_cast<int>(kLeast / best.back()), 1, 1000));
        roundTime += best.back() * times.back();
    }
    const int rounds = std::clamp(static_cast<int>(kWellSpent / roundTime), leastRounds, 20);
    for (int round = 1; round < rounds; ++round)
        for (std::size_t i = 0; i < actions.size(); ++i) best[i] = std::min(best[i], timeOf(actions[i], times[i]));
    return best;
}

Action applying(TextTransform transform, const std::string& text) {
    return [transform, &text] {
        const std::string result = transform.apply(text);
        asm volatile("" : : "r"(result.data()) : "memory");
    };
}

Action copying(const std::string& text) {
    return [&text] {
        const std::string copy(text);  // NOLINT(performance-unnecessary-copy-initialization)
        asm volatile("" : : "r"(copy.data()) : "memory");
    };
}

/// What a click computes: the result, and the number of characters before and after.
Action clicking(TextTransform transform, const std::string& text) {
    return [transform, &text] {
        const std::string result = transform.apply(text);
        const std::int64_t count = Unicode::characterCount(text) + Unicode::characterCount(result);
        asm volatile("" : : "r"(count) : "memory");
    };
}

/// The text at its largest. The next one wanted is often the same, and making it takes longer than most transforms.
const std::string& largeText(const NamedText& text) {
    static std::map<std::string, std::string> made;
    if (!made.contains(text.name) && made.size() > 2) made.clear();
    std::string& large = made[text.name];
    if (large.empty()) large = text.make(kLargest);
    return large;
}

// ---- Sizes ---------------------------------------------------------------------------------------------------------

void measureAgainstCopies(const std::string& name, const std::string& size, TextTransform transform,
                          const std::function<std::string()>& make, int rounds) {
    if (!isWanted(name + "/" + size)) return;
    const std::string text = make();
    const std::string result = transform.apply(text);
    const auto best = race({applying(transform, text), copying(text), copying(result)}, rounds);
    note(name + "/" + size, best[0]);
    note(name + "/copyOfText/" + size, best[1]);
    if (isMeantToBeAsFastAsACopy(transform)) note(name + "/copyOfResult/" + size, best[2]);
}

void measureSizes(const std::string& name, TextTransform transform, const NamedText& ordinary) {
    const std::string small = ordinary.make(1000);
    measureAgainstCopies(
        name, "1KB", transform, [&] { return small; }, 20);
    if (isWanted("click/" + name)) note("click/" + name, race({clicking(transform, small)}, 20)[0]);
    measureAgainstCopies(
        name, "1MB", transform, [&] { return ordinary.make(kMegabyte); }, 7);
    measureAgainstCopies(
        name, "50MB", transform, [&] { return largeText(ordinary); }, isSort(transform) ? 3 : 5);
}

// ---- Growth --------------------------------------------------------------------------------------------------------

/// n and 2n. Unless a limit forbids it, both are far larger than the processor's caches.
std::pair<std::size_t, std::size_t> sizesToCompare(TextTransform transform) {
    const std::size_t limit = Benchmarks::limitOf(transform);
    if (limit == 0) return {4 * kMegabyte, 8 * kMegabyte};
    return limit > kMegabyte ? std::pair(kMegabyte / 4, kMegabyte / 2) : std::pair(limit / 2, limit);
}

/// What twice the text costs a transform, if it cost a copy exactly twice as much. A plain copy of the text, measured
/// in the same turns, costs more than that where the text outgrows a cache; that excess is taken out, but never more
/// than a factor of 1.25: four times the time stays more than three times.
double growthBeyondCopy(double growth, double growthOfCopy) {
    constexpr double kMostTakenOut = 1.25;
    return growth / std::clamp(growthOfCopy / 2, 1.0, kMostTakenOut);
}

/// The time per byte of the larger text; 0 if there is nothing to measure, as with a text that comes back unchanged as
/// fast as it can be copied.
double measureGrowth(const std::string& name, TextTransform transform, const NamedText& text) {
    if (!isWanted(name)) return 0;
    const auto [size, doubled] = sizesToCompare(transform);
    const std::string small = text.make(size);
    const std::string large = text.make(doubled);
    const auto best = race({applying(transform, small), applying(transform, large), copying(small), copying(large)}, 3);
    if (transform.apply(large) == large && best[1] < 2 * best[3]) return 0;
    note(name + "/n", best[0]);
    note(name + "/2n", best[1]);
    const std::string kind = transform == TextTransform::shuffleLines ? "growthAtRandom/" : "growth/";
    note(kind + name, growthBeyondCopy(best[1] / best[0], best[3] / best[2]));
    return best[1] / static_cast<double>(large.size());
}

/// On the ordinary text, and on every hostile one; the worst is the one that takes longest.
void measureAllGrowth(const std::string& name, TextTransform transform, const NamedText& ordinary) {
    Benchmarks::keepMemory();
    measureGrowth(name + "/" + ordinary.name, transform, ordinary);
    double worst = 0;
    std::string worstName;
    for (const NamedText& text : Benchmarks::hostileTexts(transform)) {
        const double time = measureGrowth(name + "/" + text.name, transform, text);
        if (time > worst) worstName = text.name;
        worst = std::max(worst, time);
    }
    Benchmarks::giveMemoryBack();
    texts.emplace_back(name + "/worst", worstName);
}

// ---- Memory --------------------------------------------------------------------------------------------------------

/// The line of /proc/self/status that starts with `label` and counts kilobytes, in bytes.
double statusBytes(std::string_view label) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(label)) return 1024 * std::atof(line.c_str() + label.size());
    return 0;
}

/// The bytes that one run uses beyond the text and the result.
double extraBytes(TextTransform transform, const std::string& text) {
    transform.apply("a\nb");                        // loads what ICU loads once
    std::ofstream("/proc/self/clear_refs") << '5';  // resets the high-water mark
    const double before = statusBytes("VmRSS:");
    const std::string result = transform.apply(text);
    return statusBytes("VmHWM:") - before - static_cast<double>(result.size());
}

/// The same in a separate process, since freed memory would serve the next transform.
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

void measureMemory(const std::string& name, TextTransform transform, const NamedText& ordinary) {
    constexpr double kMebibyte = 0x100000;
    if (!isWanted("memory/" + name)) return;
    std::vector<NamedText> measured = {ordinary,
                                       Benchmarks::repeating("French", std::string(Benchmarks::kScripts[1].text))};
    double extra = 0;
    double share = 0;
    double beyondPayload = 0;
    for (const NamedText& each : measured) {
        const std::string& text = largeText(each);
        const double bytes = extraBytesInChild(transform, text);
        const auto lines = static_cast<double>(std::count(text.begin(), text.end(), '\n') + 1);
        extra = std::max(extra, bytes);
        beyondPayload = std::max(beyondPayload, bytes - 0.75 * static_cast<double>(text.size()));
        // What sorting may take: one and a half times the text, and 32 bytes for each line.
        share = std::max(share, bytes / (1.5 * static_cast<double>(text.size()) + 32 * lines));
    }
    if (transform == TextTransform::jsonPretty)  // brackets that would fill 20 GB
        extra = std::max(extra, extraBytesInChild(transform, Benchmarks::nestedArrays(200'000)));
    const std::string kind = isSort(transform) ? "memoryOfSort/" : isToken(transform) ? "memoryOfToken/" : "memory/";
    note(kind + name + ":extraMiB", extra / kMebibyte);
    if (isSort(transform)) note(kind + name + ":sortShare", share);
    if (isToken(transform)) note(kind + name + ":beyondPayloadMiB", beyondPayload / kMebibyte);
}

// --------------------------------------------------------------------------------------------------------------------

void measure(TextTransform transform) {
    const std::string name(transform.rawValue());
    const NamedText ordinary = Benchmarks::ordinaryText(transform);
    std::cerr << name << '\n';
    texts.emplace_back(name + "/ordinary", ordinary.name);
    texts.emplace_back(name + "/limit", std::to_string(Benchmarks::limitOf(transform)));
    measureMemory(name, transform, ordinary);
    measureSizes(name, transform, ordinary);
    measureAllGrowth(name, transform, ordinary);
}

int writeText(std::string_view identifier, const char* size) {
    const auto transform = TextTransform::fromRawValue(identifier);
    if (!transform) return 2;
    std::cout << Benchmarks::ordinaryText(*transform).make(std::strtoull(size, nullptr, 10)) << std::flush;
    return std::cout ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && argv[1] == std::string_view("--text")) return writeText(argv[2], argv[3]);
    const std::regex wanted(argc > 1 ? argv[1] : ".");
    if (argc > 2) wantedTopics = argv[2];
    for (const TextTransform transform : TextTransform::allCases())
        if (std::regex_search(std::string(transform.rawValue()), wanted)) measure(transform);
    std::cout << '{';
    writeObject("numbers", numbers, "");
    std::cout << ",\n";
    writeObject("texts", texts, "\"");
    std::cout << "}\n";
    return std::cout.flush() ? 0 : 1;
}
