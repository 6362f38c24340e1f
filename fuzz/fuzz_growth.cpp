// No transform takes more time per byte for a large text than for a small one. The first byte picks a transform; the
// rest is up to three pieces with a byte 0xFF between them, each repeated until the text is large.
//
// Work is measured in processor time of this thread: the processor's counter of instructions is hidden from most
// virtual machines, and counting the edges of our own code would not notice a search that runs through the whole rest
// of the text again and again inside memchr. Time is never exact, so a text has to fail in two ways: it takes long, and
// in the best of several rounds, taken in turns, four times the text takes more than nine times the time. Linear is 4
// to 5; quadratic is 16, and at this size takes half a second even at the speed of memchr. Another program can slow
// down one round or all of them, but hardly only those of the large text.

#include "Engine/HTMLTransforms.h"
#include "Engine/TextTransform.h"
#include "fuzz/Fuzz.h"

#include <algorithm>
#include <limits>
#include <vector>

#include <time.h>

namespace {

using namespace ravlin;

constexpr std::size_t kLargeSize = TextTransforms::kMaxHTMLSize;  // bytes; larger HTML is left alone
constexpr std::size_t kSmallSize = kLargeSize / 4;
constexpr std::size_t kMaxPieceCount = 3;
constexpr double kMostSeconds = 0.3;  // above all ordinary texts; memchr from every byte takes 0.5 s
constexpr double kMostGrowth = 9;
constexpr int kRounds = 5;

std::vector<std::string> piecesOf(std::string_view bytes) {
    std::vector<std::string> pieces;
    while (!bytes.empty() && pieces.size() < kMaxPieceCount) {
        const std::size_t end = std::min(bytes.find('\xFF'), bytes.size());
        pieces.push_back(Fuzz::validText(bytes.substr(0, end)));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    std::erase(pieces, "");
    return pieces;
}

std::string textOf(const std::vector<std::string>& pieces, std::size_t size) {
    const std::size_t share = size / pieces.size();
    std::string text;
    for (const std::string& piece : pieces)
        for (std::size_t used = piece.size(); used <= share; used += piece.size()) text += piece;
    return text;
}

/// Indented JSON is as large as the square of its depth, so filling memory is simply the work to be done.
bool makesTooMuch(TextTransform transform, std::string_view text) {
    if (transform != TextTransform::jsonPretty && transform != TextTransform::jwtDecode) return false;
    constexpr std::size_t kMostDepth = 200;
    std::size_t depth = 0;
    for (const char byte : text) {
        if (byte == '[' || byte == '{') ++depth;
        if ((byte == ']' || byte == '}') && depth > 0) --depth;
        if (depth > kMostDepth) return true;
    }
    return false;
}

double secondsFor(TextTransform transform, const std::string& text) {
    const auto now = [] {
        timespec time = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    };
    const double start = now();
    transform.apply(text);
    return now() - start;
}

/// How many times as long the large text takes, in the best of several rounds. The first good enough round ends them.
double growthOf(TextTransform transform, const std::string& small, const std::string& large) {
    double smallSeconds = std::numeric_limits<double>::infinity();
    double largeSeconds = smallSeconds;
    for (int round = 0; round < kRounds; ++round) {
        smallSeconds = std::min(smallSeconds, secondsFor(transform, small));
        largeSeconds = std::min(largeSeconds, secondsFor(transform, large));
        if (largeSeconds < kMostSeconds || largeSeconds <= kMostGrowth * smallSeconds) return 0;
    }
    return largeSeconds / smallSeconds;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto transforms = TextTransform::allCases();
    const TextTransform transform = transforms[data[0] % transforms.size()];
    const std::vector<std::string> pieces = piecesOf(Fuzz::text(data + 1, size - 1));
    if (pieces.empty()) return 0;
    const std::string large = textOf(pieces, kLargeSize);
    if (makesTooMuch(transform, large) || secondsFor(transform, large) < kMostSeconds) return 0;
    const double growth = growthOf(transform, textOf(pieces, kSmallSize), large);
    if (growth > kMostGrowth) std::cerr << transform.rawValue() << ": four times the text takes " << growth << '\n';
    Fuzz::expect(growth <= kMostGrowth, "time grows with the text and no faster");
    return 0;
}
