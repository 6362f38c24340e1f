#include "Views/SymbolView.h"

#include <QEvent>
#include <QPainter>

namespace ravlin {

SymbolView::SymbolView(const Look& look, QWidget* parent) : QWidget(parent), look_(look) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setLook(const Look& look) {
    look_ = look;
    updateGeometry();
    update();
}

QSize SymbolView::sizeHint() const {
    const int size = symbolSize(look_.style, font());
    return {size, size};
}

void SymbolView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintSymbol(painter, look_.symbol, rect(), PanelColors(palette()).*look_.color);
}

void SymbolView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) updateGeometry();
}

}  // namespace ravlin
