#pragma once

#include <QFont>

#include <cstdint>

namespace ravlin {

/// The panel's text styles, as steps from the font that the user chose for the desktop.
enum class TextStyle : std::uint8_t { headline, callout, calloutMedium, caption, caption2, caption2Semibold };

/// `base` stepped to `style`. A text style is never smaller than 8 points (or the user's font, where that is smaller
/// still), so that a small desktop font stays legible.
QFont fontFor(TextStyle style, const QFont& base);

}  // namespace ravlin
