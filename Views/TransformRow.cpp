#include "Views/TransformRow.h"

#include "Views/Icon.h"
#include "Views/Metrics.h"
#include "Views/QtText.h"
#include "Views/TextStyle.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace ravlin {
namespace {

int textWidth(int rowWidth, const QFont& base) {
    return rowWidth - 2 * Metrics::kRowPaddingX - Metrics::kRowSpacing - symbolSize(TextStyle::callout, base);
}

TextBlock titleIn(TextTransform transform, int rowWidth, const QFont& base) {
    return {toQString(transform.title()), fontFor(TextStyle::calloutMedium, base), textWidth(rowWidth, base)};
}

TextBlock subtitleIn(TextTransform transform, int rowWidth, const QFont& base) {
    return {toQString(transform.subtitle()), fontFor(TextStyle::caption2, base), textWidth(rowWidth, base),
            /*maxLines=*/1};
}

}  // namespace

// The title is not the button's text, in which an ampersand would mark a shortcut.
TransformRow::TransformRow(TextTransform transform, QWidget* parent) : PanelButton(parent), transform_(transform) {
    setObjectName(QStringLiteral("row.") + toQString(transform.id()));
    setAccessibleName(toQString(transform.title()));
    setAccessibleDescription(toQString(transform.subtitle()));
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
}

void TransformRow::setMark(Mark mark) {
    if (mark == mark_) return;
    mark_ = mark;
    update();
}

void TransformRow::mouseMoveEvent(QMouseEvent* event) {
    Q_EMIT pointedAt();
    PanelButton::mouseMoveEvent(event);
}

void TransformRow::mousePressEvent(QMouseEvent* event) {
    Q_EMIT pointedAt();
    PanelButton::mousePressEvent(event);
}

void TransformRow::leaveEvent(QEvent* event) {
    Q_EMIT pointerLeft();
    PanelButton::leaveEvent(event);
}

int TransformRow::heightFor(TextTransform transform, int width, const QFont& base) {
    return titleIn(transform, width, base).height() + Metrics::kRowTextSpacing +
           subtitleIn(transform, width, base).height() + 2 * Metrics::kRowPaddingY;
}

TextBlock TransformRow::titleBlock() const {
    return titleIn(transform_, width(), font());
}

TextBlock TransformRow::subtitleBlock() const {
    return subtitleIn(transform_, width(), font());
}

QSize TransformRow::sizeHint() const {
    return {width(), heightFor(transform_, width(), font())};
}

void TransformRow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const PanelColors colors(palette());
    paintGround(painter, colors);

    const TextBlock title = titleBlock();
    const QPoint topLeft(Metrics::kRowPaddingX, Metrics::kRowPaddingY);
    title.paint(painter, topLeft, colors.text);
    subtitleBlock().paint(painter, topLeft + QPoint(0, title.height() + Metrics::kRowTextSpacing), colors.secondary);

    const int arrowSize = symbolSize(TextStyle::callout, font());
    const QRectF arrow(width() - Metrics::kRowPaddingX - arrowSize, (height() - arrowSize) / 2.0, arrowSize, arrowSize);
    paintSymbol(painter, Symbol::arrowRightCircle, arrow, colors.tertiary);
}

void TransformRow::paintGround(QPainter& painter, const PanelColors& colors) const {
    if (!isDown() && mark_ == Mark::none) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QPen(colors.focusRing, Metrics::kFocusRingWidth) : QPen(Qt::NoPen));
    painter.setBrush(isDown() ? colors.pressed : mark_ == Mark::marked ? colors.highlight : colors.hover);
    const qreal inset = hasFocus() ? Metrics::kFocusRingWidth / 2 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), Metrics::kRowRadius,
                            Metrics::kRowRadius);
    if (mark_ == Mark::marked && !hasFocus()) paintBar(painter, colors);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// Shows that Return runs this row although the focus is elsewhere, for eyes that see no difference in the background.
void TransformRow::paintBar(QPainter& painter, const PanelColors& colors) const {
    constexpr qreal kRadius = Metrics::kMarkBarWidth / 2;
    const QRectF bar(1, Metrics::kRowRadius, Metrics::kMarkBarWidth, height() - 2 * Metrics::kRowRadius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.focusRing);
    painter.drawRoundedRect(bar, kRadius, kRadius);
}

// Pointing at an elided subtitle shows it in full.
bool TransformRow::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QAbstractButton::event(event);
    if (subtitleBlock().isElided()) {
        const QString asRichText = QStringLiteral("<qt>%1</qt>").arg(toQString(transform_.subtitle()).toHtmlEscaped());
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), asRichText, this);
    }
    return true;
}

}  // namespace ravlin
