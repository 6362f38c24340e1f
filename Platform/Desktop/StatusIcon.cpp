#include "Platform/Desktop/StatusIcon.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QStandardPaths>
#include <QSvgRenderer>

namespace ravlin::StatusIcon {
namespace {

constexpr QLatin1String kName("org.ravlin.ravlin-symbolic");
constexpr QLatin1String kFile("/hicolor/symbolic/apps/org.ravlin.ravlin-symbolic.svg");

/// Every theme falls back to hicolor, so it does not matter which theme is set, or whether it is installed.
bool isInstalled() {
    return !QStandardPaths::locate(QStandardPaths::GenericDataLocation, QStringLiteral("icons") + kFile).isEmpty();
}

/// A copy of the program that is not the system's has its themes next to it.
QString ownThemes() {
    const QString path = QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/icons"));
    return QFileInfo::exists(path + kFile) ? path : QString();
}

}  // namespace

QString themeName() {
    return isInstalled() || !ownThemes().isEmpty() ? QString(kName) : QString();
}

QString themePath() {
    return isInstalled() ? QString() : ownThemes();
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
