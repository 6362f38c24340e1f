#include "Platform/Desktop/StatusIcon.h"

#include <QIcon>
#include <QPainter>
#include <QSvgRenderer>

namespace ravlin::StatusIcon {

QString themeName() {
    const QString name = QStringLiteral("org.ravlin.ravlin-symbolic");
    return QIcon::hasThemeIcon(name) ? name : QString();
}

QImage image(int size, const QColor& color) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(QStringLiteral(":/icons/org.ravlin.ravlin-symbolic.svg")).render(&painter, image.rect());
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

}  // namespace ravlin::StatusIcon
