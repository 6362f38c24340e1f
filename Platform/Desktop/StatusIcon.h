#pragma once

#include <QColor>
#include <QImage>
#include <QString>

#include <array>

/// The picture in the tray: one drawing in one colour, which is the tray's choice rather than the program's.
namespace ravlin::StatusIcon {

/// The sizes that tray hosts ask for, in pixels.
inline constexpr std::array kSizes = {16, 22, 24, 32, 48, 64};

/// The name under which hosts find the drawing, to colour it as they like; "" if none could find it.
QString themeName();

/// The folder of icon themes in which hosts find it; "" if that is the system's.
QString themePath();

/// The colour to use if no tray states one. It can be seen on black and on white: the contrast is more than 3:1 on
/// both.
inline constexpr QRgb kColorForAnyTray = 0xff9485f6;

/// The drawing as a square of `size` pixels, transparent except for `color`.
QImage image(int size, const QColor& color);

}  // namespace ravlin::StatusIcon
