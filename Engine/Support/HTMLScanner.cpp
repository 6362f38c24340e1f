// Why these rules are linear
//
// Every rule checks each "<" once, in order, for the start of a match. White space after a "<" and names hold no "<",
// so walking over them costs no more than walking over the text. All other questions have the form "where is the next
// one from here" and are asked at ascending bytes; a Lookahead answers them. Finally, an expression can match from a
// "<" in only one way, or in two (links): see the lemmas at the rules.

#include "Engine/Support/HTMLScanner.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Rewriter.h"
#include "Engine/Support/Scan.h"

#include <optional>
#include <utility>

namespace ravlin::HTMLScanner {
namespace {

using Scan::between;
using Scan::find;
using Scan::FindByte;
using Scan::kNone;
using Scan::Lookahead;
using Scan::peek;
using Scan::skipWhiteSpace;

// --- Vocabulary: the parts of the expressions ------------------------------------------------------------------------

std::size_t findQuote(std::string_view text, std::size_t at) noexcept {
    return text.find_first_of("\"'", at);
}

/// \b after a letter: the end of the text, or not a word character. ICU does not end a word at a format character.
bool isWordBoundary(std::string_view text, std::size_t at) noexcept {
    if (at == text.size()) return true;
    const char32_t next = Unicode::decode(text, at).value;
    return !Unicode::isWordCharacter(next) && !Unicode::isFormat(next);
}

/// A character and the letters that it equals when case is ignored.
struct Folding {
    std::string_view character;
    std::string_view letters;
};
constexpr std::array<Folding, 4> kFoldings = {{{"\u017F", "s"}, {"\u212A", "k"}, {"\uFB05", "st"}, {"\uFB06", "st"}}};

/// How the character at byte `at` matches the beginning of `name`; empty if it does not.
Folding foldingAt(std::string_view text, std::size_t at, std::string_view name) noexcept {
    const char byte = peek(text, at);
    if (ASCII::toLower(byte) == name.front()) return {.character = text.substr(at, 1), .letters = name.substr(0, 1)};
    if (Unicode::isASCII(byte)) return {};
    const std::string_view rest = text.substr(at);
    for (const Folding& folding : kFoldings)
        if (rest.starts_with(folding.character) && name.starts_with(folding.letters)) return folding;
    return {};
}

/// The end of `name`, if it is at byte `at`.
std::size_t endOfName(std::string_view text, std::size_t at, std::string_view name) noexcept {
    while (!name.empty()) {
        const Folding folding = foldingAt(text, at, name);
        if (folding.letters.empty()) return kNone;
        at += folding.character.size();
        name.remove_prefix(folding.letters.size());
    }
    return at;
}

/// [a-zA-Z]
bool isLetter(std::string_view text, std::size_t at) noexcept {
    const char byte = peek(text, at);
    if (Unicode::isASCII(byte)) return ASCII::isLetter(byte);
    return !foldingAt(text, at, "s").letters.empty() || !foldingAt(text, at, "k").letters.empty();
}

// --- Parts of tags ---------------------------------------------------------------------------------------------------

/// <\s*/? name
struct TagName {
    std::size_t end = kNone;  // kNone: another name, or none
    bool isClosing = false;
};

TagName tagNameAt(std::string_view text, std::size_t less, const Names& names) noexcept {
    const std::size_t at = skipWhiteSpace(text, less + 1);
    const bool isClosing = peek(text, at) == '/';
    return {.end = names.endAt(text, isClosing ? at + 1 : at), .isClosing = isClosing};
}

bool allows(Slash slash, bool isClosing) noexcept {
    return slash == Slash::optional || isClosing == (slash == Slash::required);
}

/// \s*>   The position after it, if it starts at byte `at`.
std::size_t endOfBareTag(std::string_view text, std::size_t at) noexcept {
    at = skipWhiteSpace(text, at);
    return peek(text, at) == '>' ? at + 1 : kNone;
}

/// Finds where tags end, one tag after another.
class TagEnds {
public:
    TagEnds(std::string_view text, Tail tail) : text_(text), tail_(tail), greaters_({.text = text, .byte = '>'}) {}

    /// The position after the ">" of the tag whose name ends at byte `at`; kNone if it does not continue like `tail`.
    std::size_t from(std::size_t at) {
        switch (tail_) {
            case Tail::bare: return endOfBareTag(text_, at);
            case Tail::selfClosing: return endOfSelfClosingTag(at);
            case Tail::anything: break;
        }
        const std::size_t greater = greaters_.from(at);
        return greater == kNone ? kNone : greater + 1;
    }

private:
    std::size_t endOfSelfClosingTag(std::size_t at) const noexcept {
        at = skipWhiteSpace(text_, at);
        if (peek(text_, at) == '/') ++at;
        return peek(text_, at) == '>' ? at + 1 : kNone;
    }

    std::string_view text_;
    Tail tail_;
    Lookahead<FindByte> greaters_;
};

/// A tag that ends the body of an element: an opening or closing tag of its kind.
struct Marker {
    std::size_t at = kNone;
    std::size_t closeEnd = kNone;  // the position after it, if it is a whole closing tag
};

/// <\s*/? name nameEnd
struct FindMarker {
    std::string_view text;
    const Names& names;
    NameEnd nameEnd = NameEnd::wordBoundary;

    Marker operator()(std::size_t from) const noexcept {
        for (std::size_t less = find(text, '<', from); less != kNone; less = find(text, '<', less + 1)) {
            const TagName name = tagNameAt(text, less, names);
            if (name.end == kNone) continue;
            if (nameEnd == NameEnd::wordBoundary && !isWordBoundary(text, name.end)) continue;
            return {.at = less, .closeEnd = name.isClosing ? endOfBareTag(text, name.end) : kNone};
        }
        return {};
    }
};

/// </name>
struct FindRawClosingTag {
    std::string_view text;
    const Names& names;

    Marker operator()(std::size_t from) const noexcept {
        for (std::size_t less = find(text, '<', from); less != kNone; less = find(text, '<', less + 1)) {
            if (peek(text, less + 1) != '/') continue;
            const std::size_t end = names.endAt(text, less + 2);
            if (end != kNone && peek(text, end) == '>') return {.at = less, .closeEnd = end + 1};
        }
        return {};
    }
};

/// Replaces everything that `matchAt` finds; it is called for one "<" after another.
template <typename MatchAt>
void replaceWhereTagsStart(Rewriter& rewriter, MatchAt matchAt) {
    const std::string_view text = rewriter.text();
    rewriter.replaceAll([&](std::size_t from) -> std::optional<Replacement> {
        for (std::size_t less = find(text, '<', from); less != kNone; less = find(text, '<', less + 1))
            if (std::optional<Replacement> match = matchAt(less)) return match;
        return std::nullopt;
    });
}

// --- Links -----------------------------------------------------------------------------------------------------------

/// href\s*=\s*["']([^"']*)["']
struct Href {
    std::size_t value = kNone;
    std::size_t valueEnd = kNone;  // where its closing quote is
};

/// The first href at or after byte `from`. The closing quote is not looked for beyond the end of `tag`.
Href findHref(std::string_view tag, std::size_t from) noexcept {
    for (std::size_t at = tag.find_first_of("hH", from); at != kNone; at = tag.find_first_of("hH", at + 1)) {
        const std::size_t nameEnd = endOfName(tag, at, "href");
        if (nameEnd == kNone) continue;
        const std::size_t equals = skipWhiteSpace(tag, nameEnd);
        if (peek(tag, equals) != '=') continue;
        const std::size_t quote = skipWhiteSpace(tag, equals + 1);
        if (peek(tag, quote) != '"' && peek(tag, quote) != '\'') continue;
        return {.value = quote + 1, .valueEnd = findQuote(tag, quote + 1)};
    }
    return {};
}

struct FindQuote {
    std::string_view text;
    std::size_t operator()(std::size_t at) const noexcept { return findQuote(text, at); }
};

constexpr Names kLinkName("a");

/// Lemma: whether a link matches from "<a" depends only on the first ">" after it, its `greater`, and on two hrefs.
///
/// The greedy [^>]* reaches up to `greater`, so the last href before it is tried first. Its value may hold ">", and so
/// may end after `greater`; then the tag ends at the first ">" after the value. If the body that starts there is not
/// followed by its closing tag, the second-to-last href is tried. Its value ends before `greater`, at the latest with
/// the opening quote of the last one, and so the tag ends at `greater`. All earlier hrefs would end the tag there too,
/// and fail as well.
///
/// If an "<a" fails, so does the next "<a" with the same `greater`: its hrefs are among those of the first.
class LinkFinder {
public:
    explicit LinkFinder(std::string_view text)
        : text_(text),
          greaters_({.text = text, .byte = '>'}),
          quotesBehind_({.text = text}),
          greatersBehind_({.text = text, .byte = '>'}),
          markers_({.text = text, .names = kLinkName}),
          markersBehind_({.text = text, .names = kLinkName}) {}

    std::optional<Replacement> matchAt(std::size_t less) {
        const TagName name = tagNameAt(text_, less, kLinkName);
        if (name.end == kNone || name.isClosing) return std::nullopt;
        const std::size_t greater = greaters_.from(name.end);
        if (greater == kNone || greater == lastGreater_) return std::nullopt;
        lastGreater_ = greater;
        const auto [last, secondLast] = lastHrefs(name.end, greater);
        if (std::optional<Replacement> match = matchWith(last, less, greater)) return match;
        return matchWith(secondLast, less, greater);
    }

private:
    /// The last two hrefs between the name of a tag and its `greater`.
    std::pair<Href, Href> lastHrefs(std::size_t nameEnd, std::size_t greater) {
        const std::string_view tag = text_.substr(0, greater);
        Href last;
        Href secondLast;
        for (Href href = findHref(tag, nameEnd); href.value != kNone; href = findHref(tag, href.value)) {
            secondLast = last;
            last = href;
        }
        if (last.value != kNone && last.valueEnd == kNone) last.valueEnd = quotesBehind_.from(greater);
        return {last, secondLast};
    }

    std::optional<Replacement> matchWith(const Href& href, std::size_t less, std::size_t greater) {
        if (href.valueEnd == kNone) return std::nullopt;
        const bool endsBehind = href.valueEnd > greater;
        const std::size_t tagEnd = endsBehind ? greatersBehind_.from(href.valueEnd) : greater;
        if (tagEnd == kNone) return std::nullopt;
        const std::size_t body = tagEnd + 1;
        const Marker& marker = endsBehind ? markersBehind_.from(body) : markers_.from(body);
        if (marker.closeEnd == kNone) return std::nullopt;
        return Replacement{
            .from = less,
            .to = marker.closeEnd,
            .pieces = {"[", between(text_, body, marker.at), "](", between(text_, href.value, href.valueEnd), ")"}};
    }

    std::string_view text_;
    Lookahead<FindByte> greaters_;
    Lookahead<FindQuote> quotesBehind_;  // "Behind" means after `greater`
    Lookahead<FindByte> greatersBehind_;
    Lookahead<FindMarker> markers_;
    Lookahead<FindMarker> markersBehind_;
    std::size_t lastGreater_ = kNone;
};

}  // namespace

std::size_t Names::compareAt(std::string_view text, std::size_t at) const noexcept {
    for (std::size_t i = 0; i < count_; ++i) {
        const std::size_t end = endOfName(text, at, names_[i]);
        if (end != kNone) return end;
    }
    return kNone;
}

void replace(Rewriter& rewriter, const Tag& tag) {
    const std::string_view text = rewriter.text();
    TagEnds ends(text, tag.tail);
    replaceWhereTagsStart(rewriter, [&](std::size_t less) -> std::optional<Replacement> {
        const TagName name = tagNameAt(text, less, tag.names);
        if (name.end == kNone || !allows(tag.slash, name.isClosing)) return std::nullopt;
        const std::size_t end = ends.from(name.end);
        if (end == kNone) return std::nullopt;
        return Replacement{.from = less, .to = end, .pieces = {tag.replacement}};
    });
}

// Lemma: the body takes one character after another up to a marker, and ends at a closing tag, which is a marker as
// well. So the body ends at the first marker, if that is a whole closing tag, and otherwise nowhere.
void replace(Rewriter& rewriter, const Element& element) {
    const std::string_view text = rewriter.text();
    TagEnds ends(text, element.tail);
    Lookahead<FindMarker> markers({.text = text, .names = element.names, .nameEnd = element.nameEnd});
    replaceWhereTagsStart(rewriter, [&](std::size_t less) -> std::optional<Replacement> {
        const TagName name = tagNameAt(text, less, element.names);
        if (name.end == kNone || name.isClosing) return std::nullopt;
        const std::size_t body = ends.from(name.end);
        if (body == kNone) return std::nullopt;
        const Marker& marker = markers.from(body);
        if (marker.closeEnd == kNone) return std::nullopt;
        return Replacement{.from = less,
                           .to = marker.closeEnd,
                           .pieces = {element.before, between(text, body, marker.at), element.after}};
    });
}

void removeRawElements(Rewriter& rewriter, const Names& names) {
    const std::string_view text = rewriter.text();
    TagEnds ends(text, Tail::anything);
    Lookahead<FindRawClosingTag> closingTags({.text = text, .names = names});
    replaceWhereTagsStart(rewriter, [&](std::size_t less) -> std::optional<Replacement> {
        const std::size_t nameEnd = names.endAt(text, less + 1);
        if (nameEnd == kNone) return std::nullopt;
        const std::size_t body = ends.from(nameEnd);
        if (body == kNone) return std::nullopt;
        const Marker& closingTag = closingTags.from(body);
        if (closingTag.closeEnd == kNone) return std::nullopt;
        return Replacement{.from = less, .to = closingTag.closeEnd};
    });
}

void replaceLinks(Rewriter& rewriter) {
    LinkFinder links(rewriter.text());
    replaceWhereTagsStart(rewriter, [&](std::size_t less) { return links.matchAt(less); });
}

void removeTags(Rewriter& rewriter) {
    const std::string_view text = rewriter.text();
    TagEnds ends(text, Tail::anything);
    replaceWhereTagsStart(rewriter, [&](std::size_t less) -> std::optional<Replacement> {
        const std::size_t name = peek(text, less + 1) == '/' ? less + 2 : less + 1;
        if (!isLetter(text, name)) return std::nullopt;
        const std::size_t end = ends.from(name);
        if (end == kNone) return std::nullopt;
        return Replacement{.from = less, .to = end};
    });
}

}  // namespace ravlin::HTMLScanner
