#include "Engine/CleaningTransforms.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Links/LinkDetector.h"
#include "Engine/Support/Links/URLQuery.h"

#include <algorithm>
#include <optional>

namespace ravlin::TextTransforms {
namespace {

// --- Tracking parameters ---------------------------------------------------------------------------------------------

/// Orders names by size, which is quick to compare and usually differs, then alphabetically, ignoring case.
constexpr bool isBefore(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return a.size() < b.size();
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char x, char y) { return ASCII::toLower(x) < ASCII::toLower(y); });
}

constexpr auto kSortedKeys = [] {
    auto keys = trackingKeys;
    std::sort(keys.begin(), keys.end(), isBefore);
    return keys;
}();

/// Whether a parameter of this name is for tracking.
bool isTrackingName(std::string_view name) noexcept {
    if (name.size() < kSortedKeys.front().size()) return false;
    return ASCII::hasWordAt(name, 0, "utm_") ||
           std::binary_search(kSortedKeys.begin(), kSortedKeys.end(), name, isBefore);
}

/// The same for a name as written in a URL.
bool isTracking(std::string_view rawName) {
    const auto isPlain = [](char byte) { return Unicode::isASCII(byte) && byte != '%'; };
    if (std::all_of(rawName.begin(), rawName.end(), isPlain)) return isTrackingName(rawName);
    return isTrackingName(Unicode::lowerCased(URLQuery::decodedName(rawName)));
}

/// Appends the result of `cleanURL`.
void appendCleaned(std::string& result, std::string_view url) {
    const URLQuery query(url);
    if (!query.hasItems()) {
        result += url;
        return;
    }
    result += query.head();
    char before = '?';
    query.forEachItem([&](QueryItem item) {
        if (isTracking(item.rawName())) return;
        result += before;
        result += item.text();
        before = '&';
    });
    result += query.fragment();
    if (result.ends_with('?')) result.pop_back();
}

// --- Invisible characters --------------------------------------------------------------------------------------------

constexpr auto kSortedInvisibles = [] {
    auto scalars = invisibleScalars;
    std::sort(scalars.begin(), scalars.end());
    return scalars;
}();

/// The bytes that can begin one of these in UTF-8.
constexpr auto kIsLead = [] {
    std::array<bool, 256> table = {};
    for (const char32_t scalar : invisibleScalars) table[Unicode::leadByte(scalar)] = true;
    return table;
}();
static_assert(kSortedInvisibles.front() >= 0x80, "nextLead passes over ASCII");

/// The first byte at or after `at` that may begin an invisible character.
std::size_t nextLead(std::string_view text, std::size_t at) noexcept {
    for (at = Unicode::asciiRunEnd(text, at); at < text.size(); at = Unicode::asciiRunEnd(text, at)) {
        while (at < text.size() && !Unicode::isASCII(text[at])) {
            if (kIsLead[static_cast<unsigned char>(text[at])]) return at;
            ++at;
        }
    }
    return at;
}

bool isInvisible(char32_t scalar) noexcept {
    return std::binary_search(kSortedInvisibles.begin(), kSortedInvisibles.end(), scalar);
}

}  // namespace

std::string stripTracking(std::string_view text) {
    if (text.size() > kMaxTrackingSize) return std::string(text);
    LinkDetector detector(text, isTracking);
    std::optional<Link> link = detector.next();
    if (!link) return std::string(text);

    std::string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    for (; link; link = detector.next()) {
        result += text.substr(copied, link->begin - copied);
        if (!link->hasScheme) result += "http://";
        const std::string_view url = text.substr(link->begin, link->end - link->begin);
        if (link->isWhole)
            appendCleaned(result, url);
        else
            result += url;
        copied = link->end;
    }
    result += text.substr(copied);
    return result;
}

std::string cleanURL(std::string_view url) {
    std::string result;
    result.reserve(url.size());
    appendCleaned(result, url);
    return result;
}

std::string removeInvisibles(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    for (std::size_t at = nextLead(text, 0); at < text.size(); at = nextLead(text, at)) {
        const Unicode::Scalar scalar = Unicode::decode(text, at);
        if (isInvisible(scalar.value)) {
            result += text.substr(copied, at - copied);
            copied = at + scalar.byteSize;
        }
        at += scalar.byteSize;
    }
    result += text.substr(copied);
    return result;
}

}  // namespace ravlin::TextTransforms
