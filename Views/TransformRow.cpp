#include "Views/TransformRow.h"

#include "Views/Icon.h"
#include "Views/Metrics.h"
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

// The title is no button text, in which an ampersand would name a shortcut.
TransformRow::TransformRow(TextTransform transform, QWidget* parent) : PanelButton(parent), transform_(transform) {
    setObjectName(QStringLiteral("row.") + toQString(transform.id()));
    setAccessibleName(toQString(transform.title()));
    setAccessibleDescription(toQString(transform.subtitle()));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
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
    if (!isDown() && !hasFocus() && !underMouse()) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QPen(colors.focusRing, Metrics::kFocusRingWidth) : QPen(Qt::NoPen));
    painter.setBrush(isDown() ? colors.pressed : hasFocus() ? colors.highlight : colors.hover);
    const qreal inset = hasFocus() ? Metrics::kFocusRingWidth / 2 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), Metrics::kRowRadius,
                            Metrics::kRowRadius);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

// Pointing at a subtitle that has no room shows it whole.
bool TransformRow::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QAbstractButton::event(event);
    if (subtitleBlock().isElided()) {
        const QString asRichText = QStringLiteral("<qt>%1</qt>").arg(toQString(transform_.subtitle()).toHtmlEscaped());
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), asRichText, this);
    }
    return true;
}

}  // namespace ravlin
