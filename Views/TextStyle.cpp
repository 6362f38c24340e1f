#include "Views/TextStyle.h"

#include <algorithm>

namespace ravlin {
namespace {

constexpr qreal kSmallestPoints = 8;
constexpr int kSmallestPixels = 11;  // the same at the usual 96 dots per inch

struct Step {
    qreal scale;
    QFont::Weight weight;
};

Step stepFor(TextStyle style) {
    switch (style) {
        case TextStyle::headline: return {1.1, QFont::Bold};
        case TextStyle::callout: return {1.0, QFont::Normal};
        case TextStyle::calloutMedium: return {1.0, QFont::Medium};
        case TextStyle::caption: return {0.85, QFont::Normal};
        case TextStyle::caption2: return {0.8, QFont::Normal};
        case TextStyle::caption2Semibold: return {0.8, QFont::DemiBold};
    }
    return {1.0, QFont::Normal};
}

}  // namespace

QFont fontFor(TextStyle style, const QFont& base) {
    const Step step = stepFor(style);
    QFont font = base;
    font.setWeight(std::max(step.weight, base.weight()));
    if (const qreal points = base.pointSizeF(); points > 0) {
        font.setPointSizeF(std::max(points * step.scale, std::min(points, kSmallestPoints)));
    } else {
        const int pixels = base.pixelSize();
        font.setPixelSize(std::max(qRound(pixels * step.scale), std::min(pixels, kSmallestPixels)));
    }
    return font;
}

}  // namespace ravlin
