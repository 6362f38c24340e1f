#include "Views/Icon.h"

#include <QByteArray>
#include <QFile>
#include <QFontInfo>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QString>
#include <QSvgRenderer>

namespace ravlin {
namespace {

QString fileOf(Symbol symbol) {
    switch (symbol) {
        case Symbol::wandAndStars: return QStringLiteral(":/icons/wand-and-stars.svg");
        case Symbol::magnifyingGlass: return QStringLiteral(":/icons/magnifying-glass.svg");
        case Symbol::clearCircle: return QStringLiteral(":/icons/clear-circle.svg");
        case Symbol::arrowRightCircle: return QStringLiteral(":/icons/arrow-right-circle.svg");
        case Symbol::checkCircle: return QStringLiteral(":/icons/check-circle.svg");
        case Symbol::infoCircle: return QStringLiteral(":/icons/info-circle.svg");
    }
    return {};
}

// The pictures are drawn in "currentColor", which the renderer always takes as black.
QPixmap render(const QString& file, int devicePixels, const QColor& color) {
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly)) return {};
    QSvgRenderer renderer(source.readAll().replace("currentColor", color.name().toLatin1()));
    QPixmap pixmap(devicePixels, devicePixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
}

QPixmap cachedPixmap(Symbol symbol, int devicePixels, const QColor& color) {
    const QString file = fileOf(symbol);
    const QString key = QStringLiteral("%1@%2%3").arg(file).arg(devicePixels).arg(color.name());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = render(file, devicePixels, color);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

}  // namespace

// Drawn here, since Qt's own way from such a file to an icon is a plug-in that not every system has.
QIcon applicationIcon() {
    QSvgRenderer renderer(QStringLiteral(":/icons/org.ravlin.ravlin.svg"));
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

int symbolSize(TextStyle style, const QFont& base) {
    constexpr qreal kSizePerFontSize = 1.15;
    return qRound(QFontInfo(fontFor(style, base)).pixelSize() * kSizePerFontSize);
}

void paintSymbol(QPainter& painter, Symbol symbol, const QRectF& place, const QColor& color) {
    const qreal ratio = painter.device()->devicePixelRatio();
    QPixmap pixmap = cachedPixmap(symbol, qRound(place.width() * ratio), color);
    pixmap.setDevicePixelRatio(ratio);
    const auto onWholePixel = [ratio](qreal position) { return qRound(position * ratio) / ratio; };
    painter.drawPixmap(QPointF(onWholePixel(place.x()), onWholePixel(place.y())), pixmap);
}

}  // namespace ravlin
