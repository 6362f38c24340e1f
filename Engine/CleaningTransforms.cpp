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

constexpr std::string_view kTrackingPrefix = "utm_";

/// A name of a tracking parameter in lower case.
class Key {
public:
    constexpr Key() = default;
    constexpr explicit Key(std::string_view name) : size_(name.size()) {
        if (name.size() > bytes_.size()) throw "too long";
        std::transform(name.begin(), name.end(), bytes_.begin(), ASCII::toLower);
    }

    constexpr std::string_view text() const noexcept { return {bytes_.data(), size_}; }

private:
    std::array<char, 24> bytes_ = {};
    std::size_t size_ = 0;
};

/// Most names differ in size, which is quickly compared.
constexpr bool isBefore(std::string_view a, std::string_view b) noexcept {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

constexpr auto kSortedKeys = [] {
    std::array<Key, trackingKeys.size()> keys = {};
    std::transform(trackingKeys.begin(), trackingKeys.end(), keys.begin(),
                   [](std::string_view key) { return Key(key); });
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return isBefore(a.text(), b.text()); });
    return keys;
}();

/// Whether a parameter of this name, in lower case, is for tracking.
bool isTrackingName(std::string_view name) noexcept {
    if (name.starts_with(kTrackingPrefix)) return true;
    if (name.size() > kSortedKeys.back().text().size()) return false;
    const Key* const found =
        std::lower_bound(kSortedKeys.begin(), kSortedKeys.end(), name,
                         [](const Key& key, std::string_view of) { return isBefore(key.text(), of); });
    return found != kSortedKeys.end() && found->text() == name;
}

/// Whether a parameter of this name, as it is written in a URL, is for tracking.
bool isTracking(std::string_view rawName) {
    std::array<char, kSortedKeys.back().text().size()> lower = {};
    const auto isPlain = [](char byte) { return Unicode::isASCII(byte) && byte != '%'; };
    if (!std::all_of(rawName.begin(), rawName.end(), isPlain))
        return isTrackingName(Unicode::lowerCased(URLQuery::decodedName(rawName)));
    // Only the start of a longer name matters.
    const std::string_view start = rawName.substr(0, lower.size());
    std::transform(start.begin(), start.end(), lower.begin(), ASCII::toLower);
    const std::string_view name(lower.data(), start.size());
    return start.size() == rawName.size() ? isTrackingName(name) : name.starts_with(kTrackingPrefix);
}

/// Appends what `cleanURL` makes of `url`.
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

/// The bytes that begin one of them in UTF-8.
constexpr auto kIsLead = [] {
    std::array<bool, 256> table = {};
    for (const char32_t scalar : invisibleScalars)
        table[scalar < 0x800 ? 0xC0U | (scalar >> 6U) : 0xE0U | (scalar >> 12U)] = true;
    return table;
}();
static_assert(kSortedInvisibles.front() >= 0x80 && kSortedInvisibles.back() < 0x10000);

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
