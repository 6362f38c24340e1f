#include "Views/Icon.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

constexpr Symbol kSymbols[] = {Symbol::wandAndStars,     Symbol::magnifyingGlass, Symbol::clearCircle,
                               Symbol::arrowRightCircle, Symbol::checkCircle,     Symbol::infoCircle};

QImage drawn(Symbol symbol, int size, qreal ratio, const QColor& color, const QPointF& topLeft = {}) {
    QImage image(qRound(size * ratio), qRound(size * ratio), QImage::Format_ARGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintSymbol(painter, symbol, QRectF(topLeft, QSizeF(size, size)), color);
    return image;
}

int pixelsOf(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == color ? 1 : 0;
    return count;
}

TEST(Icons, EveryPictureIsCompiledIntoThePrograms) {
    for (const char* const name :
         {"arrow-right-circle", "check-circle", "clear-circle", "info-circle", "magnifying-glass", "wand-and-stars",
          "org.ravlin.ravlin", "org.ravlin.ravlin-symbolic"}) {
        const QString file = QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name));
        EXPECT_TRUE(QFile::exists(file)) << name;
        EXPECT_TRUE(QSvgRenderer(file).isValid()) << name;
    }
}

TEST(Icons, SymbolsAreDrawnInTheColourAskedFor) {
    for (const Symbol symbol : kSymbols) {
        EXPECT_GT(pixelsOf(drawn(symbol, 48, 1, QColor(0x12, 0x34, 0x56)), QColor(0x12, 0x34, 0x56)), 100);
        EXPECT_EQ(pixelsOf(drawn(symbol, 48, 1, QColor(0xab, 0xcd, 0xef)), Qt::black), 0);
    }
}

TEST(Icons, SymbolsHaveTheResolutionOfTheScreen) {
    for (const Symbol symbol : kSymbols)
        EXPECT_EQ(drawn(symbol, 16, 2, Qt::black), [&] {
            QImage image = drawn(symbol, 32, 1, Qt::black);
            image.setDevicePixelRatio(2);
            return image;
        }());
}

TEST(Icons, SymbolsStandOnWholePixels) {
    EXPECT_EQ(drawn(Symbol::clearCircle, 16, 1, Qt::black, {0.4, 0.3}), drawn(Symbol::clearCircle, 16, 1, Qt::black));
    EXPECT_EQ(drawn(Symbol::clearCircle, 16, 2, Qt::black, {0.2, 0.1}), drawn(Symbol::clearCircle, 16, 2, Qt::black));
}

TEST(Icons, ThePicturesOfTheTrayAreRecolourable) {
    QFile file(QStringLiteral(":/icons/org.ravlin.ravlin-symbolic.svg"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray source = file.readAll();
    EXPECT_EQ(source.count("<path "), source.count("fill=\"currentColor\""));
    const QByteArray paths = source.mid(source.lastIndexOf("</style>"));
    EXPECT_EQ(paths.count("stroke"), 0) << "some desktops recolour fills only";
    const QByteArray sheets = source.left(source.lastIndexOf("</style>"));
    EXPECT_EQ(sheets.count("stroke:"), sheets.count(":root:nth-child(1) > path")) << "for a host of no colour only";
}

}  // namespace
}  // namespace ravlin
