#include "Platform/Desktop/PanelPlacement.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <optional>

namespace ravlin::PanelPlacement {
namespace {

/// An anchor this close to an edge of its screen is taken to be in a bar that has not reserved the edge, for example
/// one that hides itself.
constexpr int kBarThickness = 64;  // device-independent pixels

/// No screen reaches farther than X11's coordinates do. Anything beyond that is not a place, and not worth an overflow.
constexpr int kFarthest = 1 << 15;  // pixels, device-independent or not

enum class Side { below, above, right, left, over };

QPoint bounded(QPoint point) {
    return {std::clamp(point.x(), -kFarthest, kFarthest), std::clamp(point.y(), -kFarthest, kFarthest)};
}

QRect bounded(const QRect& rectangle) {
    return {bounded(rectangle.topLeft()), bounded(rectangle.bottomRight())};
}

int distance(const QRect& area, QPoint point) {
    const int x = std::max({area.left() - point.x(), 0, point.x() - area.right()});
    const int y = std::max({area.top() - point.y(), 0, point.y() - area.bottom()});
    return x + y;
}

const Screen* nearestScreen(QPoint point, std::span<const Screen> screens) {
    const auto nearest =
        std::ranges::min_element(screens, {}, [&](const Screen& screen) { return distance(screen.geometry, point); });
    return nearest == screens.end() ? nullptr : &*nearest;
}

/// The side on which a bar that has reserved its edge leaves room, or nothing if the anchor is in no such bar.
std::optional<Side> sideOfReservedBar(QPoint center, const QRect& available) {
    if (center.y() < available.top()) return Side::below;
    if (center.y() > available.bottom()) return Side::above;
    if (center.x() < available.left()) return Side::right;
    if (center.x() > available.right()) return Side::left;
    return std::nullopt;
}

/// The side for an anchor that is in no bar: where the whole panel has room.
Side sideOfPoint(const QRect& anchor, const QRect& available, QSize full) {
    if (anchor.bottom() + full.height() <= available.bottom()) return Side::below;
    if (anchor.top() - full.height() >= available.top()) return Side::above;
    if (anchor.right() + full.width() <= available.right()) return Side::right;
    if (anchor.left() - full.width() >= available.left()) return Side::left;
    return Side::over;
}

Side sideFor(const QRect& anchor, const Screen& screen, QSize full) {
    const QPoint center = anchor.center();
    if (const auto side = sideOfReservedBar(center, screen.available)) return *side;
    if (center.y() - screen.geometry.top() < kBarThickness) return Side::below;
    if (screen.geometry.bottom() - center.y() < kBarThickness) return Side::above;
    if (center.x() - screen.geometry.left() < kBarThickness) return Side::right;
    if (screen.geometry.right() - center.x() < kBarThickness) return Side::left;
    return sideOfPoint(anchor, screen.available, full);
}

QPoint besideAnchor(QSize size, const QRect& anchor, Side side) {
    const QPoint centered = anchor.center() - QPoint(size.width() / 2, size.height() / 2);
    switch (side) {
        case Side::below: return {centered.x(), anchor.bottom() + 1};
        case Side::above: return {centered.x(), anchor.top() - size.height()};
        case Side::right: return {anchor.right() + 1, centered.y()};
        case Side::left: return {anchor.left() - size.width(), centered.y()};
        case Side::over: return centered;
    }
    return centered;
}

/// Where a stretch of the given length has to start, near `wanted`, to lie between `first` and `last`.
int clampStretch(int wanted, int length, int first, int last) {
    return std::max(first, std::min(wanted, last - length + 1));
}

/// How much the edges of icons and screens may be off through rounding.
int rounding(const Screen& screen) {
    return screen.devicePixelRatio == std::floor(screen.devicePixelRatio) ? 0 : 1;
}

}  // namespace

Place place(QSize full, const QRect& anchor, std::span<const Screen> screens) {
    const QRect given = bounded(anchor);
    const Screen* screen = nearestScreen(given.center(), screens);
    if (screen == nullptr) return {besideAnchor(full, given, Side::below), full.height()};
    const int inexact = rounding(*screen);
    const QRect icon = given.adjusted(-inexact, -inexact, inexact, inexact);
    const Side side = sideFor(icon, *screen, full);
    QRect area = screen->available.adjusted(0, 0, -inexact, -inexact);
    if (side == Side::below) area.setTop(std::max(area.top(), icon.bottom() + 1));
    if (side == Side::above) area.setBottom(std::min(area.bottom(), icon.top() - 1));
    const QPoint wanted = besideAnchor(full, icon, side);
    const QPoint topLeft(clampStretch(wanted.x(), full.width(), area.left(), area.right()),
                         clampStretch(wanted.y(), full.height(), area.top(), area.bottom()));
    return {topLeft, area.bottom() + 1 - topLeft.y()};
}

QPoint fromDevicePixels(QPoint point, std::span<const Screen> screens) {
    for (const Screen& screen : screens) {
        const QPoint origin = screen.geometry.topLeft();
        const QRect onDevice(origin, screen.geometry.size() * screen.devicePixelRatio);
        if (onDevice.contains(point)) return origin + (QPointF(point - origin) / screen.devicePixelRatio).toPoint();
    }
    return bounded(point);
}

std::vector<Screen> currentScreens() {
    std::vector<Screen> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back({screen->geometry(), screen->availableGeometry(), screen->devicePixelRatio()});
    return screens;
}

}  // namespace ravlin::PanelPlacement
