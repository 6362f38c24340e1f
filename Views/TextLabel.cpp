#include "Views/TextLabel.h"

#include <QEvent>
#include <QPainter>

namespace ravlin {
namespace {

constexpr int kOneLineOfAnyWidth = QWIDGETSIZE_MAX;

}  // namespace

TextLabel::TextLabel(const QString& text, const Look& look, QWidget* parent) : QLabel(parent), look_(look) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setText(text);
}

void TextLabel::setColor(QColor PanelColors::*color) {
    look_.color = color;
    update();
}

void TextLabel::setTextWidth(int width) {
    look_.width = width;
    updateGeometry();
    update();
}

TextBlock TextLabel::block() const {
    const int width = look_.width == kNaturalWidth ? kOneLineOfAnyWidth : look_.width;
    return {text(), fontFor(look_.style, font()), width, look_.maxLines};
}

QSize TextLabel::sizeHint() const {
    const TextBlock lines = block();
    return {look_.width == kNaturalWidth ? lines.naturalWidth() : look_.width, lines.height()};
}

void TextLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    block().paint(painter, {}, PanelColors(palette()).*look_.color);
}

void TextLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) updateGeometry();
}

}  // namespace ravlin
