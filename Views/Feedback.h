#pragma once

#include "Engine/PasteOutcome.h"
#include "Engine/TextTransform.h"

#include <string>

namespace ravlin {

/// What the status line says about the last run.
struct Feedback {
    std::string text;  // UTF-8
    bool ok = true;
    friend bool operator==(const Feedback&, const Feedback&) = default;
};

/// The status for `outcome` of a run of `transform`.
///     feedbackFor(TextTransform::upperCase, Success{5, 5})
///         ->  {"UPPERCASE — ready, paste with ⌘V  (5→5 chars)", true}
Feedback feedbackFor(TextTransform transform, const PasteOutcome& outcome);

}  // namespace ravlin
