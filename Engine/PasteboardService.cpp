#include "Engine/PasteboardService.h"

#include "Engine/Pasteboard.h"
#include "Engine/Support/Unicode.h"

namespace ravlin::PasteboardService {

std::optional<std::string> plainText() {
    return Pasteboard::general().string();
}

void setText(std::string_view text) {
    Pasteboard& pasteboard = Pasteboard::general();
    pasteboard.clearContents();
    pasteboard.setString(text);
}

PasteOutcome transformClipboard(TextTransform transform) {
    Pasteboard& pasteboard = Pasteboard::general();
    const std::int64_t changeCount = pasteboard.changeCount();

    const std::optional<std::string> text = plainText();
    if (!text) return pasteboard.itemCount().value_or(0) > 0 ? PasteOutcome(NoText{}) : PasteOutcome(ClipboardEmpty{});
    if (text->empty()) return ClipboardEmpty{};

    const std::string result = transform.apply(*text);
    const Success success{.inputCount = Unicode::characterCount(*text), .outputCount = Unicode::characterCount(result)};

    // Nothing but the write itself stands between this look at the counter and the write.
    if (pasteboard.changeCount() != changeCount) return ClipboardChanged{};
    setText(result);
    return success;
}

}  // namespace ravlin::PasteboardService
