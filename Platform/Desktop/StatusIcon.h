#pragma once

#include <QColor>
#include <QImage>
#include <QString>

#include <array>

/// The picture in the tray: one drawing in one colour, which belongs to the tray rather than to the program.
namespace ravlin::StatusIcon {

/// The sizes that tray hosts ask for, in pixels.
inline constexpr std::array kSizes = {16, 22, 24, 32, 48, 64};

/// The name under which hosts find the drawing, to be coloured as they like; "" where none could find it.
QString themeName();

/// The folder of icon themes in which hosts find it; "" where that is the system's.
QString themePath();

/// Told by no tray, this colour can be seen on black and on white: the contrast is more than 3:1 on both.
inline constexpr QRgb kColorForAnyTray = 0xff9485f6;

/// The drawing as a square of `size` pixels, transparent but for `color`.
QImage image(int size, const QColor& color);

}  // namespace ravlin::StatusIcon
