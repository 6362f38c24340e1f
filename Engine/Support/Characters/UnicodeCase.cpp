// Full case mappings with the root locale. ICU maps single code points; whole texts are walked here, because ICU's
// sizes are 32-bit and it is slow on ASCII.

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/LazyTable.h"

#include <unicode/casemap.h>
#include <unicode/stringoptions.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <span>

namespace ravlin::Unicode {
namespace {

// --- What single code points map to ----------------------------------------------------------------------------------

/// One to three code points of 21 bits each, the first in the lowest bits. Only U+0000 maps to U+0000, and it never
/// gets here: ASCII is mapped separately.
using Mapping = std::uint64_t;
constexpr unsigned kScalarBits = 21;
constexpr std::uint64_t kScalarMask = (1U << kScalarBits) - 1;

/// No code point from here on has a case; if one is ever added, it will still be mapped, only more slowly.
constexpr char32_t kTableSize = 0x20000;

constexpr char32_t kCapitalSigma = 0x3A3;
constexpr char32_t kFinalSigma = 0x3C2;

using Units = std::array<char16_t, 8>;

enum class Form : std::uint8_t { lower, upper, title };

std::int32_t mapUnits(Form form, std::span<const char16_t> from, Units& to, UErrorCode& status) {
    const char16_t* const source = from.data();
    const auto size = static_cast<std::int32_t>(from.size());
    const auto room = static_cast<std::int32_t>(to.size());
    switch (form) {
        case Form::lower: return icu::CaseMap::toLower("", 0, source, size, to.data(), room, nullptr, status);
        case Form::upper: return icu::CaseMap::toUpper("", 0, source, size, to.data(), room, nullptr, status);
        case Form::title: break;
    }
    return icu::CaseMap::toTitle("", U_TITLECASE_WHOLE_STRING | U_TITLECASE_NO_BREAK_ADJUSTMENT, nullptr, source, size,
                                 to.data(), room, nullptr, status);
}

constexpr UProperty changesIn(Form form) {
    switch (form) {
        case Form::lower: return UCHAR_CHANGES_WHEN_LOWERCASED;
        case Form::upper: return UCHAR_CHANGES_WHEN_UPPERCASED;
        case Form::title: break;
    }
    return UCHAR_CHANGES_WHEN_TITLECASED;
}

Mapping pack(std::span<const char16_t> units) noexcept {
    Mapping mapping = 0;
    unsigned shift = 0;
    for (std::size_t i = 0; i < units.size(); shift += kScalarBits) {
        char32_t scalar = units[i++];
        if (i < units.size() && U16_IS_LEAD(scalar))
            scalar = static_cast<char32_t>(U16_GET_SUPPLEMENTARY(scalar, units[i++]));
        mapping |= static_cast<Mapping>(scalar) << shift;
    }
    return mapping;
}

template <Form form>
Mapping computeMapping(char32_t scalar) noexcept {
    if (u_hasBinaryProperty(static_cast<UChar32>(scalar), changesIn(form)) == 0) return scalar;
    Units from = {};
    std::size_t size = 0;
    if (U_IS_BMP(scalar)) {
        from[size++] = static_cast<char16_t>(scalar);
    } else {
        from[size++] = U16_LEAD(scalar);
        from[size++] = U16_TRAIL(scalar);
    }
    Units to = {};
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = mapUnits(form, std::span(from).first(size), to, status);
    if (U_FAILURE(status) != 0 || length <= 0) return scalar;
    return pack(std::span(to).first(static_cast<std::size_t>(length)));
}

template <Form form>
Mapping mappingOf(char32_t scalar) noexcept {
    static constinit LazyTable<Mapping, kTableSize, computeMapping<form>> mappings;
    return scalar < kTableSize ? mappings[scalar] : computeMapping<form>(scalar);
}

void appendMapping(std::string& result, Mapping mapping) {
    for (; mapping != 0; mapping >>= kScalarBits) append(result, static_cast<char32_t>(mapping & kScalarMask));
}

template <Form form>
bool isChangedBy(std::string_view text) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        const Scalar scalar = decode(text, at);
        if (mappingOf<form>(scalar.value) != scalar.value) return true;
        at += scalar.byteSize;
    }
    return false;
}

// --- Final sigma (Unicode Standard, table 3-17) ----------------------------------------------------------------------

bool isAfterCased(std::string_view text, std::size_t at) noexcept {
    while (at > 0) {
        const Scalar scalar = decodeBefore(text, at);
        if (!isCaseIgnorable(scalar.value)) return isCased(scalar.value);
        at -= scalar.byteSize;
    }
    return false;
}

bool isBeforeCased(std::string_view text, std::size_t at) noexcept {
    while (at < text.size()) {
        const Scalar scalar = decode(text, at);
        if (!isCaseIgnorable(scalar.value)) return isCased(scalar.value);
        at += scalar.byteSize;
    }
    return false;
}

/// Whether `sigma`, which is a part of `text`, ends a word there.
bool isFinalSigma(std::string_view text, std::string_view sigma) noexcept {
    const auto at = static_cast<std::size_t>(sigma.data() - text.data());
    return isAfterCased(text, at) && !isBeforeCased(text, at + sigma.size());
}

}  // namespace

void appendLowerCased(std::string& result, std::string_view text, std::size_t from, std::size_t to) {
    const auto takeASCII = [&](std::string_view run) { ASCII::appendMapped(result, run, ASCII::toLower); };
    forEachRun(text.substr(0, to), from, takeASCII, [&](char32_t scalar, std::string_view bytes) {
        if (scalar == kCapitalSigma && isFinalSigma(text, bytes))
            append(result, kFinalSigma);
        else
            appendMapping(result, mappingOf<Form::lower>(scalar));
    });
}

void appendUpperCased(std::string& result, std::string_view text) {
    const auto takeASCII = [&](std::string_view run) { ASCII::appendMapped(result, run, ASCII::toUpper); };
    forEachRun(text, 0, takeASCII, [&](char32_t scalar, std::string_view /*bytes*/) {
        appendMapping(result, mappingOf<Form::upper>(scalar));
    });
}

void appendTitleCased(std::string& result, char32_t scalar) {
    if (scalar < 0x80)
        result += ASCII::toUpper(static_cast<char>(scalar));
    else
        appendMapping(result, mappingOf<Form::title>(scalar));
}

std::string lowerCased(std::string_view text) {
    std::string result;
    result.reserve(roomForMapped(text.size()));
    appendLowerCased(result, text, 0, text.size());
    return result;
}

std::string upperCased(std::string_view text) {
    std::string result;
    result.reserve(roomForMapped(text.size()));
    appendUpperCased(result, text);
    return result;
}

bool isChangedByLowerCasing(std::string_view text) noexcept {
    return isChangedBy<Form::lower>(text);
}

bool isChangedByUpperCasing(std::string_view text) noexcept {
    return isChangedBy<Form::upper>(text);
}

}  // namespace ravlin::Unicode
