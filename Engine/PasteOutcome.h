#pragma once

#include <cstdint>
#include <variant>

namespace ravlin {

/// The transform ran and its result is on the clipboard. Both counts are in user-perceived characters (extended
/// grapheme clusters, UAX #29).
struct Success {
    std::int64_t inputCount = 0;
    std::int64_t outputCount = 0;
    friend bool operator==(const Success&, const Success&) = default;
};

/// The clipboard holds nothing at all, or an empty text. Nothing was written.
struct ClipboardEmpty {
    friend bool operator==(const ClipboardEmpty&, const ClipboardEmpty&) = default;
};

/// The clipboard holds something, but no text could be read from it. Nothing was written.
struct NoText {
    friend bool operator==(const NoText&, const NoText&) = default;
};

/// Another application changed the clipboard while the transform ran. The result was discarded.
struct ClipboardChanged {
    friend bool operator==(const ClipboardChanged&, const ClipboardChanged&) = default;
};

/// The outcome of one click on a transform.
using PasteOutcome = std::variant<Success, ClipboardEmpty, NoText, ClipboardChanged>;

}  // namespace ravlin
