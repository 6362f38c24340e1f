#include "Engine/MarkdownTransforms.h"

#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/LineModel.h"
#include "Engine/Support/Replace.h"
#include "Engine/Support/Rewriter.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>

namespace ravlin::TextTransforms {
namespace {

using Scan::between;
using Scan::find;
using Scan::kNone;
using Scan::peek;

/// An HTML element, as its two tags.
struct Element {
    std::string_view open;
    std::string_view close;
};

constexpr Element kCode = {"<code>", "</code>"};
constexpr Element kStrong = {"<strong>", "</strong>"};
constexpr Element kEmphasis = {"<em>", "</em>"};
constexpr Element kParagraph = {"<p>", "</p>"};
constexpr Element kQuote = {"<blockquote>", "</blockquote>"};
constexpr Element kBulletedList = {"<ul>", "</ul>"};
constexpr Element kNumberedList = {"<ol>", "</ol>"};
constexpr Element kItem = {"<li>", "</li>"};
constexpr std::array<Element, 6> kHeadings = {
    {{"<h1>", "</h1>"}, {"<h2>", "</h2>"}, {"<h3>", "</h3>"}, {"<h4>", "</h4>"}, {"<h5>", "</h5>"}, {"<h6>", "</h6>"}}};

// --- Inline rules ----------------------------------------------------------------------------------------------------
// Each implements the regular expression in its comment, replacing every match in one walk over the text.

std::string_view escapeOf(char byte) noexcept {
    switch (byte) {
        case '&': return "&amp;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        default: return {};
    }
}

/// & < > as references, unless they carry an accent. No reference holds a character that a later step escapes, so one
/// pass does the same as one pass for each.
void escapeMarkup(Rewriter& rewriter) {
    const std::string_view text = rewriter.text();
    rewriter.replaceAll([&](std::size_t from) -> std::optional<Replacement> {
        for (std::size_t at = from; at < text.size(); ++at) {
            const std::string_view escape = escapeOf(text[at]);
            if (escape.empty() || !Replace::isWhole(text, at, 1)) continue;
            return Replacement{.from = at, .to = at + 1, .pieces = {escape}};
        }
        return std::nullopt;
    });
}

bool isWordBefore(std::string_view text, std::size_t end) noexcept {
    return end > 0 && Unicode::isWordCharacter(Unicode::decodeBefore(text, end).value);
}

bool isWordAt(std::string_view text, std::size_t at) noexcept {
    return at < text.size() && Unicode::isWordCharacter(Unicode::decode(text, at).value);
}

/// `([^`]+)`   and the same for other marks; for the underscore (?<![\w])_([^_]+)_(?![\w])
void replacePairs(Rewriter& rewriter, char mark, const Element& element) {
    const std::string_view text = rewriter.text();
    const auto isInWord = [&](std::size_t open, std::size_t close) {
        return mark == '_' && (isWordBefore(text, open) || isWordAt(text, close + 1));
    };
    rewriter.replaceAll([&](std::size_t from) -> std::optional<Replacement> {
        for (std::size_t open = find(text, mark, from); open != kNone;) {
            const std::size_t close = find(text, mark, open + 1);
            if (close == kNone) break;
            if (close > open + 1 && !isInWord(open, close))
                return Replacement{open, close + 1, {element.open, between(text, open + 1, close), element.close}};
            open = close;
        }
        return std::nullopt;
    });
}

/// \*\*([^*]+)\*\*   and the same for other marks
void replaceDoubledPairs(Rewriter& rewriter, char mark, const Element& element) {
    const std::string_view text = rewriter.text();
    rewriter.replaceAll([&](std::size_t from) -> std::optional<Replacement> {
        for (std::size_t open = find(text, mark, from); open != kNone;) {
            const std::size_t content = open + 2;
            const std::size_t close = find(text, mark, content);
            if (close == kNone) break;
            const bool isDoubled = peek(text, open + 1) == mark;
            if (isDoubled && close > content && peek(text, close + 1) == mark)
                return Replacement{open, close + 2, {element.open, between(text, content, close), element.close}};
            // Of three or more marks, the last two open.
            open = isDoubled && close == content ? open + 1 : close;
        }
        return std::nullopt;
    });
}

/// [)\s]
struct FindTargetEnd {
    std::string_view text;

    std::size_t operator()(std::size_t at) const noexcept {
        while (at < text.size() && text[at] != ')' && Scan::skipWhiteSpace(text, at) == at)
            at += Unicode::decode(text, at).byteSize;
        return at;
    }
};

/// \[([^\]]+)\]\(([^)\s]+)\)
///
/// Lemma: whether a link matches from "[" depends only on the next "]". If it does not match, neither does any "["
/// between the two, and the search continues after the "]".
void replaceLinks(Rewriter& rewriter) {
    const std::string_view text = rewriter.text();
    Scan::Lookahead<FindTargetEnd> targetEnds({.text = text});
    rewriter.replaceAll([&](std::size_t from) -> std::optional<Replacement> {
        for (std::size_t open = find(text, '[', from); open != kNone;) {
            const std::size_t close = find(text, ']', open + 1);
            if (close == kNone) break;
            const std::size_t target = close + 2;
            const bool hasTarget = close > open + 1 && peek(text, close + 1) == '(';
            const std::size_t targetEnd = hasTarget ? targetEnds.from(target) : kNone;
            if (targetEnd > target && peek(text, targetEnd) == ')')
                return Replacement{.from = open,
                                   .to = targetEnd + 1,
                                   .pieces = {"<a href=\"", between(text, target, targetEnd), "\">",
                                              between(text, open + 1, close), "</a>"}};
            open = find(text, '[', close + 1);
        }
        return std::nullopt;
    });
}

// The characters without which a rule finds nothing.
enum Mark : std::uint8_t { kMarkup = 1, kBackTick = 2, kBracket = 4, kAsterisk = 8, kUnderscore = 16 };

struct InlineRule {
    Mark mark;
    void (*apply)(Rewriter&);
};

// The order matters. No rule writes a mark of a later one, so the marks in the original text decide which rules apply.
constexpr auto kInlineRules = std::to_array<InlineRule>({
    {kMarkup, escapeMarkup},
    {kBackTick, [](Rewriter& rewriter) { replacePairs(rewriter, '`', kCode); }},
    {kBracket, replaceLinks},
    {kAsterisk, [](Rewriter& rewriter) { replaceDoubledPairs(rewriter, '*', kStrong); }},
    {kUnderscore, [](Rewriter& rewriter) { replaceDoubledPairs(rewriter, '_', kStrong); }},
    {kAsterisk, [](Rewriter& rewriter) { replacePairs(rewriter, '*', kEmphasis); }},
    {kUnderscore, [](Rewriter& rewriter) { replacePairs(rewriter, '_', kEmphasis); }},
});

consteval std::array<std::uint8_t, 256> makeMarks() {
    std::array<std::uint8_t, 256> marks = {};
    for (const char byte : {'&', '<', '>'}) marks[static_cast<unsigned char>(byte)] = kMarkup;
    marks['`'] = kBackTick;
    marks['['] = kBracket;
    marks['*'] = kAsterisk;
    marks['_'] = kUnderscore;
    return marks;
}

unsigned marksIn(std::string_view text) noexcept {
    static constexpr std::array<std::uint8_t, 256> kMarks = makeMarks();
    unsigned marks = 0;
    for (const char byte : text) marks |= kMarks[static_cast<unsigned char>(byte)];
    return marks;
}

// --- Lines -----------------------------------------------------------------------------------------------------------

/// What "." does not match.
bool isLineTerminator(char32_t scalar) noexcept {
    return (scalar >= '\n' && scalar <= '\r') || scalar == 0x85 || scalar == 0x2028 || scalar == 0x2029;
}

std::size_t findLineTerminator(std::string_view line, std::size_t at) noexcept {
    while (at < line.size()) {
        const Unicode::Scalar scalar = Unicode::decode(line, at);
        if (isLineTerminator(scalar.value)) break;
        at += scalar.byteSize;
    }
    return at;
}

/// \s+(.*)$   The text after the white space that starts at byte `at`.
///
/// "." stops at a line terminator, and "$" matches at the end and before a line terminator that is the last character.
/// So that one is left out, and any other fails the match: backtracking over white space would not get "." past it.
std::optional<std::string_view> contentFrom(std::string_view line, std::size_t at) noexcept {
    const std::size_t start = Scan::skipWhiteSpace(line, at);
    if (start == at) return std::nullopt;
    const std::size_t end = findLineTerminator(line, start);
    const bool isAtEnd = end == line.size() || end + Unicode::decode(line, end).byteSize == line.size();
    return isAtEnd ? std::optional(between(line, start, end)) : std::nullopt;
}

struct Heading {
    std::size_t level = 0;
    std::string_view title;
};

/// ^(#{1,6})\s+(.*)$
std::optional<Heading> headingIn(std::string_view line) noexcept {
    const std::size_t level = std::min(line.find_first_not_of('#'), line.size());
    if (level < 1 || level > kHeadings.size()) return std::nullopt;
    const std::optional<std::string_view> title = contentFrom(line, level);
    if (!title) return std::nullopt;
    return Heading{.level = level, .title = *title};
}

/// ^[-*+]\s+(.*)$
std::optional<std::string_view> bulletedItemIn(std::string_view line) noexcept {
    const char bullet = peek(line, 0);
    if (bullet != '-' && bullet != '*' && bullet != '+') return std::nullopt;
    return contentFrom(line, 1);
}

/// ^\d+[.)]\s+(.*)$
std::optional<std::string_view> numberedItemIn(std::string_view line) noexcept {
    std::size_t at = 0;
    while (at < line.size()) {
        const Unicode::Scalar scalar = Unicode::decode(line, at);
        if (!Unicode::isDecimalDigit(scalar.value)) break;
        at += scalar.byteSize;
    }
    if (at == 0 || (peek(line, at) != '.' && peek(line, at) != ')')) return std::nullopt;
    return contentFrom(line, at + 1);
}

/// A ">" that carries an accent is a different character.
bool isQuote(std::string_view line) noexcept {
    return line.starts_with('>') && Replace::isWhole(line, 0, 1);
}

/// Turns lines into elements, and remembers the open list.
class Converter {
public:
    explicit Converter(std::size_t expectedSize) : output_(expectedSize) {}

    /// The order of the tests matters: a heading wins over a quote, a quote over an item.
    void addLine(std::string_view line) {
        line = Unicode::trimWhitespaces(line);
        if (line.empty()) {
            enter(nullptr);
        } else if (const std::optional<Heading> heading = headingIn(line)) {
            enter(nullptr);
            addElement(kHeadings[heading->level - 1], heading->title);
        } else if (isQuote(line)) {
            enter(nullptr);
            addElement(kQuote, Unicode::trimWhitespaces(line.substr(1)));
        } else if (const std::optional<std::string_view> bulleted = bulletedItemIn(line)) {
            enter(&kBulletedList);
            addElement(kItem, *bulleted);
        } else if (const std::optional<std::string_view> numbered = numberedItemIn(line)) {
            enter(&kNumberedList);
            addElement(kItem, *numbered);
        } else {
            enter(nullptr);
            addElement(kParagraph, line);
        }
    }

    std::string html() && {
        enter(nullptr);
        return std::move(output_).text();
    }

private:
    /// Closes the open list and opens `list`, unless they are the same. Null means no list.
    void enter(const Element* list) {
        if (list == list_) return;
        if (list_ != nullptr) output_.startLine() += list_->close;
        if (list != nullptr) output_.startLine() += list->open;
        list_ = list;
    }

    void addElement(const Element& element, std::string_view text) {
        std::string& output = output_.startLine();
        output += element.open;
        inline_.restart(text);
        if (const unsigned marks = marksIn(text); marks != 0)
            for (const InlineRule& rule : kInlineRules)
                if ((rule.mark & marks) != 0) rule.apply(inline_);
        output += inline_.text();
        output += element.close;
    }

    LineModel::Joiner output_;
    Rewriter inline_{""};
    const Element* list_ = nullptr;  // the open one
};

}  // namespace

std::string markdownToHTML(std::string_view text) {
    // Many short lines make it even longer. Unused room costs nothing; missing room costs a second copy.
    Converter converter(2 * text.size());
    LineModel::forEachLine(text, [&](std::string_view line) { converter.addLine(line); });
    return std::move(converter).html();
}

}  // namespace ravlin::TextTransforms
