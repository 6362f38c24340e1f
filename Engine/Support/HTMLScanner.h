#pragma once

#include "Engine/Support/Characters/Unicode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ravlin {
class Rewriter;
}

/// Rewrites tags and elements of HTML text, without parsing HTML.
///
/// Every rule is defined by the regular expression in its comment (ICU's syntax and meaning, case-insensitive): it
/// replaces every non-overlapping match, found from the start. A regular-expression engine backtracks to find these;
/// here one walk finds them all, in time proportional to the size of the text, whatever it holds.
namespace ravlin::HTMLScanner {

/// The names that a rule knows, in lower case, as in Names("strong|b"). They match the way ICU compares literals when
/// ignoring case, by full case folding: U+017F is an "s", U+212A a "k", and the ligatures U+FB05 and U+FB06 are "st".
class Names {
public:
    consteval explicit Names(std::string_view list) {
        for (std::size_t from = 0; from <= list.size();) {
            const std::size_t bar = list.find('|', from);
            const std::string_view name = list.substr(from, bar - from);
            if (!isComparable(name)) throw "this name is not compared letter by letter";
            names_[count_++] = name;
            initials_ |= bitOf(name.front());
            from = from + name.size() + 1;
        }
    }

    /// The end of the name at byte `at` of `text`, npos if there is none.
    std::size_t endAt(std::string_view text, std::size_t at) const noexcept {
        return mayStartAt(text, at) ? compareAt(text, at) : std::string_view::npos;
    }

private:
    static constexpr std::uint32_t bitOf(char letter) { return 1U << (static_cast<unsigned char>(letter) % 32U); }

    bool mayStartAt(std::string_view text, std::size_t at) const noexcept {
        return at < text.size() && (!Unicode::isASCII(text[at]) || (initials_ & bitOf(text[at])) != 0);
    }
    std::size_t compareAt(std::string_view text, std::size_t at) const noexcept;

    /// Rules out other characters that fold to several letters: only folds to single letters and to "st" are handled.
    static consteval bool isComparable(std::string_view name) {
        constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
        constexpr auto kLigatures = std::to_array<std::string_view>({"ff", "fi", "fl", "ss"});
        const auto has = [&](std::string_view part) { return name.find(part) != std::string_view::npos; };
        return !name.empty() && name.find_first_not_of(kLetters) == std::string_view::npos &&
               std::none_of(kLigatures.begin(), kLigatures.end(), has);
    }

    std::array<std::string_view, 10> names_ = {};
    std::size_t count_ = 0;
    std::uint32_t initials_ = 0;  // bitOf every first letter
};

/// What may come between "<" and the name, after white space.
enum class Slash : std::uint8_t {
    none,
    optional,  // /?
    required,  // /
};

/// How a tag continues after its name.
enum class Tail : std::uint8_t {
    bare,         // \s*>
    selfClosing,  // \s*/?>
    anything,     // [^>]*>   NOTE: letters too, so "p" with this tail also matches "<pre>"
};

/// <\s* slash name tail
struct Tag {
    Names names;
    Slash slash = Slash::none;
    Tail tail = Tail::bare;
    std::string_view replacement;
};

/// Where a name ends that may not occur in an element's body.
enum class NameEnd : std::uint8_t {
    anywhere,
    wordBoundary,  // \b
};

/// <\s* name tail  ( body )  <\s*/ name \s*>   where the body holds no <\s*/? name nameEnd
///
/// The tags are replaced with `before` and `after`; the body stays.
struct Element {
    Names names;
    Tail tail = Tail::bare;
    NameEnd nameEnd = NameEnd::wordBoundary;
    std::string_view before;
    std::string_view after;
};

void replace(Rewriter& rewriter, const Tag& tag);

void replace(Rewriter& rewriter, const Element& element);

/// Removes elements together with their content: <name[^>]*> and everything up to the first </name>.
void removeRawElements(Rewriter& rewriter, const Names& names);

/// Replaces links with "[$2]($1)": their content and the quoted text after "href".
///
/// <\s*a[^>]*href\s*=\s*["']([^"']*)["'][^>]*>  ( body )  <\s*/a\s*>   where the body holds no <\s*/?a\b
void replaceLinks(Rewriter& rewriter);

/// Removes every tag that begins with a letter: </?[a-zA-Z][^>]*>
void removeTags(Rewriter& rewriter);

}  // namespace ravlin::HTMLScanner
