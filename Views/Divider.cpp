#include "Views/Divider.h"

#include "Views/Metrics.h"
#include "Views/PanelColors.h"

#include <QPainter>

namespace ravlin {

Divider::Divider(QWidget* parent) : QWidget(parent) {
    setFixedSize(Metrics::kContentWidth, Metrics::kDividerHeight);
}

void Divider::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), PanelColors(palette()).divider);
}

}  // namespace ravlin
