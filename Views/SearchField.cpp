#include "Views/SearchField.h"

#include "Views/Metrics.h"
#include "Views/PanelColors.h"
#include "Views/SearchLine.h"
#include "Views/SymbolButton.h"
#include "Views/SymbolView.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace ravlin {
namespace {

/// A rounded rectangle whose edges pass into its corners without a jump in curvature, unlike arcs of a circle.
QPainterPath smoothRectangle(const QRectF& r, qreal radius) {
    const qreal reach = radius * 1.28;   // where a corner's curve begins, from the corner
    const qreal handle = radius * 0.28;  // how far the curve's handles stay away from the corner
    QPainterPath path(QPointF(r.left() + reach, r.top()));
    path.lineTo(r.right() - reach, r.top());
    path.cubicTo(r.right() - handle, r.top(), r.right(), r.top() + handle, r.right(), r.top() + reach);
    path.lineTo(r.right(), r.bottom() - reach);
    path.cubicTo(r.right(), r.bottom() - handle, r.right() - handle, r.bottom(), r.right() - reach, r.bottom());
    path.lineTo(r.left() + reach, r.bottom());
    path.cubicTo(r.left() + handle, r.bottom(), r.left(), r.bottom() - handle, r.left(), r.bottom() - reach);
    path.lineTo(r.left(), r.top() + reach);
    path.cubicTo(r.left(), r.top() + handle, r.left() + handle, r.top(), r.left() + reach, r.top());
    return path;
}

}  // namespace

SearchField::SearchField(QWidget* parent)
    : QWidget(parent),
      line_(new SearchLine(this)),
      clearButton_(new SymbolButton(
          {.symbol = Symbol::clearCircle, .style = TextStyle::callout, .color = &PanelColors::tertiary}, this)) {
    setFixedWidth(Metrics::kContentWidth);
    setCursor(Qt::IBeamCursor);

    line_->setObjectName(QStringLiteral("searchField"));
    line_->setAccessibleName(QStringLiteral("Search transforms"));
    line_->setPlaceholderText(QStringLiteral("Search transforms…"));
    clearButton_->setObjectName(QStringLiteral("clearButton"));
    clearButton_->setAccessibleName(QStringLiteral("Clear search"));
    clearButton_->hide();

    buildLayout();
    adoptFontAndPalette();
    connect(line_, &QLineEdit::textChanged, this, &SearchField::handleTextChanged);
    connect(clearButton_, &QAbstractButton::clicked, this, &SearchField::clear);
}

void SearchField::buildLayout() {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::kSearchPaddingX, Metrics::kSearchPaddingY, Metrics::kSearchPaddingX,
                               Metrics::kSearchPaddingY);
    layout->setSpacing(Metrics::kSearchSpacing - Metrics::kLineEditMargin);
    layout->addWidget(new SymbolView(
        {.symbol = Symbol::magnifyingGlass, .style = TextStyle::caption, .color = &PanelColors::secondary}, this));
    layout->addWidget(line_);
    layout->addWidget(clearButton_);
}

QString SearchField::query() const {
    return line_->text();
}

void SearchField::clear() {
    line_->clear();
    line_->setFocus();
}

void SearchField::handleTextChanged(const QString& query) {
    clearButton_->setVisible(!query.isEmpty());
    Q_EMIT queryChanged(query);
}

void SearchField::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(smoothRectangle(rect(), Metrics::kSearchRadius), PanelColors(palette()).field);
}

void SearchField::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) adoptFontAndPalette();
}

// The line draws itself, so it is given what the other parts work out as they draw.
void SearchField::adoptFontAndPalette() {
    const PanelColors colors(palette());
    QPalette linePalette = palette();
    linePalette.setColor(QPalette::Base, Qt::transparent);
    linePalette.setColor(QPalette::Text, colors.text);
    linePalette.setColor(QPalette::PlaceholderText, colors.secondary);
    line_->setPalette(linePalette);
    line_->setFont(fontFor(TextStyle::callout, font()));
    const int textHeight = line_->fontMetrics().height() + 2 * Metrics::kLineEditMarginY;
    line_->setFixedHeight(std::max(textHeight, clearButton_->sizeHint().height()));
}

// A click beside the text, on the background or the magnifying glass, is meant for the text.
void SearchField::mousePressEvent(QMouseEvent* /*event*/) {
    line_->setFocus();
}

}  // namespace ravlin
