#include "Views/TextBlock.h"
#include "Views/TextStyle.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <cmath>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

QFont fontOf(qreal points) {
    QFont font;
    font.setPointSizeF(points);
    return font;
}

TEST(TextStyle, StylesAreStepsFromTheUsersFont) {
    const QFont base = fontOf(20);
    EXPECT_EQ(fontFor(TextStyle::callout, base).pointSizeF(), 20);
    EXPECT_EQ(fontFor(TextStyle::calloutMedium, base).pointSizeF(), 20);
    EXPECT_EQ(fontFor(TextStyle::headline, base).pointSizeF(), 22);
    EXPECT_EQ(fontFor(TextStyle::caption, base).pointSizeF(), 17);
    EXPECT_EQ(fontFor(TextStyle::caption2, base).pointSizeF(), 16);
    EXPECT_EQ(fontFor(TextStyle::caption2Semibold, base).pointSizeF(), 16);
}

TEST(TextStyle, WeightsSetHeadlinesTitlesAndSectionsApart) {
    const QFont base = fontOf(10);
    EXPECT_EQ(fontFor(TextStyle::headline, base).weight(), QFont::Bold);
    EXPECT_EQ(fontFor(TextStyle::calloutMedium, base).weight(), QFont::Medium);
    EXPECT_EQ(fontFor(TextStyle::caption2Semibold, base).weight(), QFont::DemiBold);
    EXPECT_EQ(fontFor(TextStyle::caption, base).weight(), QFont::Normal);
}

TEST(TextStyle, NoStyleIsSmallerThanEightPointsOrTheUsersFont) {
    for (const TextStyle style : {TextStyle::caption, TextStyle::caption2, TextStyle::caption2Semibold}) {
        EXPECT_EQ(fontFor(style, fontOf(9)).pointSizeF(), 8);
        EXPECT_EQ(fontFor(style, fontOf(8)).pointSizeF(), 8);
        EXPECT_EQ(fontFor(style, fontOf(6)).pointSizeF(), 6);
    }
}

TEST(TextStyle, AFontSizedInPixelsStaysOne) {
    QFont base;
    base.setPixelSize(20);
    EXPECT_EQ(fontFor(TextStyle::caption, base).pixelSize(), 17);
    base.setPixelSize(12);
    EXPECT_EQ(fontFor(TextStyle::caption2, base).pixelSize(), 11);
}

TEST(TextBlock, TextThatFitsHasOneLine) {
    const TextBlock block(QStringLiteral("UPPERCASE"), fontOf(10), 300);
    EXPECT_EQ(block.lineCount(), 1);
    EXPECT_FALSE(block.isElided());
    EXPECT_EQ(block.naturalWidth(),
              std::ceil(QFontMetricsF(fontOf(10)).horizontalAdvance(QStringLiteral("UPPERCASE"))));
    EXPECT_EQ(block.height(), block.firstLineHeight());
}

TEST(TextBlock, TextWrapsBetweenWords) {
    const TextBlock block(QStringLiteral("one two three four five six seven eight nine ten"), fontOf(10), 120);
    EXPECT_GT(block.lineCount(), 2);
    EXPECT_LE(block.naturalWidth(), 120);
    EXPECT_FALSE(block.isElided());
}

TEST(TextBlock, AWordWiderThanTheLineIsBroken) {
    const TextBlock block(QString(200, QLatin1Char('w')), fontOf(10), 120);
    EXPECT_GT(block.lineCount(), 10);
    EXPECT_LE(block.naturalWidth(), 120);
}

TEST(TextBlock, TheLastAllowedLineEndsInAnEllipsisWhenTextIsMissing) {
    const QString text = QStringLiteral("one two three four five six seven eight nine ten");
    const TextBlock block(text, fontOf(10), 120, 2);
    EXPECT_EQ(block.lineCount(), 2);
    EXPECT_TRUE(block.isElided());
    EXPECT_TRUE(block.shownText().endsWith(QStringLiteral("…")));
    EXPECT_TRUE(text.startsWith(block.shownText().chopped(1)));
    EXPECT_LE(block.naturalWidth(), 120);
}

TEST(TextBlock, TextOfExactlyTheAllowedLinesIsWhole) {
    const QString text = QStringLiteral("one two three four");
    const int width = TextBlock(QStringLiteral("three four"), fontOf(10), 500).naturalWidth();
    const TextBlock block(text, fontOf(10), width, 2);
    EXPECT_EQ(block.lineCount(), 2);
    EXPECT_FALSE(block.isElided());
    EXPECT_EQ(block.shownText(), text);
}

TEST(TextBlock, RunsOfBlanksKeepTheirWidth) {
    const QFont font = fontOf(10);
    EXPECT_GT(TextBlock(QStringLiteral("a    b"), font, 300).naturalWidth(),
              TextBlock(QStringLiteral("a b"), font, 300).naturalWidth());
}

TEST(TextBlock, EmptyTextTakesOneLineAtMost) {
    EXPECT_LE(TextBlock({}, fontOf(10), 100).lineCount(), 1);
}

TEST(TextBlock, NothingIsPaintedOutsideTheBlock) {
    for (const char* const text : {"Ápgjqy⌘→", "one two three four five six seven"}) {
        const TextBlock block(QString::fromUtf8(text), fontOf(12), 120, 2);
        constexpr int kMargin = 20;
        QImage image(120 + 2 * kMargin, block.height() + 2 * kMargin, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        block.paint(painter, {kMargin, kMargin}, Qt::black);
        painter.end();
        const QRect inside(kMargin, kMargin, 120, block.height());
        int inkInside = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) == qRgb(255, 255, 255)) continue;
                EXPECT_TRUE(inside.contains(x, y)) << text << " at " << x - kMargin << ", " << y - kMargin;
                ++inkInside;
            }
        EXPECT_GT(inkInside, 50);
    }
}

}  // namespace
}  // namespace ravlin
