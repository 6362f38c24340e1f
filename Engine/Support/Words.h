#pragma once

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/CharacterKind.h"
#include "Engine/Support/Characters/Unicode.h"

#include <cstddef>
#include <string_view>

/// The words of a text: split at anything but letters and numbers, between lower case or a digit and upper case, and
/// before the last of several capitals that lower case follows. Every word is a stretch of the text.
///     "getJSONResponse2Go don't"  ->  "get", "JSON", "Response2", "Go", "don", "t"
namespace ravlin::Words {

namespace detail {

using CharacterKind::Kind;
using CharacterKind::kLower;
using CharacterKind::kNumber;
using CharacterKind::kUpper;

/// Finds the words of a text, given its characters in order.
template <typename Visit>
class Splitter {
public:
    Splitter(std::string_view text, Visit visit) : text_(text), visit_(visit) {}

    /// Takes the character that starts at byte `at`.
    void take(std::size_t at, Kind kind) {
        const bool endsAcronym = (kind & kLower) != 0 && (last_ & kUpper) != 0 && (beforeLast_ & kUpper) != 0;
        if (endsAcronym) endWord(lastStart_);  // whose last capital begins the next word
        if (CharacterKind::isSeparator(kind)) {
            endWord(at);
            last_ = kNone;
            return;
        }
        const bool isAfterLowerOrNumber = (last_ & (kLower | kNumber)) != 0;
        if (last_ == kNone) wordStart_ = at;
        beforeLast_ = last_;
        if ((kind & kUpper) != 0 && isAfterLowerOrNumber) endWord(at);
        last_ = kind;
        lastStart_ = at;
    }

    /// Takes the ASCII characters that start at byte `offset`. Most bypass the rules: words of small letters, and
    /// everything between the first and the last of several small letters.
    void takeASCII(std::string_view text, std::size_t offset) {
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = ASCII::smallLettersEnd(text, at);
            const bool isWord =
                end > at && end < text.size() && CharacterKind::isSeparator(CharacterKind::of(text[end]));
            if (isWord && last_ == kNone) {
                visit_(text.substr(at, end - at));
                at = end + 1;
            } else {
                take(offset + at, CharacterKind::of(text[at]));
                at = end > at + 1 ? end - 1 : at + 1;
            }
        }
    }

    void finish() { endWord(text_.size()); }

private:
    static constexpr Kind kNone = 0;

    void endWord(std::size_t end) {
        if (last_ != kNone) visit_(text_.substr(wordStart_, end - wordStart_));
        wordStart_ = end;
        beforeLast_ = kNone;
    }

    std::string_view text_;
    Visit visit_;
    std::size_t wordStart_ = 0;
    std::size_t lastStart_ = 0;
    Kind last_ = kNone;        // the last character of the current word; none if there is no word
    Kind beforeLast_ = kNone;  // the one before it in the same word
};

}  // namespace detail

/// Calls `visit` with every word of `text` in order.
template <typename Visit>
void forEach(std::string_view text, Visit visit) {
    detail::Splitter<Visit> splitter(text, visit);
    std::size_t at = 0;
    for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
        const auto [piece, isPlain] = pieces.next();
        if (isPlain)
            splitter.takeASCII(piece, at);
        else
            splitter.take(at, CharacterKind::of(piece));
        at += piece.size();
    }
    splitter.finish();
}

}  // namespace ravlin::Words
