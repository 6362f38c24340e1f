#include "Engine/HTMLTransforms.h"

#include "Engine/Support/Bytes.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/HTMLScanner.h"
#include "Engine/Support/Replace.h"
#include "Engine/Support/Rewriter.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <variant>

namespace ravlin::TextTransforms {
namespace {

using HTMLScanner::Element;
using HTMLScanner::NameEnd;
using HTMLScanner::Names;
using HTMLScanner::Slash;
using HTMLScanner::Tag;
using HTMLScanner::Tail;
using Replace::Literal;

// --- Rules -----------------------------------------------------------------------------------------------------------

constexpr std::array kRawElements = {Names("script"), Names("style")};

constexpr std::array kTextRules = {
    Tag{.names = Names("br"), .tail = Tail::selfClosing, .replacement = "\n"},
    Tag{.names = Names("p|div|li|tr|h1|h2|h3|h4|h5|h6"), .slash = Slash::required, .replacement = "\n"},
};

using Rule = std::variant<Tag, Element>;

// The order matters: every rule acts on what the previous rules have left.
constexpr auto kMarkdownRules = std::to_array<Rule>({
    Tag{.names = Names("br"), .tail = Tail::selfClosing, .replacement = "\n"},
    Tag{.names = Names("p"), .slash = Slash::required, .replacement = "\n\n"},
    Tag{.names = Names("p"), .tail = Tail::anything, .replacement = ""},
    Element{Names("h1"), Tail::anything, NameEnd::anywhere, "# ", "\n\n"},
    Element{Names("h2"), Tail::anything, NameEnd::anywhere, "## ", "\n\n"},
    Element{Names("h3"), Tail::anything, NameEnd::anywhere, "### ", "\n\n"},
    Element{Names("h4"), Tail::anything, NameEnd::anywhere, "#### ", "\n\n"},
    Element{Names("strong|b"), Tail::bare, NameEnd::wordBoundary, "**", "**"},
    Element{Names("em|i"), Tail::bare, NameEnd::wordBoundary, "*", "*"},
    Element{Names("code"), Tail::bare, NameEnd::wordBoundary, "`", "`"},
    Element{Names("li"), Tail::anything, NameEnd::wordBoundary, "- ", "\n"},
    Tag{.names = Names("ul|ol"), .slash = Slash::optional, .replacement = "\n"},
    Element{Names("blockquote"), Tail::anything, NameEnd::wordBoundary, "> ", "\n"},
});

// --- Character references --------------------------------------------------------------------------------------------

constexpr auto kNamedReferences = std::to_array<Literal>({
    {.from = "&lt;", .to = "<"},
    {.from = "&gt;", .to = ">"},
    {.from = "&quot;", .to = "\""},
    {.from = "&#39;", .to = "'"},
    {.from = "&apos;", .to = "'"},
    {.from = "&nbsp;", .to = " "},  // NOTE: not U+00A0, so that no pasted character merely looks like a space
    {.from = "&mdash;", .to = "\u2014"},
    {.from = "&ndash;", .to = "\u2013"},
});

// After the others: "&amp;lt;" is what encoding makes of "&lt;".
constexpr auto kAmpersand = std::to_array<Literal>({{.from = "&amp;", .to = "&"}});

/// Decoding one reference cannot produce another, so one pass does the same as one pass for each.
void decodeNamed(Rewriter& rewriter, std::span<const Literal> references) {
    const std::string_view text = rewriter.text();
    rewriter.shrinkAll([&](std::size_t from) -> std::optional<Replacement> {
        for (std::size_t at = text.find('&', from); at != std::string_view::npos; at = text.find('&', at + 1)) {
            const std::string_view rest = text.substr(at);
            const auto found = std::find_if(references.begin(), references.end(), [&](const Literal& each) {
                return Scan::peek(rest, 1) == each.from[1] && rest.starts_with(each.from);
            });
            if (found == references.end() || !Replace::isWhole(text, at, found->from.size())) continue;
            return Replacement{.from = at, .to = at + found->from.size(), .pieces = {found->to}};
        }
        return std::nullopt;
    });
}

constexpr std::uint32_t kScalarLimit = 0x110000;

bool isInsertableScalar(std::uint32_t value) noexcept {
    if (value < 0x20) return value == '\t' || value == '\n' || value == '\r';
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    return value != 0x7F && !isSurrogate && value < kScalarLimit;
}

struct NumericReference {
    std::size_t end = 0;
    std::uint32_t value = 0;  // kScalarLimit for everything beyond it
};

/// Reads the digits and ";" that start at byte `at`. Only ASCII digits count, so references with any others stay.
std::optional<NumericReference> numericReferenceAt(std::string_view text, std::size_t at,
                                                   std::uint32_t radix) noexcept {
    std::uint32_t value = 0;
    std::size_t end = at;
    for (; end < text.size(); ++end) {
        const std::optional<unsigned> digit = Bytes::hexValue(text[end]);
        if (!digit || *digit >= radix) break;
        value = std::min(value * radix + *digit, kScalarLimit);
    }
    if (end == at || end == text.size() || text[end] != ';') return std::nullopt;
    return NumericReference{.end = end + 1, .value = value};
}

/// Decodes the references that start with `prefix`, in one pass.
void pass(Rewriter& rewriter, std::string_view prefix, std::uint32_t radix) {
    const std::string_view text = rewriter.text();
    std::string scalar;
    rewriter.shrinkAll([&](std::size_t from) -> std::optional<Replacement> {
        for (std::size_t at = text.find(prefix, from); at != std::string_view::npos; at = text.find(prefix, at + 1)) {
            const std::optional<NumericReference> reference = numericReferenceAt(text, at + prefix.size(), radix);
            if (!reference || !isInsertableScalar(reference->value)) continue;
            scalar.clear();
            Unicode::append(scalar, reference->value);
            return Replacement{.from = at, .to = reference->end, .pieces = {scalar}};
        }
        return std::nullopt;
    });
}

void decodeNumeric(Rewriter& rewriter) {
    pass(rewriter, "&#", 10);
    pass(rewriter, "&#x", 16);
}

void decodeEntities(Rewriter& rewriter) {
    decodeNamed(rewriter, kNamedReferences);
    decodeNamed(rewriter, kAmpersand);
    decodeNumeric(rewriter);
}

// --- Whole texts -----------------------------------------------------------------------------------------------------

void removeRawElements(Rewriter& rewriter) {
    for (const Names& names : kRawElements) HTMLScanner::removeRawElements(rewriter, names);
}

/// \n{3,}
void collapseBlankLines(Rewriter& rewriter) {
    const std::string_view text = rewriter.text();
    rewriter.replaceAll([&](std::size_t from) -> std::optional<Replacement> {
        const std::size_t at = text.find("\n\n\n", from);
        if (at == std::string_view::npos) return std::nullopt;
        return Replacement{
            .from = at, .to = std::min(text.find_first_not_of('\n', at), text.size()), .pieces = {"\n\n"}};
    });
}

/// The steps that remain after the rules for single tags.
std::string plainTextOf(Rewriter& rewriter) {
    HTMLScanner::removeTags(rewriter);
    decodeEntities(rewriter);
    collapseBlankLines(rewriter);
    return std::string(Unicode::trimWhitespacesAndNewlines(rewriter.text()));
}

}  // namespace

std::string stripHTML(std::string_view text) {
    if (text.size() > kMaxHTMLSize) return std::string(text);
    Rewriter rewriter(text);
    removeRawElements(rewriter);
    for (const Tag& rule : kTextRules) HTMLScanner::replace(rewriter, rule);
    return plainTextOf(rewriter);
}

std::string htmlToMarkdown(std::string_view text) {
    if (text.size() > kMaxHTMLSize) return std::string(text);
    Rewriter rewriter(text);
    removeRawElements(rewriter);
    for (const Rule& rule : kMarkdownRules)
        std::visit([&](const auto& each) { HTMLScanner::replace(rewriter, each); }, rule);
    HTMLScanner::replaceLinks(rewriter);
    return plainTextOf(rewriter);
}

std::string decodeEntities(std::string_view text) {
    Rewriter rewriter(text);
    decodeEntities(rewriter);
    return std::move(rewriter).take();
}

std::string decodeNumeric(std::string_view text) {
    Rewriter rewriter(text);
    decodeNumeric(rewriter);
    return std::move(rewriter).take();
}

}  // namespace ravlin::TextTransforms
