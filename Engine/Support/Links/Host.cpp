#include "Engine/Support/Links/Host.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Links/LinkCharacters.h"

#include <algorithm>
#include <array>

namespace ravlin::Links {
namespace {

using Scan::between;
using Scan::kNone;
using Scan::peek;

constexpr auto kTopLevelDomains = std::to_array<std::string_view>({
#include "Engine/Support/Links/TopLevelDomains.inc"
});
static_assert(std::is_sorted(kTopLevelDomains.begin(), kTopLevelDomains.end()));

bool isTopLevelDomain(std::string_view label) {
    constexpr std::size_t kLongest = 64;  // bytes
    if (label.empty() || label.size() > kLongest) return false;
    return std::binary_search(kTopLevelDomains.begin(), kTopLevelDomains.end(), Unicode::lowerCased(label));
}

/// Whether a "?" may follow the host directly. Names with other endings may be files, as in "search.pl?q=1", or
/// expressions of a programming language, as in "t.name?u=1:v".
bool isUnmistakable(std::string_view host) noexcept {
    constexpr auto kDomains = std::to_array<std::string_view>({"com", "edu", "gov", "mil", "net", "org"});
    const std::string_view domain = host.substr(host.rfind('.') + 1);
    return std::any_of(kDomains.begin(), kDomains.end(),
                       [&](std::string_view each) { return ASCII::isWord(domain, each); });
}

/// Where the labels that start at byte `at` end; none of them is empty.
std::size_t labelsEnd(std::string_view text, std::size_t at) noexcept {
    const auto goesOn = [&](char byte) {
        return ASCII::isAlphanumeric(byte) || byte == '-' || (byte == '.' && peek(text, at + 1) != '.');
    };
    while (at < text.size() && goesOn(text[at])) ++at;
    return at;
}

/// The same, but labels may have underscores and letters of all scripts.
std::size_t internationalLabelsEnd(std::string_view text, std::size_t at) noexcept {
    for (at = labelsEnd(text, at); at < text.size() && text[at] != '.'; at = labelsEnd(text, at)) {
        const Unicode::Scalar scalar = Unicode::decode(text, at);
        if (!Unicode::isWordCharacter(scalar.value)) break;
        at += scalar.byteSize;
    }
    return at;
}

/// The end of the host whose labels are bytes [`begin`, `end`), or kNone.
std::size_t endOfHost(std::string_view text, std::size_t begin, std::size_t end) {
    while (end > begin && isOneOf(text[end - 1], ".-")) --end;
    const std::size_t dot = between(text, begin, end).rfind('.');
    if (dot == std::string_view::npos) return kNone;
    const std::size_t last = begin + dot + 1;
    if (isTopLevelDomain(between(text, last, end))) return end;
    const std::size_t foreign = Unicode::asciiRunEnd(text.substr(0, end), last);
    const bool mayEndBefore = foreign < end && mayFollowWithoutSpace(Unicode::decode(text, foreign).value);
    return mayEndBefore && isTopLevelDomain(between(text, last, foreign)) ? foreign : kNone;
}

/// Whether an e-mail address continues here, after what looked like a host.
bool isInsideMailAddress(std::string_view text, std::size_t hostEnd) noexcept {
    const std::size_t end =
        text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._+%", hostEnd);
    return peek(text, end) == '@';
}

Host hostOfLabels(std::string_view text, std::size_t begin, std::size_t readEnd) {
    const std::size_t end = endOfHost(text, begin, readEnd);
    return {.end = end != kNone && isInsideMailAddress(text, end) ? kNone : end, .readEnd = readEnd};
}

/// The end of the host that a full stop U+3002 joins to the labels of bytes [`begin`, `end`), or kNone.
std::size_t endOfJoined(std::string_view text, std::size_t begin, std::size_t end) {
    constexpr std::string_view kFullStop = "\u3002";
    const std::size_t next = end + kFullStop.size();
    const bool isJoined = end > begin && text.substr(end).starts_with(kFullStop);
    return isJoined && !ASCII::hasWordAt(text, next, "www.") ? asciiHost(text, next).end : kNone;
}

bool startsPort(std::string_view text, std::size_t at) noexcept {
    return peek(text, at) == ':' && ASCII::isDigit(peek(text, at + 1));
}

}  // namespace

Host asciiHost(std::string_view text, std::size_t begin) {
    return hostOfLabels(text, begin, labelsEnd(text, begin));
}

Host internationalHost(std::string_view text, std::size_t begin) {
    const std::size_t end = internationalLabelsEnd(text, begin);
    const std::size_t joinedEnd = endOfJoined(text, begin, end);
    return joinedEnd == kNone ? hostOfLabels(text, begin, end) : Host{.end = joinedEnd, .readEnd = joinedEnd};
}

bool isJoinedAt(std::string_view text, std::size_t begin, std::size_t at) {
    return internationalLabelsEnd(text, begin) == at && endOfJoined(text, begin, at) != kNone;
}

bool mayStartHost(std::string_view text, std::size_t at) noexcept {
    if (at == 0) return true;
    const char before = text[at - 1];
    return !ASCII::isAlphanumeric(before) && !isOneOf(before, "_-./:@#&=%+~$\\?");
}

bool mayStartBareHost(std::string_view text, std::size_t at) noexcept {
    if (!mayStartHost(text, at)) return false;
    if (at == 0) return true;
    const char32_t before = Unicode::decodeBefore(text, at).value;
    return before != '*' && !Unicode::isWordCharacter(before);
}

bool goesOnAfterHost(std::string_view text, std::size_t at) noexcept {
    return startsPort(text, at) || isOneOf(peek(text, at), "/?#");
}

bool mayPrecedeQuery(std::string_view text, std::size_t begin, std::size_t end) {
    const char next = peek(text, end);
    return next == '/' || startsPort(text, end) || (next == '?' && isUnmistakable(between(text, begin, end)));
}

bool startsURLWithoutScheme(std::string_view text, std::size_t at) {
    const Host host = asciiHost(text, at);
    return host.end != kNone && (ASCII::hasWordAt(text, at, "www.") || isOneOf(peek(text, host.end), "/?"));
}

std::string_view hostOf(std::string_view rest) noexcept {
    const std::string_view authority = rest.substr(0, rest.find_first_of("/?#"));
    const std::size_t at = authority.rfind('@');
    return at == std::string_view::npos ? authority : authority.substr(at + 1);
}

}  // namespace ravlin::Links
