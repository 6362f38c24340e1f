#include "Engine/PasteboardService.h"

#include "Engine/HTMLTransforms.h"
#include "Engine/Pasteboard.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/RichText/RichText.h"

#include <new>

namespace ravlin::PasteboardService {

namespace {

/// The text of an HTML document, if its bytes are UTF-8. A byte order mark is not part of the text.
std::optional<std::string> textOfHTML(std::string_view bytes) {
    constexpr std::string_view kByteOrderMark = "\uFEFF";
    if (!Unicode::isValidUTF8(bytes)) return std::nullopt;
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    return TextTransforms::stripHTML(bytes);
}

PasteOutcome transformed(TextTransform transform) {
    Pasteboard& pasteboard = Pasteboard::general();
    const std::int64_t changeCount = pasteboard.changeCount();

    const std::optional<std::string> text = plainText();
    if (!text) return pasteboard.itemCount().value_or(0) > 0 ? PasteOutcome(NoText{}) : PasteOutcome(ClipboardEmpty{});
    if (text->empty()) return ClipboardEmpty{};

    const std::string result = transform.apply(*text);
    const Success success{.inputCount = Unicode::characterCount(*text), .outputCount = Unicode::characterCount(result)};

    // A copy made between this look at the counter and the write is kept, as if it had been made afterwards.
    if (pasteboard.changeCount() != changeCount) return ClipboardChanged{};
    pasteboard.replaceIfUnchanged(changeCount, result);
    return success;
}

}  // namespace

std::optional<std::string> plainText() {
    Pasteboard& pasteboard = Pasteboard::general();
    if (std::optional<std::string> text = pasteboard.string()) return text;
    if (const std::optional<std::string> rtf = pasteboard.data(Pasteboard::Type::rtf))
        if (std::optional<std::string> text = RichText::plainText(*rtf)) return text;
    if (const std::optional<std::string> html = pasteboard.data(Pasteboard::Type::html)) return textOfHTML(*html);
    return std::nullopt;
}

void setText(std::string_view text) {
    Pasteboard& pasteboard = Pasteboard::general();
    pasteboard.clearContents();
    pasteboard.setString(text);
}

PasteOutcome transformClipboard(TextTransform transform) {
    try {
        return transformed(transform);
    } catch (const std::bad_alloc&) {
        return NoText{};
    }
}

}  // namespace ravlin::PasteboardService
