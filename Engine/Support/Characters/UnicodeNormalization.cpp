// Normalisation by ICU, but for long runs of combining marks, which it would sort by insertion, in quadratic time.

#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/LazyTable.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <vector>

namespace ravlin::Unicode {
namespace {

const icu::Normalizer2* composer() noexcept {
    UErrorCode status = U_ZERO_ERROR;
    return icu::Normalizer2::getNFCInstance(status);
}

const icu::Normalizer2* decomposer() noexcept {
    UErrorCode status = U_ZERO_ERROR;
    return icu::Normalizer2::getNFDInstance(status);
}

/// The canonical decomposition of one code point, itself if it has none.
icu::UnicodeString decomposition(char32_t scalar) {
    icu::UnicodeString units;
    const icu::Normalizer2* const nfd = decomposer();
    if (nfd == nullptr || nfd->getDecomposition(static_cast<UChar32>(scalar), units) == 0)
        units.setTo(static_cast<UChar32>(scalar));
    return units;
}

char32_t computeDecompositionStart(char32_t scalar) noexcept {
    return static_cast<char32_t>(decomposition(scalar).char32At(0));
}

// --- Runs of marks ---------------------------------------------------------------------------------------------------

enum class Start : std::uint8_t { unknown, starter, mark };

Start computeStart(char32_t scalar) noexcept {
    const auto combiningClass =
        u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_LEAD_CANONICAL_COMBINING_CLASS);
    return combiningClass == 0 ? Start::starter : Start::mark;
}

/// Whether the decomposition starts with a mark that is subject to reordering.
bool isReordered(char32_t scalar) noexcept {
    static constinit LazyTable<Start, 0x110000, computeStart> starts;
    return starts[scalar] == Start::mark;
}

struct Run {
    std::size_t start = 0;
    std::size_t end = 0;
};

/// The end of the marks that start at byte `from`, of at most `limit` code points.
std::size_t marksEnd(std::string_view text, std::size_t from, std::size_t limit) noexcept {
    for (; limit > 0 && from < text.size(); --limit) {
        const Scalar scalar = decode(text, from);
        if (!isReordered(scalar.value)) break;
        from += scalar.byteSize;
    }
    return from;
}

/// The next run of marks at or after byte `from`, empty at the end of the text.
Run nextMarks(std::string_view text, std::size_t from) noexcept {
    while (from < text.size()) {
        const Scalar scalar = decode(text, from);
        if (isReordered(scalar.value)) return {.start = from, .end = marksEnd(text, from, text.size())};
        from = isASCII(text[from]) ? asciiRunEnd(text, from) : from + scalar.byteSize;
    }
    return {.start = from, .end = from};
}

bool isLong(std::string_view marks) noexcept {
    return marksEnd(marks, 0, kLongestMarkRun) < marks.size();
}

/// Calls `visit` with every long run of marks, and with the text between them.
template <typename Visit>
void forEachPart(std::string_view text, Visit visit) {
    std::size_t done = 0;
    for (Run run = nextMarks(text, 0); run.start < text.size(); run = nextMarks(text, run.end)) {
        const std::string_view marks = text.substr(run.start, run.end - run.start);
        if (!isLong(marks)) continue;
        visit(text.substr(done, run.start - done), /*isLongRun=*/false);
        visit(marks, /*isLongRun=*/true);
        done = run.end;
    }
    visit(text.substr(done), /*isLongRun=*/false);
}

/// Appends the marks decomposed and in canonical order, which leaves ICU nothing to sort.
void appendOrdered(std::string& result, std::string_view marks) {
    std::vector<UChar32> scalars;
    for (std::size_t at = 0; at < marks.size();) {
        const Scalar scalar = decode(marks, at);
        const icu::UnicodeString units = decomposition(scalar.value);
        for (std::int32_t i = 0; i < units.length(); i = units.moveIndex32(i, 1)) scalars.push_back(units.char32At(i));
        at += scalar.byteSize;
    }
    std::stable_sort(scalars.begin(), scalars.end(),
                     [](UChar32 a, UChar32 b) { return u_getCombiningClass(a) < u_getCombiningClass(b); });
    for (const UChar32 scalar : scalars) append(result, static_cast<char32_t>(scalar));
}

std::string withOrderedMarks(std::string_view text) {
    std::string result;
    forEachPart(text, [&](std::string_view part, bool isLongRun) {
        if (isLongRun)
            appendOrdered(result, part);
        else
            result += part;
    });
    return result;
}

// --- Pieces ----------------------------------------------------------------------------------------------------------

icu::StringPiece piece(std::string_view text) noexcept {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

/// ICU's sizes are 32-bit, so longer texts are normalised in pieces that cannot affect one another.
constexpr std::size_t kLongestPiece = std::size_t{1} << 30U;  // bytes

/// The size of a piece at the start of `text` that can be normalised separately from the rest.
/// NOTE: a whole GiB without such a place, which no language produces, is cut at a code point.
std::size_t nextPieceSize(const icu::Normalizer2& nfc, std::string_view text) noexcept {
    if (text.size() <= kLongestPiece) return text.size();
    std::size_t end = kLongestPiece;
    while (end > 0) {
        const Scalar last = decodeBefore(text, end);
        end -= last.byteSize;
        if (nfc.hasBoundaryBefore(static_cast<UChar32>(last.value)) != 0 && end > 0) return end;
    }
    return kLongestPiece - decodeBefore(text, kLongestPiece).byteSize;
}

bool isBelowCombiningMarks(std::string_view text) noexcept {
    // Every text below U+0300, whose first byte is 0xCC, is in form C.
    unsigned char highest = 0;
    for (const char byte : text) highest = std::max(highest, static_cast<unsigned char>(byte));
    return highest < 0xCC;
}

bool isNFCWithoutLongRuns(const icu::Normalizer2& nfc, std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    while (!text.empty()) {
        const std::size_t size = nextPieceSize(nfc, text);
        if (nfc.isNormalizedUTF8(piece(text.substr(0, size)), status) == 0) return false;
        text.remove_prefix(size);
    }
    return true;
}

std::string composed(const icu::Normalizer2& nfc, std::string_view text) {
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    while (!text.empty()) {
        const std::size_t size = nextPieceSize(nfc, text);
        nfc.normalizeUTF8(0, piece(text.substr(0, size)), sink, nullptr, status);
        text.remove_prefix(size);
    }
    return result;
}

}  // namespace

char32_t decompositionStart(char32_t scalar) noexcept {
    constexpr char32_t kTableSize = 0x20000;
    static constinit LazyTable<char32_t, kTableSize, computeDecompositionStart> starts;
    if (scalar == 0) return 0;  // which the table takes for "not computed yet"
    return scalar < kTableSize ? starts[scalar] : computeDecompositionStart(scalar);
}

bool hasLongMarkRun(std::string_view text) noexcept {
    for (Run run = nextMarks(text, 0); run.start < text.size(); run = nextMarks(text, run.end))
        if (isLong(text.substr(run.start, run.end - run.start))) return true;
    return false;
}

std::string withShortMarkRuns(std::string_view text) {
    std::string result;
    forEachPart(text, [&](std::string_view part, bool isLongRun) {
        result += isLongRun ? part.substr(0, marksEnd(part, 0, kLongestMarkRun)) : part;
    });
    return result;
}

bool isNFC(std::string_view text) {
    if (isBelowCombiningMarks(text)) return true;
    const icu::Normalizer2* const icuNFC = composer();
    if (icuNFC == nullptr) return true;
    return hasLongMarkRun(text) ? nfc(text) == text : isNFCWithoutLongRuns(*icuNFC, text);
}

std::string nfc(std::string_view text) {
    const icu::Normalizer2* const icuNFC = composer();
    if (icuNFC == nullptr || isBelowCombiningMarks(text)) return std::string(text);
    return hasLongMarkRun(text) ? composed(*icuNFC, withOrderedMarks(text)) : composed(*icuNFC, text);
}

}  // namespace ravlin::Unicode
