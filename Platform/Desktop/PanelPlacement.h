#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <span>
#include <vector>

/// Where the panel appears: functions of the screens alone, so that every arrangement of panel bars can be tested. They
/// matter on X11 only, because Wayland lets no application place its windows.
namespace ravlin::PanelPlacement {

/// One screen. The rectangles are in device-independent pixels, as Qt gives them: the origin of a screen is that of the
/// device, its size is divided by `devicePixelRatio`.
struct Screen {
    QRect geometry;
    QRect available;  // without the bars that have reserved their edge
    qreal devicePixelRatio = 1;
};

/// The top left corner of a panel of the given size next to `anchor`, the tray icon or the pointer: under it, above it
/// where it sits at the bottom of its screen, beside it where its bar stands at a side. The panel lies wholly in the
/// available part of the screen that holds the anchor; one that is too large keeps its top left corner there.
///     size 340x500, anchor (1200,2 22x22), screen 1280x800 with a bar of 24 at the top  ->  (940,24)
QPoint position(QSize size, const QRect& anchor, std::span<const Screen> screens);

/// The point that tray hosts give in pixels of the device, in device-independent pixels. Points outside every screen
/// stay as they are.
///     (1200,10) on a screen at (0,0) with ratio 2  ->  (600,5)
QPoint fromDevicePixels(QPoint point, std::span<const Screen> screens);

/// The screens of this desktop as they are now.
std::vector<Screen> currentScreens();

}  // namespace ravlin::PanelPlacement
