#pragma once

#include "Engine/PasteOutcome.h"
#include "Engine/TextTransform.h"

#include <optional>
#include <string>
#include <string_view>

/// The only code that reads and writes the clipboard's text. It keeps nothing between calls.
namespace ravlin::PasteboardService {

/// The clipboard's content as plain text: its plain-text representation, or else the text of its rich text, or else
/// that of its HTML, or nothing if none yields text. An empty text counts: later representations are then not looked
/// at.
std::optional<std::string> plainText();

/// Replaces the whole clipboard with one plain-text item holding `text`.
void setText(std::string_view text);

/// Reads the clipboard's text, runs `transform` on it and writes the result back as one plain-text item, whether or not
/// it differs from what was read. Writes nothing if there is no text, or if another application changed the clipboard
/// in the meantime. A text that memory has no room for counts as none.
PasteOutcome transformClipboard(TextTransform transform);

}  // namespace ravlin::PasteboardService
