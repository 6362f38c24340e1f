#include "Engine/Support/Sentences.h"

#include "Engine/Support/Characters/CharacterKind.h"
#include "Engine/Support/Characters/Unicode.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace ravlin::Sentences {
namespace {

/// A text that gets upper-case letters from start to end. They mostly take as many bytes as the lower-case ones, so the
/// text is changed in place, and only rewritten from the first place where they do not.
class Capitaliser {
public:
    explicit Capitaliser(std::string text) : text_(std::move(text)) {}

    std::string_view text() const noexcept { return text_; }

    /// Upper-cases the bytes [`from`, `to`), which lie after those of the last call.
    void capitalise(std::size_t from, std::size_t to) {
        const std::string upper = Unicode::upperCased(text().substr(from, to - from));
        if (upper.size() == to - from) {
            std::copy(upper.begin(), upper.end(), text_.begin() + static_cast<std::ptrdiff_t>(from));
            return;
        }
        rewritten_.reserve(Unicode::roomForMapped(text_.size()));
        rewritten_ += text().substr(copied_, from - copied_);
        rewritten_ += upper;
        copied_ = to;
    }

    std::string take() && {
        if (copied_ == 0) return std::move(text_);
        rewritten_ += text().substr(copied_);
        return std::move(rewritten_);
    }

private:
    std::string text_;
    std::string rewritten_;  // the text up to `copied_`, unless that is 0
    std::size_t copied_ = 0;
};

constexpr bool isTerminator(char byte) noexcept {
    return byte == '.' || byte == '!' || byte == '?';
}

/// Whether the character at byte `at` is a single ASCII byte.
bool isSingle(std::string_view text, std::size_t at) noexcept {
    return Unicode::isCharacterBoundary(text, at) && Unicode::characterEnd(text, at) == at + 1;
}

/// Whether a sentence ends before byte `at`, which follows a terminator.
bool isSentenceEnd(std::string_view text, std::size_t at) noexcept {
    if (at == text.size()) return true;
    const char next = text[at];
    return (next == ' ' || next == '\n' || next == '\t') && isSingle(text, at);
}

/// The place after the next sentence, or the end of the text.
std::size_t nextSentence(std::string_view text, std::size_t at) noexcept {
    for (; at < text.size(); ++at)
        if (isTerminator(text[at]) && isSingle(text, at) && isSentenceEnd(text, at + 1)) return at + 1;
    return at;
}

/// The next letter at or after the character that starts at byte `at`, or the end of the text.
std::size_t nextLetter(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && (CharacterKind::of(Unicode::decode(text, at).value) & CharacterKind::kLetter) == 0)
        at = Unicode::characterEnd(text, at);
    return at;
}

}  // namespace

std::string capitalised(std::string text) {
    Capitaliser sentences(std::move(text));
    for (std::size_t at = 0; at < sentences.text().size();) {
        const std::size_t letter = nextLetter(sentences.text(), at);
        if (letter == sentences.text().size()) break;
        at = Unicode::characterEnd(sentences.text(), letter);
        sentences.capitalise(letter, at);
        at = nextSentence(sentences.text(), at);
    }
    return std::move(sentences).take();
}

}  // namespace ravlin::Sentences
