#include "Engine/Support/Links/LinkDetector.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Links/Host.h"
#include "Engine/Support/Links/LinkCharacters.h"
#include "Engine/Support/Links/URLQuery.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>

namespace ravlin {
namespace {

using Links::isASCIIBoundary;
using Links::isOneOf;
using Scan::between;
using Scan::kNone;
using Scan::peek;

/// The bytes by which links are recognised: the ":" of a scheme, the last "w" of "www." and the "?" of a query.
constexpr auto kIsTrigger = [] {
    std::array<bool, 256> table = {};
    for (const char byte : {':', '?', 'w', 'W'}) table[static_cast<unsigned char>(byte)] = true;
    return table;
}();

/// The first trigger at or after byte `at`, or the end of the text.
std::size_t nextTrigger(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && !kIsTrigger[static_cast<unsigned char>(text[at])]) ++at;
    return at;
}

constexpr bool isSchemeCharacter(char byte) noexcept {
    return ASCII::isAlphanumeric(byte) || isOneOf(byte, "+-.");
}

}  // namespace

std::optional<Link> LinkDetector::next() {
    for (at_ = nextTrigger(text_, at_); at_ < text_.size(); at_ = nextTrigger(text_, at_))
        if (std::optional<Link> link = linkAt(at_++)) return link;
    return std::nullopt;
}

std::optional<Link> LinkDetector::linkAt(std::size_t trigger) {
    switch (text_[trigger]) {
        case ':': return skipMail(trigger) ? std::nullopt : linkWithScheme(trigger);
        case '?': return linkWithQuery(trigger);
        default: return linkWithWWW(trigger);
    }
}

/// Skips the link to a mail address, if `colon` is that of its scheme.
bool LinkDetector::skipMail(std::size_t colon) {
    constexpr std::string_view kMail = "mailto";
    if (colon - floor_ < kMail.size() || !ASCII::hasWordAt(text_, colon - kMail.size(), kMail)) return false;
    walkFrom(colon - kMail.size(), colon + 1, /*hasScheme=*/true);
    return true;
}

/// Reads the link that starts at byte `begin` and is known up to `from`, and moves past it.
Link LinkDetector::walkFrom(std::size_t begin, std::size_t from, bool hasScheme) {
    const Links::Walked walked = Links::walkOverLink(text_, begin, from, isRemoved_);
    at_ = floor_ = std::max(walked.readEnd, at_);
    return {.begin = begin, .end = walked.end, .hasScheme = hasScheme, .isWhole = walked.isWhole};
}

std::optional<Link> LinkDetector::linkWithScheme(std::size_t colon) {
    if (!text_.substr(colon).starts_with(Links::kAfterScheme)) return std::nullopt;
    std::size_t begin = colon;
    while (begin > floor_ && isSchemeCharacter(text_[begin - 1])) --begin;
    // A scheme starts with a letter, so anything before that may be the dash of a list.
    while (isOneOf(text_[begin], "+-.")) ++begin;
    // In a string literal, its first letter may belong to an escape such as that of a line end.
    if (begin > 0 && text_[begin - 1] == '\\' && isOneOf(text_[begin], "nrt")) ++begin;
    if (begin == colon || ASCII::isDigit(text_[begin])) return std::nullopt;

    const std::size_t hostBegin = colon + Links::kAfterScheme.size();
    const Link link = walkFrom(begin, hostBegin, /*hasScheme=*/true);
    if (Links::webSchemeSize(text_, begin, colon) != colon - begin) return std::nullopt;
    const std::string_view host = Links::hostOf(between(text_, hostBegin, link.end));
    return host.empty() || host.starts_with(':') ? std::nullopt : std::optional(link);
}

std::optional<Link> LinkDetector::linkWithWWW(std::size_t lastW) {
    constexpr std::string_view kWWW = "www.";
    if (lastW < floor_ + 2 || !ASCII::hasWordAt(text_, lastW - 2, kWWW)) return std::nullopt;
    const std::size_t begin = lastW - 2;
    if (!Links::mayStartHost(text_, begin)) return std::nullopt;
    const Links::Host host = Links::internationalHost(text_, begin);
    at_ = host.readEnd;
    if (host.end == kNone) return std::nullopt;
    at_ = host.end;
    if (Links::goesOnAfterHost(text_, host.end)) return walkFrom(begin, host.end, /*hasScheme=*/false);
    floor_ = host.end;
    return Link{.begin = begin, .end = host.end, .hasScheme = false};
}

std::optional<Link> LinkDetector::linkWithQuery(std::size_t question) {
    const char next = peek(text_, question + 1);
    if (Unicode::isASCII(next) && isASCIIBoundary(next)) return std::nullopt;
    const std::size_t begin = bareHostBefore(question);
    floor_ = question + 1;
    if (begin == kNone) return std::nullopt;
    const Link link = walkFrom(begin, Links::asciiHost(text_, begin).end, /*hasScheme=*/false);
    bool hasNamedValue = false;
    URLQuery(between(text_, link.begin, link.end)).forEachItem([&](QueryItem item) {
        hasNamedValue = hasNamedValue || (item.hasValue() && !item.rawName().empty());
    });
    return hasNamedValue ? std::optional(link) : std::nullopt;
}

/// The start of the first host that `question` may belong to, or kNone.
std::size_t LinkDetector::bareHostBefore(std::size_t question) const {
    for (std::size_t at = runBegin(question); at < question; ++at) {
        if (!ASCII::isAlphanumeric(text_[at]) || !Links::mayStartBareHost(text_, at)) continue;
        const Links::Host host = Links::asciiHost(text_, at);
        if (host.end != kNone && Links::mayPrecedeQuery(text_, at, host.end)) return at;
        at = host.readEnd;
    }
    return kNone;
}

/// The start of the run before byte `at` that holds no boundary.
std::size_t LinkDetector::runBegin(std::size_t at) const noexcept {
    while (at > floor_) {
        const Unicode::Scalar scalar = Unicode::decodeBefore(text_, at);
        if (Links::isBoundary(scalar.value)) break;
        at -= scalar.byteSize;
    }
    return at;
}

}  // namespace ravlin
