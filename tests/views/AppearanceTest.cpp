#include "Views/Divider.h"
#include "Views/Metrics.h"
#include "Views/StatusLine.h"
#include "tests/views/PanelFixture.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>

#include <set>

#include <gmock/gmock.h>

namespace ravlin {
namespace {

/// What every part of the panel looks like: its colour as drawn, its font, its sizes. In a font so large that the
/// strokes of its letters have pixels of exactly their colour.
class AppearanceTest : public tests::PanelFixture {
protected:
    static constexpr qreal kPoints = 20;

    void SetUp() override {
        QFont font = QApplication::font();
        font.setPointSizeF(kPoints);
        font.setStyleStrategy(QFont::NoSubpixelAntialias);
        QApplication::setFont(font);
        QApplication::setPalette(tests::lightPalette());
        open();
    }

    PanelColors colors() const { return PanelColors(panel->palette()); }

    /// The strongest colour drawn on the ground: the one that differs most from it.
    static std::string ink(const QImage& image, const QColor& ground) {
        std::set<QRgb> drawn;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) drawn.insert(image.pixel(x, y));
        QColor strongest = ground;
        for (const QRgb color : drawn)
            if (contrast(color, ground) > contrast(strongest, ground)) strongest = color;
        return strongest.name().toStdString();
    }
    std::string ink(QWidget& widget) const { return ink(widget.grab().toImage(), colors().window); }
    static std::string named(const QColor& color) { return color.name().toStdString(); }

    static SymbolView& symbolIn(QWidget& parent) { return *parent.findChild<SymbolView*>(); }
    int top(const QWidget& widget) const { return widget.mapTo(panel.get(), QPoint()).y(); }
    int bottom(const QWidget& widget) const { return top(widget) + widget.height(); }
    int left(const QWidget& widget) const { return widget.mapTo(panel.get(), QPoint()).x(); }
    int right(const QWidget& widget) const { return left(widget) + widget.width(); }
    static double middle(const QWidget& widget) { return widget.y() + widget.height() / 2.0; }
    QWidget& header() const { return *find<QWidget>("titleLabel").parentWidget(); }
    QWidget& field() const { return *search().parentWidget(); }
    StatusLine& statusLine() const { return *panel->findChild<StatusLine*>(); }
    void showSuccess() {
        pasteboard.copyTextElsewhere("hello");
        panel->apply(TextTransform::stripFormatting);
        QApplication::processEvents();
    }
    static void expectFont(const QFont& font, double points, QFont::Weight weight) {
        EXPECT_DOUBLE_EQ(font.pointSizeF(), points);
        EXPECT_EQ(font.weight(), weight);
    }
    /// The picture of a part of the row.
    QImage rowPart(const QRect& part) { return row(TextTransform::stripFormatting).grab(part).toImage(); }
};

// Colours

TEST_F(AppearanceTest, TheHeaderHasTheWandInTheAccentColourAndTheTitleInTheTextColour) {
    EXPECT_EQ(symbolIn(header()).look().symbol, Symbol::wandAndStars);
    EXPECT_EQ(ink(symbolIn(header())), named(colors().accent));
    EXPECT_EQ(ink(find<QWidget>("titleLabel")), named(colors().text));
}

TEST_F(AppearanceTest, TheHintIsSecondary) {
    EXPECT_EQ(ink(find<QWidget>("hintLabel")), named(colors().secondary));
}

TEST_F(AppearanceTest, TheSearchFieldHasASecondaryGlassAndATertiaryClearSymbolOnItsGround) {
    type("e");
    const QImage glass = symbolIn(field()).grab().toImage();
    EXPECT_EQ(symbolIn(field()).look().symbol, Symbol::magnifyingGlass);
    EXPECT_EQ(ink(glass, colors().window), named(colors().secondary));
    EXPECT_EQ(ink(clearButton()), named(colors().tertiary));
    EXPECT_EQ(named(field().grab().toImage().pixelColor(field().width() / 2, 3)), named(colors().field));
}

TEST_F(AppearanceTest, TheGroundOfTheFieldHasRoundCorners) {
    const QImage picture = panel->grab(QRect(field().mapTo(panel.get(), QPoint()), field().size())).toImage();
    EXPECT_EQ(named(picture.pixelColor(0, 0)), named(colors().window));
    EXPECT_EQ(named(picture.pixelColor(1, 1)), named(colors().window));
    EXPECT_EQ(named(picture.pixelColor(11, 0)), named(colors().field)) << "the smooth curve of a corner of 8 has ended";
    EXPECT_EQ(named(picture.pixelColor(0, 11)), named(colors().field));
    EXPECT_NE(named(picture.pixelColor(8, 0)), named(colors().field)) << "where an arc would have ended it goes on";
    EXPECT_NE(named(picture.pixelColor(4, 0)), named(colors().field));
}

TEST_F(AppearanceTest, ASearchWithoutAMatchIsToldInTheSecondaryColour) {
    type("xyz");
    EXPECT_EQ(ink(find<QWidget>("emptyText")), named(colors().secondary));
}

TEST_F(AppearanceTest, SectionHeadersAreInTheAccentColourOnTheBar) {
    for (const char* const name : {"section.Clean", "pinnedHeader"}) {
        const QImage picture = find<QWidget>(name).grab().toImage();
        EXPECT_EQ(ink(picture, colors().bar), named(colors().accent)) << name;
        EXPECT_EQ(named(picture.pixelColor(0, 0)), named(colors().bar)) << name;
        EXPECT_EQ(named(picture.pixelColor(picture.width() - 1, picture.height() - 1)), named(colors().bar)) << name;
    }
}

TEST_F(AppearanceTest, RowsHaveTheirTitleInTheTextColourTheirSubtitleSecondaryAndTheirArrowTertiary) {
    const TransformRow& any = row(TextTransform::stripFormatting);
    const int titleBottom = 5 + any.titleBlock().height();
    const int arrow = any.width() - 6 - symbolSize(TextStyle::callout, any.font());
    EXPECT_EQ(ink(rowPart({0, 0, arrow, titleBottom}), colors().window), named(colors().text));
    EXPECT_EQ(ink(rowPart({0, titleBottom + 1, arrow, any.height() - titleBottom - 1}), colors().window),
              named(colors().secondary));
    EXPECT_EQ(ink(rowPart({arrow, 0, any.width() - arrow, any.height()}), colors().window), named(colors().tertiary));
}

TEST_F(AppearanceTest, TheStatusIsGreenAfterASuccessAndSecondaryAfterAFailure) {
    showSuccess();
    EXPECT_EQ(ink(status()), named(colors().success));
    EXPECT_EQ(ink(statusLine().symbol()), named(colors().success));
    pasteboard.clearElsewhere();
    panel->apply(TextTransform::stripFormatting);
    QApplication::processEvents();
    EXPECT_EQ(ink(status()), named(colors().secondary));
    EXPECT_EQ(ink(statusLine().symbol()), named(colors().secondary));
    EXPECT_GT(colors().success.green(), colors().success.red() + 40);
    EXPECT_GT(colors().success.green(), colors().success.blue() + 40);
}

TEST_F(AppearanceTest, ADividerOfOnePixelIsDrawnAcrossTheContentOnBothSidesOfTheListAndOfTheStatus) {
    const auto dividers = [this] {
        const QImage picture = panel->grab().toImage();
        const QColor divider = colors().divider;
        std::vector<int> found;
        for (int y = 1; y < picture.height() - 1; ++y) {
            bool isDivider = true;
            for (int x = 12; x < 12 + 316; ++x) isDivider &= picture.pixelColor(x, y) == divider;
            if (!isDivider) continue;
            found.push_back(y);
            EXPECT_NE(picture.pixelColor(11, y), divider);
            EXPECT_NE(picture.pixelColor(12 + 316, y), divider);
        }
        return found;
    };
    EXPECT_THAT(dividers(), testing::ElementsAre(bottom(field()) + 10, bottom(list()) + 10));
    showSuccess();
    EXPECT_THAT(dividers(), testing::ElementsAre(bottom(field()) + 10, bottom(list()) + 10, bottom(statusLine()) + 10));
    EXPECT_EQ(top(statusLine()), bottom(list()) + 10);
    const int besideTheSymbol = (statusLine().symbol().height() - status().block().firstLineHeight()) / 2;
    EXPECT_EQ(top(status()), top(statusLine()) + 1 + 10 + std::max(0, besideTheSymbol));
}

// Fonts

TEST_F(AppearanceTest, EveryTextHasItsStyle) {
    type("e");
    showSuccess();
    expectFont(find<TextLabel>("titleLabel").block().font(), 22, QFont::Bold);
    expectFont(find<TextLabel>("hintLabel").block().font(), 17, QFont::Normal);
    expectFont(search().font(), 20, QFont::Normal);
    expectFont(find<TextLabel>("emptyText").block().font(), 17, QFont::Normal);
    expectFont(status().block().font(), 17, QFont::Normal);
    expectFont(row(TextTransform::stripTracking).titleBlock().font(), 20, QFont::Medium);
    expectFont(row(TextTransform::stripTracking).subtitleBlock().font(), 16, QFont::Normal);
}

TEST_F(AppearanceTest, SymbolsHaveTheSizeOfTheTextBesideThem) {
    type("e");
    showSuccess();
    EXPECT_EQ(symbolIn(header()).width(), symbolSize(TextStyle::headline, panel->font()));
    EXPECT_EQ(symbolIn(field()).width(), symbolSize(TextStyle::caption, panel->font()));
    EXPECT_EQ(clearButton().width(), symbolSize(TextStyle::callout, panel->font()) + 4);
    EXPECT_EQ(statusLine().symbol().width(), symbolSize(TextStyle::caption, panel->font()));
    EXPECT_EQ(statusLine().symbol().height(), statusLine().symbol().width());
    EXPECT_EQ(symbolSize(TextStyle::caption, panel->font()),
              qRound(QFontInfo(fontFor(TextStyle::caption, panel->font())).pixelSize() * 1.15));
}

TEST_F(AppearanceTest, SectionTitlesAreSmallAndSemibold) {
    const QFont expected = fontFor(TextStyle::caption2Semibold, panel->font());
    expectFont(expected, 16, QFont::DemiBold);
    auto& section = find<SectionHeader>("section.Clean");
    QImage drawn(section.size(), QImage::Format_RGB32);
    drawn.fill(colors().bar);
    QPainter painter(&drawn);
    painter.setFont(expected);
    painter.setPen(colors().accent);
    painter.drawText(QRect(6, 3, section.width(), section.height() - 6), Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("CLEAN"));
    painter.end();
    EXPECT_EQ(section.grab().toImage().convertToFormat(QImage::Format_RGB32), drawn);
}

TEST_F(AppearanceTest, TheFootersButtonsAreInTheCaptionStyleWhereTheyHaveRoom) {
    QFont font = QApplication::font();
    font.setPointSizeF(12);
    QApplication::setFont(font);
    QApplication::processEvents();
    EXPECT_DOUBLE_EQ(quitButton().font().pointSizeF(), 12 * 0.85);
    EXPECT_DOUBLE_EQ(checkForUpdatesButton().font().pointSizeF(), 12 * 0.85);
}

// Sizes

TEST_F(AppearanceTest, ThePartsOfTheHeaderStandSideBySide) {
    const QWidget& wand = symbolIn(header());
    const QWidget& title = find<QWidget>("titleLabel");
    EXPECT_EQ(left(wand), 12);
    EXPECT_EQ(left(title) - right(wand), 8);
    EXPECT_NEAR(middle(wand), middle(title), 0.5);
    EXPECT_EQ(top(header()), 12);
    EXPECT_EQ(header().width(), 316);
}

TEST_F(AppearanceTest, ThePartsOfTheSearchFieldStandSideBySide) {
    type("e");
    QApplication::processEvents();
    const QWidget& glass = symbolIn(field());
    constexpr int kInsideTheLine = 2;  // what a line edit leaves free before its text
    EXPECT_EQ(glass.x(), 8);
    EXPECT_EQ(search().x() + kInsideTheLine - (glass.x() + glass.width()), 6);
    EXPECT_EQ(field().width() - (clearButton().x() + clearButton().width()), 8);
    EXPECT_EQ(clearButton().x() + 2 - (search().x() + search().width()), 6);
    EXPECT_EQ(search().y(), 6);
    EXPECT_EQ(field().height() - search().y() - search().height(), 6);
    EXPECT_NEAR(middle(glass), middle(search()), 0.5);
    EXPECT_NEAR(middle(clearButton()), middle(search()), 0.5);
    EXPECT_FALSE(search().hasFrame());
}

TEST_F(AppearanceTest, TheListHasItsSpacingAndPaddings) {
    const SectionHeader& section = find<SectionHeader>("section.Clean");
    EXPECT_EQ(section.height(), QFontMetrics(fontFor(TextStyle::caption2Semibold, panel->font())).height() + 2 * 3);
    EXPECT_EQ(section.width(), 316);
    EXPECT_EQ(section.y(), 0);
    EXPECT_EQ(row(TextTransform::stripTracking).y(), section.height() + 6);
    type("json");
    QApplication::processEvents();
    EXPECT_EQ(list().widget()->height(), row(TextTransform::jsonMinify).geometry().bottom() + 1 + 4);
}

TEST_F(AppearanceTest, RowsHaveTheirSpacingAndPaddings) {
    TransformRow& any = row(TextTransform::stripTracking);
    const int arrow = symbolSize(TextStyle::callout, panel->font());
    const int textWidth = 316 - 6 - 6 - 10 - arrow;
    const QFont small = fontFor(TextStyle::caption2, panel->font());
    ASSERT_TRUE(any.subtitleBlock().isElided());
    EXPECT_EQ(any.subtitleBlock().shownText(),
              QFontMetricsF(small).elidedText(toQString(any.transform().subtitle()), Qt::ElideRight, textWidth));
    EXPECT_EQ(any.height(), 5 + any.titleBlock().height() + 1 + any.subtitleBlock().height() + 5);

    // Where ink begins and ends: nothing in the paddings, the arrow at the right edge and in the middle.
    const QImage picture = any.grab().toImage();
    const QColor window = colors().window;
    int first = picture.width();
    int last = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) != window) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
    EXPECT_GE(first, 6);
    EXPECT_LE(first, 6 + 3) << "letters have a little room before them";
    EXPECT_LE(last, 316 - 6 - 1);
    EXPECT_GE(last, 316 - 6 - 1 - arrow / 6) << "the circle has a little room around it";
    int firstArrowLine = picture.height();
    int lastArrowLine = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 316 - 6 - arrow; x < 316 - 6; ++x)
            if (picture.pixelColor(x, y) != window) {
                firstArrowLine = std::min(firstArrowLine, y);
                lastArrowLine = std::max(lastArrowLine, y);
            }
    EXPECT_NEAR(firstArrowLine, picture.height() - 1 - lastArrowLine, 1);
}

TEST_F(AppearanceTest, TheSentenceAboutNoMatchHasItsPaddings) {
    type("xyz");
    QApplication::processEvents();
    const QWidget& text = find<QWidget>("emptyText");
    EXPECT_EQ(text.y(), 8);
    EXPECT_EQ(text.x(), 0);
    EXPECT_EQ(list().widget()->height(), 8 + text.height() + 8 + 4);
}

TEST_F(AppearanceTest, TheFooterHasQuitAtItsRightEndAndCheckForUpdatesAtItsLeft) {
    EXPECT_EQ(left(checkForUpdatesButton()), 12);
    EXPECT_EQ(right(quitButton()), 340 - 12);
    EXPECT_GE(left(quitButton()) - right(checkForUpdatesButton()), 10);
    EXPECT_EQ(top(quitButton()), top(checkForUpdatesButton()));
    EXPECT_EQ(panel->height() - bottom(quitButton()), 12);
}

// The looks that depend on the state can be told apart

TEST_F(AppearanceTest, TheScrollBarIsSeenWhereThereIsMoreAndOnlyThere) {
    EXPECT_TRUE(list().verticalScrollBar()->isVisible());
    EXPECT_EQ(ink(*list().verticalScrollBar()), named(colors().tertiary));
    type("json");
    QApplication::processEvents();
    EXPECT_FALSE(list().verticalScrollBar()->isVisible());
}

TEST_F(AppearanceTest, ADisabledCheckForUpdatesIsGrey) {
    const std::string enabled = ink(checkForUpdatesButton());
    tests::FakeUpdater::canCheck = false;
    Q_EMIT updater.canCheckForUpdatesChanged();
    EXPECT_NE(ink(checkForUpdatesButton()), enabled);
}

}  // namespace
}  // namespace ravlin
