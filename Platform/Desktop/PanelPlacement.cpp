#include "Platform/Desktop/PanelPlacement.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <optional>

namespace ravlin::PanelPlacement {
namespace {

/// An anchor that close to an edge of its screen sits in a bar that has not reserved the edge, for example one that
/// hides itself.
constexpr int kBarThickness = 64;  // device-independent pixels

enum class Side { below, above, right, left };

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

/// The side on which a bar that has reserved its edge leaves room, or nothing where the anchor lies in no such bar.
std::optional<Side> sideOfReservedBar(QPoint center, const QRect& available) {
    if (center.y() < available.top()) return Side::below;
    if (center.y() > available.bottom()) return Side::above;
    if (center.x() < available.left()) return Side::right;
    if (center.x() > available.right()) return Side::left;
    return std::nullopt;
}

Side sideFor(const QRect& anchor, const Screen& screen, int height) {
    const QPoint center = anchor.center();
    if (const auto side = sideOfReservedBar(center, screen.available)) return *side;
    if (center.y() - screen.geometry.top() < kBarThickness) return Side::below;
    if (screen.geometry.bottom() - center.y() < kBarThickness) return Side::above;
    if (center.x() - screen.geometry.left() < kBarThickness) return Side::right;
    if (screen.geometry.right() - center.x() < kBarThickness) return Side::left;
    return anchor.bottom() + height <= screen.available.bottom() ? Side::below : Side::above;
}

QPoint besideAnchor(QSize size, const QRect& anchor, Side side) {
    const QPoint centered = anchor.center() - QPoint(size.width() / 2, size.height() / 2);
    switch (side) {
        case Side::below: return {centered.x(), anchor.bottom() + 1};
        case Side::above: return {centered.x(), anchor.top() - size.height()};
        case Side::right: return {anchor.right() + 1, centered.y()};
        case Side::left: return {anchor.left() - size.width(), centered.y()};
    }
    return centered;
}

/// Where a stretch of the given length that should start at `wanted` starts, to lie between `first` and `last`.
int clampStretch(int wanted, int length, int first, int last) {
    return std::max(first, std::min(wanted, last - length + 1));
}

}  // namespace

QPoint position(QSize size, const QRect& anchor, std::span<const Screen> screens) {
    const Screen* screen = nearestScreen(anchor.center(), screens);
    if (screen == nullptr) return besideAnchor(size, anchor, Side::below);
    const QPoint wanted = besideAnchor(size, anchor, sideFor(anchor, *screen, size.height()));
    const QRect& area = screen->available;
    return {clampStretch(wanted.x(), size.width(), area.left(), area.right()),
            clampStretch(wanted.y(), size.height(), area.top(), area.bottom())};
}

QPoint fromDevicePixels(QPoint point, std::span<const Screen> screens) {
    for (const Screen& screen : screens) {
        const QPoint origin = screen.geometry.topLeft();
        const QRect onDevice(origin, screen.geometry.size() * screen.devicePixelRatio);
        if (onDevice.contains(point)) return origin + (QPointF(point - origin) / screen.devicePixelRatio).toPoint();
    }
    return point;
}

std::vector<Screen> currentScreens() {
    std::vector<Screen> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back({screen->geometry(), screen->availableGeometry(), screen->devicePixelRatio()});
    return screens;
}

}  // namespace ravlin::PanelPlacement
