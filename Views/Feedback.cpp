#include "Views/Feedback.h"

namespace ravlin {
namespace {

struct Describe {
    TextTransform transform;

    // Two spaces before the parenthesis and none around the arrow: the counts read as one unit set apart.
    Feedback operator()(const Success& success) const {
        return {std::string(transform.title()) + " — ready, paste with ⌘V  (" + std::to_string(success.inputCount) +
                    "→" + std::to_string(success.outputCount) + " chars)",
                true};
    }
    Feedback operator()(const ClipboardEmpty& /*unused*/) const {
        return {"Clipboard is empty — copy some text first", false};
    }
    Feedback operator()(const NoText& /*unused*/) const {
        return {"No text in the clipboard — copy some text first", false};
    }
    Feedback operator()(const ClipboardChanged& /*unused*/) const {
        return {"Clipboard changed mid-transform — copy again and retry", false};
    }
};

}  // namespace

Feedback feedbackFor(TextTransform transform, const PasteOutcome& outcome) {
    return std::visit(Describe{transform}, outcome);
}

}  // namespace ravlin
