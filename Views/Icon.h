#pragma once

#include "Views/TextStyle.h"

#include <QColor>
#include <QIcon>
#include <QRectF>

#include <cstdint>

class QPainter;

namespace ravlin {

/// The panel's own pictograms.
enum class Symbol : std::uint8_t {
    wandAndStars,
    magnifyingGlass,
    clearCircle,
    arrowRightCircle,
    checkCircle,
    infoCircle,
};

/// The program's own icon, for windows that have a frame.
QIcon applicationIcon();

/// The side of the square in which a pictogram looks as large as text in `style`.
int symbolSize(TextStyle style, const QFont& base);

/// Draws `symbol` in `color` into the square `place`, moved to whole device pixels to be crisp at every screen scale.
void paintSymbol(QPainter& painter, Symbol symbol, const QRectF& place, const QColor& color);

}  // namespace ravlin
