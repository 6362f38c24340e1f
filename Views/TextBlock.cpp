#include "Views/TextBlock.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLine>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace ravlin {
namespace {

int roundedUp(qreal length) {
    return static_cast<int>(std::ceil(length));
}

}  // namespace

TextBlock::TextBlock(const QString& text, const QFont& font, int width, int maxLines) : layout_(text, font) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout_.setTextOption(option);
    layout_.setCacheEnabled(true);

    const int textEnd = layOut(width, maxLines);
    if (textEnd == text.size()) return;
    const int lastLineStart = layout_.lineAt(lineCount_ - 1).textStart();
    elidedLine_ = QFontMetricsF(font).elidedText(text.mid(lastLineStart), Qt::ElideRight, width);
}

// Returns how much of the text fitted.
int TextBlock::layOut(int width, int maxLines) {
    int textEnd = 0;
    layout_.beginLayout();
    while (maxLines == kUnlimited || lineCount_ < maxLines) {
        QTextLine line = layout_.createLine();
        if (!line.isValid()) break;
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height_));
        height_ += roundedUp(line.height());
        textEnd = line.textStart() + line.textLength();
        ++lineCount_;
    }
    layout_.endLayout();
    return textEnd;
}

int TextBlock::firstLineHeight() const {
    return lineCount_ > 0 ? roundedUp(layout_.lineAt(0).height()) : 0;
}

int TextBlock::naturalWidth() const {
    qreal width = 0;
    for (int i = 0; i < lineCount_; ++i) width = std::max(width, layout_.lineAt(i).naturalTextWidth());
    return roundedUp(width);
}

QString TextBlock::shownText() const {
    if (!isElided()) return layout_.text();
    return layout_.text().left(layout_.lineAt(lineCount_ - 1).textStart()) + elidedLine_;
}

void TextBlock::paint(QPainter& painter, const QPoint& topLeft, const QColor& color) const {
    painter.setPen(color);
    for (int i = 0; i < lineCount_; ++i) {
        const QTextLine line = layout_.lineAt(i);
        if (isElided() && i == lineCount_ - 1) {
            painter.setFont(layout_.font());
            painter.drawText(topLeft + line.position() + QPointF(0, line.ascent()), elidedLine_);
        } else {
            line.draw(&painter, topLeft);
        }
    }
}

}  // namespace ravlin
