#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <span>
#include <vector>

/// Where the panel appears: functions of the screens alone, so that every arrangement of panel bars can be tested. They
/// matter only on X11, because Wayland does not let applications place their windows.
namespace ravlin::PanelPlacement {

/// One screen. The rectangles are in device-independent pixels, as Qt gives them: the origin of a screen is that of the
/// device, its size is divided by `devicePixelRatio`.
struct Screen {
    QRect geometry;
    QRect available;  // without the bars that have reserved their edge
    qreal devicePixelRatio = 1;
};

/// Where an open panel stays: neither its side nor its top edge changes while it is shown, however its height changes.
struct Place {
    QPoint topLeft;
    int room = 0;  // how high the panel may become, from its top edge down to the anchor or the end of the screen
};

/// The place for a panel of at most the size `full` next to `anchor`, the tray icon or the pointer: under it, above it
/// if it is at the bottom of its screen, beside it if its bar is at a side or there is room neither above nor below.
/// The place lies in the available part of the anchor's screen and does not cover the anchor, for which the panel may
/// have to be less high than it would like. A panel that is too wide keeps its left edge on the screen.
///     full 340x500, anchor (1200,2 22x22), screen 1280x800 with a bar of 24 at the top  ->  (940,24), room 776
Place place(QSize full, const QRect& anchor, std::span<const Screen> screens);

/// A point that a tray host gave in device pixels, in device-independent pixels. Points outside every screen stay as
/// they are, except those farther away than any screen can be, which are brought nearer.
///     (1200,10) on a screen at (0,0) with ratio 2  ->  (600,5)
QPoint fromDevicePixels(QPoint point, std::span<const Screen> screens);

/// The screens of this desktop as they are now.
std::vector<Screen> currentScreens();

}  // namespace ravlin::PanelPlacement
