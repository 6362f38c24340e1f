#include "Views/StatusLine.h"

#include "Views/Metrics.h"
#include "Views/SymbolView.h"
#include "Views/TextLabel.h"

#include <QAccessible>
#include <QEvent>

#include <algorithm>

namespace ravlin {

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent),
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
    label_->setAccessibleName(label_->text());
    fit();
}

void StatusLine::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) fit();
}

// The pictogram stands beside the first line, centred on it.
void StatusLine::fit() {
    const int symbolEdge = symbolSize(TextStyle::caption, font());
    const int labelLeft = symbolEdge + Metrics::kStatusSpacing;
    label_->setTextWidth(Metrics::kContentWidth - labelLeft);
    const int lead = label_->block().firstLineHeight() - symbolEdge;
    symbol_->setGeometry(0, std::max(lead, 0) / 2, symbolEdge, symbolEdge);
    label_->setGeometry(QRect(QPoint(labelLeft, std::max(-lead, 0) / 2), label_->sizeHint()));
    setFixedSize(Metrics::kContentWidth, std::max(label_->geometry().bottom(), symbol_->geometry().bottom()) + 1);
}

}  // namespace ravlin
