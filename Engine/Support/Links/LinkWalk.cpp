#include "Engine/Support/Links/LinkWalk.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Links/CharacterReference.h"
#include "Engine/Support/Links/Host.h"
#include "Engine/Support/Links/LinkCharacters.h"
#include "Engine/Support/Links/LinkEnd.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

namespace ravlin::Links {
namespace {

using Scan::between;
using Scan::kNone;
using Scan::peek;

/// The item of the query that the walk is in, and whether it will be removed.
class Item {
public:
    Item(std::string_view text, IsRemoved ask) : text_(text), ask_(ask) {}

    std::size_t begin() const noexcept { return begin_; }

    void start(std::size_t at) noexcept {
        begin_ = at;
        nameEnd_ = kNone;
        isRemoved_ = std::nullopt;
    }

    /// Takes an "="; the first one ends the name.
    void equals(std::size_t at) noexcept { nameEnd_ = std::min(nameEnd_, at); }

    /// Whether the item will be removed, if its name ends at byte `at` or before.
    bool isRemoved(std::size_t at) {
        constexpr std::size_t kLongest = 64;  // bytes; an unfinished name is asked about again and again
        if (nameEnd_ == kNone) return at - begin_ <= kLongest && ask_(between(text_, begin_, at));
        if (!isRemoved_) isRemoved_ = ask_(between(text_, begin_, nameEnd_));
        return *isRemoved_;
    }

    /// Whether the value begins at byte `at`.
    bool isValueBegin(std::size_t at) const noexcept { return nameEnd_ == at - 1; }

private:
    std::string_view text_;
    IsRemoved ask_;  // whether it will be removed
    std::size_t begin_ = 0;
    std::size_t nameEnd_ = kNone;
    std::optional<bool> isRemoved_;  // asked once, when the name has ended
};

class Walk {
public:
    Walk(std::string_view text, std::size_t begin, std::size_t from, IsRemoved isRemoved)
        : text_(text),
          begin_(begin),
          from_(from),
          before_(begin > 0 ? text[begin - 1] : '\0'),
          item_(text, isRemoved) {}

    Walked run() {
        for (std::size_t at = from_; at < text_.size() && stop_ == kNone;) at += step(at);
        stop_ = std::min(stop_, text_.size());
        const std::size_t limit = closers_.empty() ? std::min(stop_, foreign_) : beforeBrackets_;
        const std::size_t end = std::max(trimmedEnd(text_, begin_, limit), from_);
        return {.end = end, .readEnd = stop_, .isWhole = end <= escaped_ && !goesOn(text_, begin_, end)};
    }

private:
    enum class Part : std::uint8_t { path, query, fragment };

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

    /// An opening bracket that is never closed does not belong to the link, nor does what follows it.
    std::size_t opener(std::size_t at, char closer) {
        if (text_[at] == '[' && peek(text_, at + 1) == '/') return end(at);  // "[/url]"
        if (closers_.empty()) {
            outermost_ = at;
            beforeBrackets_ = std::min(at, foreign_);
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

    /// Ends a table cell, a field of a wiki template, or the target of a link that has a text.
    std::size_t bar(std::size_t at) { return isOneOf(before_, "|=<[") ? end(at) : separator(at); }

    /// A character that encloses the link on both sides, as in lists of values, or joins another one to it.
    std::size_t separator(std::size_t at) {
        if (!isInRemovedItem(at)) return 1;
        if (startsURLWithoutScheme(text_, at + 1)) return end(at);
        if (text_[at] == before_) markForeign(at);
        return 1;
    }

    std::size_t question(std::size_t at) noexcept {
        if (part_ == Part::path) startItem(at + 1);
        return 1;
    }

    std::size_t equals(std::size_t at) noexcept {
        item_.equals(at);
        return 1;
    }

    /// A character reference ends a link as the character itself would, except that "&amp;" is a part of it.
    std::size_t ampersand(std::size_t at) noexcept {
        const CharacterReference reference = referenceAt(text_, at);
        if (reference.size > 0 && !reference.isAmpersand) return end(at);
        if (reference.isAmpersand) escaped_ = std::min(escaped_, at);
        const std::size_t size = std::max<std::size_t>(reference.size, 1);
        if (part_ == Part::query) startItem(at + size);
        return size;
    }

    std::size_t hash() noexcept {
        part_ = Part::fragment;
        foreign_ = kNone;
        return 1;
    }

    std::size_t beyondASCII(std::size_t at) {
        const Unicode::Scalar scalar = Unicode::decode(text_, at);
        if (isBoundary(scalar.value)) return isJoinedAt(text_, from_, at) ? scalar.byteSize : end(at);
        if (foreign_ != kNone || isForeignValue_ || !mayFollowWithoutSpace(scalar.value)) return scalar.byteSize;
        if (!isInRemovedItem(at)) return scalar.byteSize;
        isForeignValue_ = item_.isValueBegin(at) && Unicode::isWordCharacter(scalar.value);
        if (!isForeignValue_) markForeign(at);
        return scalar.byteSize;
    }

    void startItem(std::size_t at) noexcept {
        part_ = Part::query;
        item_.start(at);
        isForeignValue_ = false;
        foreign_ = kNone;
    }

    /// From here on the item is foreign text, if it is the last one. Brackets are kept together.
    void markForeign(std::size_t at) noexcept {
        if (!closers_.empty()) at = outermost_;
        if (at >= item_.begin()) foreign_ = std::min(foreign_, at);
    }

    bool isInRemovedItem(std::size_t at) { return part_ == Part::query && item_.isRemoved(at); }

    std::string_view text_;
    std::size_t begin_;
    std::size_t from_;
    char before_;                  // the byte before the link
    std::size_t stop_ = kNone;     // where the walk ends
    std::size_t escaped_ = kNone;  // the first "&amp;"

    Part part_ = Part::path;
    Item item_;
    bool isForeignValue_ = false;  // the item is removed, and its value begins with letters of a script without spaces
    std::size_t foreign_ = kNone;  // where foreign text begins, should the item be the last one

    std::string closers_;             // of the brackets that are open
    std::size_t outermost_ = 0;       // of these brackets
    std::size_t beforeBrackets_ = 0;  // where the link ends should they stay open
};

}  // namespace

Walked walkOverLink(std::string_view text, std::size_t begin, std::size_t from, IsRemoved isRemoved) {
    return Walk(text, begin, from, isRemoved).run();
}

}  // namespace ravlin::Links
