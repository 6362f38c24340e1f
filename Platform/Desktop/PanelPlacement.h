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

/// Where an open panel stays: neither its side nor its top edge changes while it is shown, whatever its height does.
struct Place {
    QPoint topLeft;
    int room = 0;  // how high the panel may become, from its top edge down to the anchor or to the screen's end
};

/// The place of a panel that is at most `full` large next to `anchor`, the tray icon or the pointer: under it, above it
/// where it sits at the bottom of its screen, beside it where its bar stands at a side or there is room neither above
/// nor below. The place lies in the available part of the screen that holds the anchor and does not cover the anchor,
/// for which the panel may have to be lower than it would like. One that is too wide keeps its left edge on the screen.
///     full 340x500, anchor (1200,2 22x22), screen 1280x800 with a bar of 24 at the top  ->  (940,24), room 776
Place place(QSize full, const QRect& anchor, std::span<const Screen> screens);

/// The point that tray hosts give in pixels of the device, in device-independent pixels. Points outside every screen
/// stay as they are, but for those farther away than any screen can be, which are brought nearer.
///     (1200,10) on a screen at (0,0) with ratio 2  ->  (600,5)
QPoint fromDevicePixels(QPoint point, std::span<const Screen> screens);

/// The screens of this desktop as they are now.
std::vector<Screen> currentScreens();

}  // namespace ravlin::PanelPlacement
