#include "Engine/Support/Links/LinkDetector.h"

#include "Engine/Support/Bytes.h"
#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Links/URLQuery.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

namespace ravlin {
namespace {

using Scan::between;
using Scan::kNone;
using Scan::peek;

constexpr bool isOneOf(char byte, std::string_view set) noexcept {
    return set.find(byte) != std::string_view::npos;
}

/// Whether `word`, which is in lower case, stands at byte `at`, in any case.
bool hasWordAt(std::string_view text, std::size_t at, std::string_view word) noexcept {
    if (at > text.size() || text.size() - at < word.size()) return false;
    return std::equal(word.begin(), word.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                      [](char a, char b) { return a == ASCII::toLower(b); });
}

// --- Characters ------------------------------------------------------------------------------------------------------

/// Quotation marks, dashes, full-width punctuation and the like: what no one writes in a link, besides white space and
/// what is not seen.
constexpr auto kBoundaries = std::to_array<char32_t>({
    0x00AB, 0x00BB, 0x2014, 0x201C, 0x201D, 0x201E, 0x201F, 0x2026, 0x2039, 0x203A, 0x3001,
    0x3002, 0x3008, 0x3009, 0x300A, 0x300B, 0x300C, 0x300D, 0x300E, 0x300F, 0x3010, 0x3011,
    0x3014, 0x3015, 0x30FB, 0xFF01, 0xFF02, 0xFF07, 0xFF08, 0xFF09, 0xFF0C, 0xFF0E, 0xFF1A,
    0xFF1B, 0xFF1F, 0xFF3B, 0xFF3D, 0xFF5B, 0xFF5C, 0xFF5D, 0xFF65, 0xFFFC, 0xFFFD,
});
static_assert(std::is_sorted(kBoundaries.begin(), kBoundaries.end()));

/// Writing systems like Persian need the two joiners inside words.
constexpr bool isJoiner(char32_t scalar) noexcept {
    return scalar == 0x200C || scalar == 0x200D;
}

constexpr bool isASCIIBoundary(char byte) noexcept {
    return byte <= ' ' || byte == '\x7F' || isOneOf(byte, "<>\"`\\");
}

/// Whether no link goes on over this character.
bool isBoundary(char32_t scalar) noexcept {
    if (scalar < 0x80) return isASCIIBoundary(static_cast<char>(scalar));
    if (std::binary_search(kBoundaries.begin(), kBoundaries.end(), scalar)) return true;
    return Unicode::isWhitespaceOrNewline(scalar) || (Unicode::isOther(scalar) && !isJoiner(scalar));
}

/// Whether text of a script that has no spaces, or an emoji or a sign, may begin here without a space before it.
bool mayFollowWithoutSpace(char32_t scalar) noexcept {
    return !Unicode::isCased(scalar) && !Unicode::isMark(scalar) && !isJoiner(scalar);
}

// --- Hosts -----------------------------------------------------------------------------------------------------------

constexpr auto kTopLevelDomains = std::to_array<std::string_view>({
#include "Engine/Support/Links/TopLevelDomains.inc"
});
static_assert(std::is_sorted(kTopLevelDomains.begin(), kTopLevelDomains.end()));

bool isTopLevelDomain(std::string_view label) {
    constexpr std::size_t kLongest = 64;  // bytes
    if (label.empty() || label.size() > kLongest) return false;
    return std::binary_search(kTopLevelDomains.begin(), kTopLevelDomains.end(), Unicode::lowerCased(label));
}

/// The domains that a "?" may follow at once. What ends in any other may be a file, as in "search.pl?q=1", or an
/// expression of a programming language, as in "t.name?u=1:v".
constexpr auto kUnmistakableDomains = std::to_array<std::string_view>({"com", "edu", "gov", "mil", "net", "org"});
static_assert(std::is_sorted(kUnmistakableDomains.begin(), kUnmistakableDomains.end()));

bool isUnmistakable(std::string_view host) {
    const std::string domain = Unicode::lowerCased(host.substr(host.rfind('.') + 1));
    return std::binary_search(kUnmistakableDomains.begin(), kUnmistakableDomains.end(), std::string_view(domain));
}

/// Two or more labels, and where what was read as labels ends. `end` is kNone where the last one is no top-level
/// domain.
struct Host {
    std::size_t end = kNone;
    std::size_t readEnd = 0;
};

std::size_t lastLabel(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    const std::size_t dot = between(text, begin, end).rfind('.');
    return dot == std::string_view::npos ? kNone : begin + dot + 1;
}

/// Where the labels that start at byte `at` end; none of them is empty.
std::size_t labelsEnd(std::string_view text, std::size_t at) noexcept {
    const auto goesOn = [&](char byte) {
        return ASCII::isAlphanumeric(byte) || byte == '-' || (byte == '.' && peek(text, at + 1) != '.');
    };
    while (at < text.size() && goesOn(text[at])) ++at;
    return at;
}

/// The same, where labels may have underscores and letters of all scripts.
std::size_t internationalLabelsEnd(std::string_view text, std::size_t at) noexcept {
    for (at = labelsEnd(text, at); at < text.size() && text[at] != '.'; at = labelsEnd(text, at)) {
        const Unicode::Scalar scalar = Unicode::decode(text, at);
        if (!Unicode::isWordCharacter(scalar.value)) break;
        at += scalar.byteSize;
    }
    return at;
}

/// `end` without the dots and hyphens before it.
std::size_t trimmedLabels(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    while (end > begin && isOneOf(text[end - 1], ".-")) --end;
    return end;
}

Host asciiHost(std::string_view text, std::size_t begin) {
    Host host;
    host.readEnd = labelsEnd(text, begin);
    const std::size_t end = trimmedLabels(text, begin, host.readEnd);
    const std::size_t last = lastLabel(text, begin, end);
    if (last != kNone && isTopLevelDomain(between(text, last, end))) host.end = end;
    return host;
}

/// Labels may have letters of all scripts. Where text in a script without spaces follows the top-level domain, the host
/// ends before it.
Host internationalHost(std::string_view text, std::size_t begin) {
    Host host;
    host.readEnd = internationalLabelsEnd(text, begin);
    const std::size_t end = trimmedLabels(text, begin, host.readEnd);
    const std::size_t last = lastLabel(text, begin, end);
    if (last == kNone) return host;
    if (isTopLevelDomain(between(text, last, end))) {
        host.end = end;
        return host;
    }
    const std::size_t foreign = Unicode::asciiRunEnd(text.substr(0, end), last);
    if (foreign < end && mayFollowWithoutSpace(Unicode::decode(text, foreign).value) &&
        isTopLevelDomain(between(text, last, foreign)))
        host.end = foreign;
    return host;
}

/// Whether a host without a scheme may start at byte `at`: not in the middle of a name, path, address or assignment.
bool mayStartHost(std::string_view text, std::size_t at) noexcept {
    if (at == 0) return true;
    const char before = text[at - 1];
    return !ASCII::isAlphanumeric(before) && !isOneOf(before, "_-./:@#&=%+~$\\?");
}

/// More careful where no "www." says that this is a host.
bool mayStartBareHost(std::string_view text, std::size_t at) noexcept {
    if (!mayStartHost(text, at)) return false;
    if (at == 0) return true;
    const char32_t before = Unicode::decodeBefore(text, at).value;
    return before != '*' && !Unicode::isWordCharacter(before);
}

/// Whether an e-mail address goes on here, after what looked like a host.
bool isInsideMailAddress(std::string_view text, std::size_t hostEnd) noexcept {
    const std::size_t end =
        text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._+%", hostEnd);
    return peek(text, end) == '@';
}

bool startsPort(std::string_view text, std::size_t at) noexcept {
    return peek(text, at) == ':' && ASCII::isDigit(peek(text, at + 1));
}

/// Whether a URL goes on after its host.
bool goesOnAfterHost(std::string_view text, std::size_t at) noexcept {
    return startsPort(text, at) || isOneOf(peek(text, at), "/?#");
}

/// Whether what follows the host may lead to a query.
bool mayPrecedeQuery(std::string_view text, std::size_t begin, std::size_t end) {
    const char next = peek(text, end);
    return next == '/' || startsPort(text, end) || (next == '?' && isUnmistakable(between(text, begin, end)));
}

/// Whether a URL starts at byte `at`, of any kind that people recognise without a scheme.
bool startsURLWithoutScheme(std::string_view text, std::size_t at) {
    const Host host = asciiHost(text, at);
    if (host.end == kNone || isInsideMailAddress(text, host.end)) return false;
    return hasWordAt(text, at, "www.") || isOneOf(peek(text, host.end), "/?");
}

/// The host of what stands between "://" and `end` of a URL, its port included.
std::string_view hostOf(std::string_view rest) noexcept {
    const std::string_view authority = rest.substr(0, rest.find_first_of("/?#"));
    const std::size_t at = authority.rfind('@');
    return at == std::string_view::npos ? authority : authority.substr(at + 1);
}

// --- Schemes ---------------------------------------------------------------------------------------------------------

constexpr std::string_view kAfterScheme = "://";

constexpr bool isSchemeCharacter(char byte) noexcept {
    return ASCII::isAlphanumeric(byte) || isOneOf(byte, "+-.");
}

/// The size of the "http" or "https" that ends before `colon` and starts not before `floor`, or 0.
std::size_t webSchemeSize(std::string_view text, std::size_t floor, std::size_t colon) noexcept {
    for (const std::string_view scheme : {"http", "https"})
        if (colon - floor >= scheme.size() && hasWordAt(text, colon - scheme.size(), scheme)) return scheme.size();
    return 0;
}

// --- Character references and escapes --------------------------------------------------------------------------------

/// "&amp;", "&#38;" and the like at byte `at`, which holds "&".
struct Reference {
    std::size_t size = 0;  // bytes; 0 where there is none
    bool isAmpersand = false;
};

Reference referenceAt(std::string_view text, std::size_t at) noexcept {
    constexpr std::size_t kLongest = 10;  // bytes
    const std::string_view start = text.substr(at, kLongest);
    const std::size_t end = start.find(';');
    if (end == std::string_view::npos) return {};
    const std::string_view name = start.substr(1, end - 1);
    const std::size_t digits = name.starts_with('#') ? 1 : 0;
    const bool isWord = std::all_of(name.begin() + static_cast<std::ptrdiff_t>(std::min(digits, name.size())),
                                    name.end(), ASCII::isAlphanumeric);
    if (!isWord || name.size() < 2 || (digits == 0 && ASCII::isDigit(name[0]))) return {};
    constexpr auto kAmpersands = std::to_array<std::string_view>({"amp", "#38", "#038", "#x26"});
    const bool isAmpersand = std::any_of(kAmpersands.begin(), kAmpersands.end(), [&](std::string_view each) {
        return name.size() == each.size() && hasWordAt(name, 0, each);
    });
    return {.size = end + 1, .isAmpersand = isAmpersand};
}

/// The code point that the `count` hexadecimal digits at byte `at` stand for; a space where they are none.
char32_t hexadecimal(std::string_view text, std::size_t at, std::size_t count) noexcept {
    char32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<unsigned> digit = Bytes::hexValue(peek(text, at + i));
        if (!digit) return ' ';
        value = value * 16 + *digit;
    }
    return value;
}

/// Whether the link that ended before the backslash at byte `at` goes on after it, in the way of some programming or
/// markup language: "\u0026", "\x26", "\&", "\_". Not so for "\n" and for an escaped quotation mark.
bool goesOnAfterBackslash(std::string_view text, std::size_t at) noexcept {
    const std::size_t escaped = std::min(text.find_first_not_of('\\', at), text.size());
    const char letter = peek(text, escaped);
    if (letter == 'u') return !isBoundary(hexadecimal(text, escaped + 1, 4));
    if (letter == 'x') return !isBoundary(hexadecimal(text, escaped + 1, 2));
    return Unicode::isASCII(letter) && !ASCII::isAlphanumeric(letter) && !isASCIIBoundary(letter) && letter != '\'';
}

/// Whether `link` ends with the "=" after a query item's name, so that the value is missing. Values may end with "=" as
/// well: Base64 is padded with it.
bool endsWithNameOfItem(std::string_view link) noexcept {
    if (!link.ends_with('=')) return false;
    const std::size_t item = link.find_last_of("?&");
    return item != std::string_view::npos && link.find('=', item) == link.size() - 1;
}

/// Whether the "<" or "[" at byte `at` starts markup that often follows a link: a closing tag, a line break.
bool startsMarkup(std::string_view text, std::size_t at) noexcept {
    constexpr std::string_view kLineBreak = "br";
    if (peek(text, at + 1) == '/') return true;
    return hasWordAt(text, at + 1, kLineBreak) && !ASCII::isAlphanumeric(peek(text, at + 1 + kLineBreak.size()));
}

/// Whether what follows the link of bytes [`begin`, `end`) stands for a part of it: an escape, or a placeholder.
bool goesOn(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    constexpr std::string_view kEllipsis = "\u2026";
    const std::string_view rest = text.substr(end);
    const bool isValueMissing = endsWithNameOfItem(between(text, begin, end));
    switch (peek(rest, 0)) {
        case '\\': return goesOnAfterBackslash(text, end);
        case '{': return true;
        case '<':
        case '(':
        case '[': return (isValueMissing || isOneOf(text[end - 1], "$%")) && !startsMarkup(text, end);
        default: return isValueMissing && (rest.starts_with("...") || rest.starts_with(kEllipsis));
    }
}

// --- Trailing punctuation --------------------------------------------------------------------------------------------

/// Cuts the punctuation off that a link does not end with.
class Trimmer {
public:
    Trimmer(std::string_view text, std::size_t begin) noexcept
        : text_(text), begin_(begin), before_(begin > 0 ? text[begin - 1] : '\0') {}

    /// `end` without what does not belong to the link.
    std::size_t trim(std::size_t end) noexcept {
        const std::string_view link = between(text_, begin_, end);
        hasOddApostrophe_ = std::count(link.begin(), link.end(), '\'') % 2 != 0;
        while (end > begin_) {
            const std::size_t size = sizeOfPunctuation(end);
            if (size == 0) break;
            end -= size;
        }
        return end;
    }

private:
    std::size_t sizeOfPunctuation(std::size_t end) noexcept {
        switch (text_[end - 1]) {
            case ';': return std::max<std::size_t>(sizeOfReference(end), 1);
            case '.':
            case ',':
            case ':':
            case '!':
            case '?':
            case '|': return 1;
            case '*':
            case '_':
            case '~': return text_[end - 1] == before_ ? 1 : 0;
            case '\'': {
                const bool isOdd = hasOddApostrophe_;
                hasOddApostrophe_ = false;
                return isOdd ? 1 : 0;
            }
            default: return sizeOfTypographicMark(end);
        }
    }

    std::size_t sizeOfReference(std::size_t end) const noexcept {
        constexpr std::size_t kLongest = 10;  // bytes
        const std::size_t from = end - begin_ > kLongest ? end - kLongest : begin_;
        const std::size_t ampersand = between(text_, from, end).rfind('&');
        if (ampersand == std::string_view::npos) return 0;
        const std::size_t size = end - (from + ampersand);
        return referenceAt(text_, from + ampersand).size == size ? size : 0;
    }

    std::size_t sizeOfTypographicMark(std::size_t end) const noexcept {
        const std::string_view link = between(text_, begin_, end);
        for (const std::string_view mark : {"\u2019", "\u2018", "\u2013"})
            if (link.ends_with(mark)) return mark.size();
        return 0;
    }

    std::string_view text_;
    std::size_t begin_;
    char before_;
    bool hasOddApostrophe_ = false;
};

// --- Where something may be ------------------------------------------------------------------------------------------

/// Two neighbouring bytes as one number.
constexpr std::uint16_t pairOf(char first, char second) noexcept {
    return std::bit_cast<std::uint16_t>(std::array<char, 2>{first, second});
}

constexpr std::size_t kBlock = 128;  // bytes

/// Whether one of the pairs that the block of bytes at `bytes` consists of is in "://" or in "www.". Every other byte
/// starts a pair, and one or the other of the pairs asked for is met wherever those begin. This is the form of a loop
/// that compilers turn into vector instructions.
bool hasTriggerPair(const char* bytes) noexcept {
    constexpr std::uint16_t kLowerCase = pairOf(' ', ' ');
    std::uint16_t found = 0;
    for (std::size_t i = 0; i < kBlock; i += 2) {
        std::uint16_t pair = 0;
        std::memcpy(&pair, bytes + i, sizeof pair);
        const auto lower = static_cast<std::uint16_t>(pair | kLowerCase);
        found = static_cast<std::uint16_t>(found | static_cast<std::uint16_t>(pair == pairOf(':', '/')) |
                                           static_cast<std::uint16_t>(pair == pairOf('/', '/')) |
                                           static_cast<std::uint16_t>(lower == pairOf('w', 'w')));
    }
    return found != 0;
}

/// 1 where ":/" or "w." is at `bytes`, else 0; without a branch, again for the sake of vector instructions.
std::uint8_t isTrigger(const char* bytes) noexcept {
    const auto is = [](bool isTrue) { return static_cast<std::uint8_t>(isTrue); };
    const int scheme = is(bytes[0] == ':') & is(bytes[1] == '/');
    const int www = is((bytes[0] | ' ') == 'w') & is(bytes[1] == '.');
    return static_cast<std::uint8_t>(scheme | www);
}

/// The first byte in [`from`, `to`) where isTrigger, or kNone.
std::size_t firstTrigger(std::string_view text, std::size_t from, std::size_t to) noexcept {
    std::uint8_t found = 0;
    for (std::size_t i = from; i < to; ++i) found = static_cast<std::uint8_t>(found | isTrigger(text.data() + i));
    if (found == 0) return kNone;
    while (isTrigger(text.data() + from) == 0) ++from;
    return from;
}

}  // namespace

// --- The walk over a link --------------------------------------------------------------------------------------------

/// Goes over what looks like a link, byte by byte and once, and finds where it ends.
class LinkDetector::Walk {
public:
    /// The link starts at byte `begin`; up to `from` it is known.
    Walk(const LinkDetector& detector, std::size_t begin, std::size_t from)
        : text_(detector.text_),
          isRemoved_(detector.isRemoved_),
          begin_(begin),
          from_(from),
          before_(begin > 0 ? text_[begin - 1] : '\0') {
        for (std::size_t at = from; at < text_.size() && stop_ == kNone;) at += step(at);
        stop_ = std::min(stop_, text_.size());
    }

    /// What was looked at.
    std::size_t stop() const noexcept { return stop_; }

    Link link(bool hasScheme) const {
        std::size_t end = stop_;
        std::size_t foreign = foreign_;
        if (!closers_.empty()) {
            end = outermost_;
            foreign = foreignBeforeOutermost_;
        }
        end = std::max(Trimmer(text_, begin_).trim(std::min(end, foreign)), from_);
        const bool isWhole = end <= escaped_ && !goesOn(text_, begin_, end);
        return {.begin = begin_, .end = end, .hasScheme = hasScheme, .isWhole = isWhole};
    }

private:
    /// Looks at the character at byte `at` and returns its size.
    std::size_t step(std::size_t at) {
        const char byte = text_[at];
        if (!Unicode::isASCII(byte)) return beyondASCII(at);
        if (ASCII::isAlphanumeric(byte)) return 1;
        if (isASCIIBoundary(byte)) return end(at);
        switch (byte) {
            case '(': return opener(at, ')');
            case '[': return opener(at, ']');
            case '{': return opener(at, '}');
            case ')':
            case ']':
            case '}': return closer(at);
            case '\'': return before_ == '\'' ? end(at) : 1;
            case ':': return colon(at);
            case '|': return bar(at);
            case ',':
            case ';': return separator(at);
            case '?': return question(at);
            case '=': return equals(at);
            case '&': return ampersand(at);
            case '#': return hash();
            default: return 1;
        }
    }

    std::size_t end(std::size_t at) noexcept {
        stop_ = at;
        return 1;
    }

    /// An opening bracket that nothing closes does not belong to the link, nor does what follows it.
    std::size_t opener(std::size_t at, char closer) {
        if (text_[at] == '[' && peek(text_, at + 1) == '/') return end(at);  // "[/url]"
        if (closers_.empty()) {
            outermost_ = at;
            foreignBeforeOutermost_ = foreign_;
        }
        closers_ += closer;
        return 1;
    }

    std::size_t closer(std::size_t at) {
        if (closers_.empty() || closers_.back() != text_[at]) return end(at);
        closers_.pop_back();
        return 1;
    }

    /// A second link ends this one, unless something joins the two.
    std::size_t colon(std::size_t at) {
        if (!text_.substr(at).starts_with(kAfterScheme)) return 1;
        const std::size_t size = webSchemeSize(text_, from_, at);
        if (size == 0) return 1;
        const std::size_t second = at - size;
        const char joint = text_[second - 1];
        const bool isFullStop = joint == '.' && isInRemovedItem(second);
        return isOneOf(joint, "=/?&#:%.-_+~@$*") && !isFullStop ? 1 : end(second);
    }

    /// Ends a cell of a table, a field of a wiki's template, the target of a link with a text.
    std::size_t bar(std::size_t at) { return isOneOf(before_, "|=<[") ? end(at) : separator(at); }

    /// What encloses the link on both sides, as in lists of values, or joins another one to it.
    std::size_t separator(std::size_t at) {
        if (!isInRemovedItem(at)) return 1;
        if (startsURLWithoutScheme(text_, at + 1)) return end(at);
        if (text_[at] == before_) markForeign(at);
        return 1;
    }

    std::size_t question(std::size_t at) noexcept {
        if (!isInQuery_ && !isInFragment_) startItem(at + 1);
        return 1;
    }

    std::size_t equals(std::size_t at) noexcept {
        if (isInQuery_ && nameEnd_ == kNone) nameEnd_ = at;
        return 1;
    }

    /// A character reference ends a link as the character itself would, except that "&amp;" is a part of it.
    std::size_t ampersand(std::size_t at) noexcept {
        const Reference reference = referenceAt(text_, at);
        if (reference.size > 0 && !reference.isAmpersand) return end(at);
        if (reference.isAmpersand) escaped_ = std::min(escaped_, at);
        const std::size_t size = std::max<std::size_t>(reference.size, 1);
        if (isInQuery_) startItem(at + size);
        return size;
    }

    std::size_t hash() noexcept {
        isInQuery_ = false;
        isInFragment_ = true;
        foreign_ = kNone;
        return 1;
    }

    std::size_t beyondASCII(std::size_t at) {
        const Unicode::Scalar scalar = Unicode::decode(text_, at);
        if (isBoundary(scalar.value)) return end(at);
        if (foreign_ == kNone && isInQuery_ && mayFollowWithoutSpace(scalar.value) && isInRemovedItem(at))
            markForeign(at);
        return scalar.byteSize;
    }

    void startItem(std::size_t at) noexcept {
        isInQuery_ = true;
        item_ = at;
        nameEnd_ = kNone;
        isAsked_ = false;
        foreign_ = kNone;
    }

    /// From here on the item is foreign text, if it is the last one. Brackets are not torn apart.
    void markForeign(std::size_t at) noexcept {
        if (!closers_.empty()) at = outermost_;
        if (at >= item_) foreign_ = std::min(foreign_, at);
    }

    bool isInRemovedItem(std::size_t at) {
        if (!isInQuery_) return false;
        if (nameEnd_ == kNone) return isRemovedName(at);
        if (!isAsked_) isItemRemoved_ = isRemovedName(nameEnd_);
        isAsked_ = true;
        return isItemRemoved_;
    }

    bool isRemovedName(std::size_t end) const {
        constexpr std::size_t kLongest = 64;  // bytes, where names are asked for again and again while they go on
        if (nameEnd_ == kNone && end - item_ > kLongest) return false;
        return isRemoved_(between(text_, item_, end));
    }

    std::string_view text_;
    IsRemoved isRemoved_;
    std::size_t begin_;
    std::size_t from_;
    char before_;  // the byte before the link
    std::size_t stop_ = kNone;

    std::string closers_;  // of the brackets that are open
    std::size_t outermost_ = 0;
    std::size_t foreignBeforeOutermost_ = kNone;

    bool isInQuery_ = false;
    bool isInFragment_ = false;
    std::size_t item_ = 0;
    std::size_t nameEnd_ = kNone;
    bool isAsked_ = false;
    bool isItemRemoved_ = false;
    std::size_t foreign_ = kNone;
    std::size_t escaped_ = kNone;  // the first "&amp;"
};

// --- The search ------------------------------------------------------------------------------------------------------

std::size_t LinkDetector::FindMail::operator()(std::size_t at) const noexcept {
    constexpr std::string_view kMail = "mailto:";
    for (std::size_t from = at;;) {
        const std::size_t colon = Scan::find(text, ':', from);
        if (colon == kNone) return kNone;
        const std::size_t begin = colon + 1 - std::min(colon + 1, kMail.size());
        if (begin >= at && hasWordAt(text, begin, kMail)) return begin;
        from = colon + 1;
    }
}

std::size_t LinkDetector::FindTrigger::operator()(std::size_t at) const noexcept {
    for (std::size_t block = at; block < text.size(); block += kBlock) {
        if (text.size() - block > kBlock && !hasTriggerPair(text.data() + block)) continue;
        // The pair may be the end of "://" and the start of "www.".
        const std::size_t from = std::max(block, at + 1) - 1;
        const std::size_t found = firstTrigger(text, from, std::min(block + kBlock + 2, text.size() - 1));
        if (found != kNone) return found;
    }
    return kNone;
}

std::optional<Link> LinkDetector::next() {
    for (;;) {
        const std::size_t trigger = std::min(hosts_.from(at_), queries_.from(at_));
        if (trigger == kNone) return std::nullopt;
        at_ = trigger + 1;
        if (skipMail(trigger)) continue;
        if (std::optional<Link> link = linkAt(trigger)) return link;
    }
}

/// Passes over a link to a mail address if there is one before `trigger`.
bool LinkDetector::skipMail(std::size_t trigger) {
    const std::size_t begin = mail_.from(floor_);
    if (begin >= trigger) return false;
    passOver(Walk(*this, begin, std::min(text_.find(':', begin) + 1, text_.size())));
    return true;
}

void LinkDetector::passOver(const Walk& walk) noexcept {
    at_ = floor_ = walk.stop();
}

std::optional<Link> LinkDetector::linkAt(std::size_t trigger) {
    switch (text_[trigger]) {
        case ':': return linkWithScheme(trigger);
        case '?': return linkWithQuery(trigger);
        default: return linkWithWWW(trigger);
    }
}

std::optional<Link> LinkDetector::linkWithScheme(std::size_t colon) {
    if (!text_.substr(colon).starts_with(kAfterScheme)) return std::nullopt;
    std::size_t begin = colon;
    while (begin > floor_ && isSchemeCharacter(text_[begin - 1])) --begin;
    // A scheme starts with a letter, so what stands before it may be the dash of a list.
    while (isOneOf(text_[begin], "+-.")) ++begin;
    // Inside a string literal it may be a line end.
    if (begin > 0 && text_[begin - 1] == '\\' && isOneOf(text_[begin], "nrt")) ++begin;
    if (begin == colon || ASCII::isDigit(text_[begin])) return std::nullopt;

    const std::size_t hostBegin = colon + kAfterScheme.size();
    const Walk walk(*this, begin, hostBegin);
    passOver(walk);
    if (webSchemeSize(text_, begin, colon) != colon - begin) return std::nullopt;
    const Link link = walk.link(/*hasScheme=*/true);
    const std::string_view host = hostOf(between(text_, hostBegin, link.end));
    return host.empty() || host.starts_with(':') ? std::nullopt : std::optional(link);
}

std::optional<Link> LinkDetector::linkWithWWW(std::size_t lastW) {
    constexpr std::string_view kWWW = "www.";
    if (lastW < floor_ + 2 || !hasWordAt(text_, lastW - 2, kWWW)) return std::nullopt;
    const std::size_t begin = lastW - 2;
    if (!mayStartHost(text_, begin)) return std::nullopt;
    const Host host = internationalHost(text_, begin);
    at_ = host.readEnd;
    if (host.end == kNone || isInsideMailAddress(text_, host.end)) return std::nullopt;
    if (!goesOnAfterHost(text_, host.end)) {
        at_ = floor_ = host.end;
        return Link{.begin = begin, .end = host.end, .hasScheme = false};
    }
    const Walk walk(*this, begin, host.end);
    passOver(walk);
    return walk.link(/*hasScheme=*/false);
}

std::optional<Link> LinkDetector::linkWithQuery(std::size_t question) {
    const char next = peek(text_, question + 1);
    if (Unicode::isASCII(next) && isASCIIBoundary(next)) return std::nullopt;
    const std::size_t begin = bareHostBefore(question);
    floor_ = question + 1;
    if (begin == kNone) return std::nullopt;
    const Walk walk(*this, begin, asciiHost(text_, begin).end);
    passOver(walk);
    at_ = floor_ = std::max(walk.stop(), question + 1);
    const Link link = walk.link(/*hasScheme=*/false);
    bool hasNamedValue = false;
    URLQuery(between(text_, link.begin, link.end)).forEachItem([&](QueryItem item) {
        hasNamedValue = hasNamedValue || (item.hasValue() && !item.rawName().empty());
    });
    return hasNamedValue ? std::optional(link) : std::nullopt;
}

/// The start of the first host that `question` may belong to, or kNone.
std::size_t LinkDetector::bareHostBefore(std::size_t question) const {
    for (std::size_t at = runBegin(question); at < question; ++at) {
        if (!ASCII::isAlphanumeric(text_[at]) || !mayStartBareHost(text_, at)) continue;
        const Host host = asciiHost(text_, at);
        if (host.end != kNone && mayPrecedeQuery(text_, at, host.end)) return at;
        at = host.readEnd;
    }
    return kNone;
}

/// Where what no boundary separates from byte `at` begins.
std::size_t LinkDetector::runBegin(std::size_t at) const noexcept {
    while (at > floor_) {
        const Unicode::Scalar scalar = Unicode::decodeBefore(text_, at);
        if (isBoundary(scalar.value)) break;
        at -= scalar.byteSize;
    }
    return at;
}

}  // namespace ravlin
