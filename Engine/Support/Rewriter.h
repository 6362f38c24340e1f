#pragma once

#include "Engine/Support/NonCopyable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ravlin {

/// Bytes [`from`, `to`) of a text, at least one, and the pieces that replace them, in order.
struct Replacement {
    std::size_t from = 0;
    std::size_t to = 0;
    std::array<std::string_view, 5> pieces = {};
};

/// A text that one rule after another rewrites. Only rules that find something copy it, between two buffers.
class Rewriter : NonCopyable {
public:
    /// The rewriter reads `text` in place until a rule changes something.
    explicit Rewriter(std::string_view text) noexcept : text_(text) {}

    /// The text as the rules so far have left it. Valid until the next rule.
    std::string_view text() const noexcept { return text_; }

    /// Starts over with another text, keeping the buffers.
    void restart(std::string_view text) noexcept { text_ = text; }

    /// Moves out the text as the rules have left it.
    std::string take() && { return text_.data() == current_.data() ? std::move(current_) : std::string(text_); }

    /// Replaces everything that `findNext` finds in `text()`, from left to right. It gets the end of the previous
    /// range, and returns the first range that starts at or after that byte.
    template <typename FindNext>
    void replaceAll(FindNext findNext) {
        std::size_t copied = 0;
        while (const std::optional<Replacement> found = findNext(copied)) {
            if (copied == 0) startNext();
            next_ += text_.substr(copied, found->from - copied);
            for (const std::string_view piece : found->pieces)
                if (!piece.empty()) next_ += piece;
            copied = found->to;
        }
        if (copied == 0) return;
        next_ += text_.substr(copied);
        current_.swap(next_);
        text_ = current_;
    }

    /// The same for replacements that are all shorter than what they replace: no second buffer is needed. `findNext`
    /// may look back at the last byte of the previous range, and no further.
    template <typename FindNext>
    void shrinkAll(FindNext findNext) {
        if (text_.data() != current_.data()) return replaceAll(findNext);
        std::size_t copied = 0;
        std::size_t written = 0;
        const auto keep = [&](std::size_t from, std::size_t to) {
            std::copy(text_.begin() + from, text_.begin() + to,
                      current_.begin() + static_cast<std::ptrdiff_t>(written));
            written += to - from;
        };
        while (const std::optional<Replacement> found = findNext(copied)) {
            keep(copied, found->from);
            for (const std::string_view piece : found->pieces) {
                std::copy(piece.begin(), piece.end(), current_.begin() + static_cast<std::ptrdiff_t>(written));
                written += piece.size();
            }
            copied = found->to;
        }
        if (copied == 0) return;
        keep(copied, text_.size());
        current_.resize(written);
        text_ = current_;
    }

private:
    void startNext() {
        next_.clear();
        next_.reserve(text_.size());
    }

    std::string_view text_;
    std::string current_;
    std::string next_;
};

}  // namespace ravlin
