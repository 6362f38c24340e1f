#include "Views/StatusLine.h"

#include "Views/Announcer.h"
#include "Views/Divider.h"
#include "Views/Metrics.h"
#include "Views/QtText.h"
#include "Views/SymbolView.h"
#include "Views/TextLabel.h"

#include <QEvent>

#include <algorithm>

namespace ravlin {

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent),
      divider_(new Divider(this)),
      symbol_(new SymbolView({}, this)),
      label_(new TextLabel({}, {.style = TextStyle::caption, .maxLines = Metrics::kStatusMaxLines}, this)) {
    label_->setObjectName(QStringLiteral("statusLabel"));
    fit();
}

void StatusLine::setFeedback(const Feedback& feedback) {
    QColor PanelColors::*const color = feedback.ok ? &PanelColors::success : &PanelColors::secondary;
    symbol_->setLook({.symbol = feedback.ok ? Symbol::checkCircle : Symbol::infoCircle,
                      .style = TextStyle::caption,
                      .color = color});
    label_->setColor(color);
    label_->setText(toQString(feedback.text));
    label_->setAccessibleName(spoken(label_->text()));
    fit();
}

void StatusLine::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) fit();
}

// The pictogram is beside the first line, centred on it.
void StatusLine::fit() {
    const int symbolEdge = symbolSize(TextStyle::caption, font());
    const int labelLeft = symbolEdge + Metrics::kStatusSpacing;
    label_->setTextWidth(Metrics::kContentWidth - labelLeft);
    const QSize labelSize = label_->sizeHint();
    const int firstLineHeight = std::max(label_->block().firstLineHeight(), symbolEdge);
    const int top = divider_->height() + Metrics::kPanelSpacing;
    const int labelTop = top + (firstLineHeight - label_->block().firstLineHeight()) / 2;
    symbol_->setGeometry(0, top + (firstLineHeight - symbolEdge) / 2, symbolEdge, symbolEdge);
    label_->setGeometry(QRect(QPoint(labelLeft, labelTop), labelSize));
    setFixedSize(Metrics::kContentWidth, std::max(labelTop + labelSize.height(), top + firstLineHeight));
}

}  // namespace ravlin
