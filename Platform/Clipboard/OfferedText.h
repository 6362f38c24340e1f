#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/TextFormats.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ravlin {

/// A text of ours, as other programs are offered it. Whatever they request, and however often, it is examined once and
/// encoded once.
class OfferedText : NonCopyable {
public:
    using Bytes = std::shared_ptr<const std::string>;

    /// `text` must be valid UTF-8. `passwordHint` is null if the text was made from no secret.
    explicit OfferedText(std::string_view text, Bytes passwordHint = nullptr)
        : text_(std::make_shared<const std::string>(text)), passwordHint_(std::move(passwordHint)) {}

    const std::string& text() const { return *text_; }

    /// What is offered as `TextFormats::kPasswordHint`, or null.
    const Bytes& passwordHint() const { return passwordHint_; }

    /// Whether the text is offered in `format`, which it is if nothing would be lost. A program that got question marks
    /// for letters could not know that anything was missing, whereas one that finds no STRING takes another format.
    bool isOfferedIn(const TextFormat& format) const;

    /// The bytes of the text in a format that it is offered in.
    Bytes bytesIn(const TextFormat& format) const;

private:
    Bytes latin1() const;

    Bytes text_;
    Bytes passwordHint_;
    mutable std::optional<bool> fitsLatin1_;
    mutable Bytes latin1_;  // null until it is needed
};

}  // namespace ravlin
