#include "Views/SymbolButton.h"

#include "Views/Metrics.h"

#include <QEvent>
#include <QPainter>

namespace ravlin {

SymbolButton::SymbolButton(const SymbolView::Look& look, QWidget* parent) : PanelButton(parent), look_(look) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
}

QSize SymbolButton::sizeHint() const {
    const int size = symbolSize(look_.style, font()) + 2 * Metrics::kSymbolButtonMargin;
    return {size, size};
}

void SymbolButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const PanelColors colors(palette());
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colors.focusRing, Metrics::kFocusRingWidth));
        constexpr qreal kInset = Metrics::kFocusRingWidth / 2;
        painter.drawEllipse(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset));
    }
    const QColor& color = isDown() ? colors.text : underMouse() ? colors.secondary : colors.*look_.color;
    constexpr int kMargin = Metrics::kSymbolButtonMargin;
    paintSymbol(painter, look_.symbol, QRectF(rect()).marginsRemoved({kMargin, kMargin, kMargin, kMargin}), color);
}

void SymbolButton::changeEvent(QEvent* event) {
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange) updateGeometry();
}

}  // namespace ravlin
