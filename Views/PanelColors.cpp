#include "Views/PanelColors.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <span>

namespace ravlin {
namespace {

constexpr qreal kTextContrast = 4.5;
constexpr qreal kSignContrast = 3;
constexpr int kSteps = 20;  // how finely a colour is moved towards the text colour

qreal linear(qreal channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mix(const QColor& start, const QColor& goal, qreal share) {
    const auto channel = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return {channel(start.red(), goal.red()), channel(start.green(), goal.green()), channel(start.blue(), goal.blue())};
}

/// `color`, moved towards `text` as little as it takes to stand out from all `grounds`.
QColor legible(const QColor& color, const QColor& text, qreal wanted, std::span<const QColor> grounds) {
    for (int step = 0; step < kSteps; ++step) {
        const QColor candidate = mix(color, text, static_cast<qreal>(step) / kSteps);
        const auto suffices = [&](const QColor& ground) { return contrast(candidate, ground) >= wanted; };
        if (std::ranges::all_of(grounds, suffices)) return candidate;
    }
    return text;
}

/// The selection colour, unless links stand out better: some themes have a pale selection.
QColor accentOf(const QPalette& palette, const QColor& ground) {
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    const QColor link = palette.color(QPalette::Active, QPalette::Link);
    if (contrast(highlight, ground) >= kSignContrast || contrast(highlight, ground) >= contrast(link, ground))
        return highlight;
    return link;
}

}  // namespace

qreal contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

PanelColors::PanelColors(const QPalette& palette)
    : window(palette.color(QPalette::Active, QPalette::Window)),
      text(palette.color(QPalette::Active, QPalette::WindowText)) {
    const QColor accentSource = accentOf(palette, window);
    bar = mix(window, text, 0.05);
    hover = mix(window, text, 0.07);
    pressed = mix(window, text, 0.14);
    highlight = mix(window, accentSource, 0.16);
    field = mix(window, mix(window, text, 0.65), 0.1);

    const QColor rowGrounds[] = {window, bar, field, hover, pressed, highlight};
    secondary = legible(mix(window, text, 0.65), text, kTextContrast, rowGrounds);
    tertiary = legible(mix(window, text, 0.4), text, kSignContrast, rowGrounds);

    const QColor plainGrounds[] = {window, bar};
    const bool isDark = luminance(window) < luminance(text);
    accent = legible(accentSource, text, kTextContrast, plainGrounds);
    success = legible(isDark ? QColor(0x4c, 0xc9, 0x6b) : QColor(0x1a, 0x84, 0x3a), text, kTextContrast, plainGrounds);

    divider = mix(window, text, 0.14);
    border = mix(window, text, 0.28);
    focusRing = legible(accentSource, text, kSignContrast, rowGrounds);
}

}  // namespace ravlin
