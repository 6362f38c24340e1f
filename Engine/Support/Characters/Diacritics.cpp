#include "Engine/Support/Characters/Diacritics.h"

#include "Engine/Support/Characters/Unicode.h"

namespace ravlin::Unicode {
namespace {

/// Latin, Greek and Cyrillic end before here; only they lose their diacritics.
constexpr char32_t kFirstUnfolded = 0x510;

constexpr char32_t kNoBase = 0xFFFFFFFF;

constexpr bool isSkinTone(char32_t scalar) noexcept {
    return scalar >= 0x1F3FB && scalar <= 0x1F3FF;
}

/// Whether the code point after a base character is dropped as its diacritic.
bool isDropped(char32_t base, char32_t following) noexcept {
    if (base == kNoBase) return false;
    if (isGraphemeExtend(following)) return base < kFirstUnfolded || following < kFirstUnfolded;
    return base < kFirstUnfolded && isSkinTone(following);
}

/// The base character that `scalar` folds to, or `scalar` itself.
char32_t foldedBase(char32_t scalar) noexcept {
    const char32_t start = decompositionStart(scalar);
    return start < kFirstUnfolded ? start : scalar;
}

}  // namespace

std::string withoutDiacritics(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    char32_t base = kNoBase;
    const auto takeASCII = [&](std::string_view run) {
        result += run;
        base = static_cast<unsigned char>(run.back());
    };
    forEachRun(text, 0, takeASCII, [&](char32_t scalar, std::string_view /*bytes*/) {
        if (isDropped(base, scalar)) return;
        const bool isMark = base != kNoBase && isGraphemeExtend(scalar);
        if (!isMark) base = foldedBase(scalar);
        append(result, isMark ? scalar : base);
    });
    return result;
}

}  // namespace ravlin::Unicode
