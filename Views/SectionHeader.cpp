#include "Views/SectionHeader.h"

#include "Engine/Support/Characters/Unicode.h"
#include "Views/Metrics.h"
#include "Views/PanelColors.h"
#include "Views/QtText.h"
#include "Views/TextStyle.h"

#include <QFontMetrics>
#include <QPainter>

namespace ravlin {

SectionHeader::SectionHeader(TransformCategory category, Kind kind, QWidget* parent)
    : QWidget(parent), category_(category), kind_(kind) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    if (kind == Kind::pinned) return;
    setObjectName(QStringLiteral("section.") + toQString(category.id()));
    setAccessibleName(toQString(category.title()));
}

void SectionHeader::setCategory(TransformCategory category) {
    if (category == category_) return;
    category_ = category;
    update();
}

QString SectionHeader::text() const {
    return toQString(Unicode::upperCased(category_.title()));
}

int SectionHeader::heightFor(const QFont& base) {
    return QFontMetrics(fontFor(TextStyle::caption2Semibold, base)).height() + 2 * Metrics::kSectionPaddingY;
}

QSize SectionHeader::sizeHint() const {
    return {width(), heightFor(font())};
}

void SectionHeader::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const PanelColors colors(palette());
    painter.fillRect(rect(), colors.bar);
    painter.setFont(fontFor(TextStyle::caption2Semibold, font()));
    painter.setPen(colors.accent);
    painter.drawText(rect().adjusted(Metrics::kSectionPaddingX, 0, -Metrics::kSectionPaddingX, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
}

}  // namespace ravlin
