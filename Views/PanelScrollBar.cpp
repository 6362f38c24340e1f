#include "Views/PanelScrollBar.h"

#include "Views/Metrics.h"
#include "Views/PanelColors.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace ravlin {

PanelScrollBar::PanelScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QSize PanelScrollBar::sizeHint() const {
    return {Metrics::kScrollBarWidth, QScrollBar::sizeHint().height()};
}

void PanelScrollBar::paintEvent(QPaintEvent* /*event*/) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const bool isActive = isSliderDown() || underMouse();
    constexpr qreal kWidth = Metrics::kScrollHandleWidth;
    const QRectF shape((width() - kWidth) / 2, handle.top(), kWidth, handle.height());

    const PanelColors colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isActive ? colors.secondary : colors.tertiary);
    painter.drawRoundedRect(shape, kWidth / 2, kWidth / 2);
}

}  // namespace ravlin
