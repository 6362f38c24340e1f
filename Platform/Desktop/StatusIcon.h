#pragma once

#include <QColor>
#include <QImage>
#include <QString>

#include <array>

/// The picture in the tray: one monochrome drawing in the colour of the panel's text.
namespace ravlin::StatusIcon {

/// The sizes that tray hosts ask for, in pixels.
inline constexpr std::array kSizes = {16, 22, 24, 32, 48, 64};

/// The drawing's name for hosts that colour it themselves, or "" where the user's icon theme does not have it.
QString themeName();

/// The drawing as a square of `size` pixels, transparent but for `color`.
QImage image(int size, const QColor& color);

}  // namespace ravlin::StatusIcon
