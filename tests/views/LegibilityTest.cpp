#include "tests/views/PanelFixture.h"

#include <QLabel>

namespace ravlin {
namespace {

/// The panel in a desktop font of 8 to 16 points, and in a huge one. These tests also run at two device pixels per
/// logical pixel.
class LegibilityTest : public tests::PanelFixture, public testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        QFont font = QApplication::font();
        font.setPointSizeF(GetParam());
        QApplication::setFont(font);
        open();
    }

    static bool mayBeElided(const TextLabel& label) { return label.objectName() == QStringLiteral("statusLabel"); }

    static void expectWholeText(const TextLabel& label) {
        const TextBlock text = label.block();
        const std::string name = label.objectName().toStdString();
        EXPECT_LE(text.height(), label.height()) << name;
        EXPECT_LE(text.naturalWidth(), label.width()) << name;
        EXPECT_TRUE(!text.isElided() || mayBeElided(label)) << name;
    }

    /// Whether `widget` is completely inside the panel's padding.
    void expectInsideThePanel(const QWidget& widget) const {
        const QRect place(widget.mapTo(panel.get(), QPoint()), widget.size());
        const QRect content = panel->rect().adjusted(12, 12, -12, -12);
        EXPECT_TRUE(content.contains(place)) << widget.objectName().toStdString();
    }

    void expectNothingIsClipped() const {
        for (const TextLabel* const label : panel->findChildren<TextLabel*>()) {
            if (!label->isVisible()) continue;
            expectWholeText(*label);
            if (!list().isAncestorOf(label)) expectInsideThePanel(*label);
        }
        for (const QPushButton* const button : panel->findChildren<QPushButton*>()) {
            expectInsideThePanel(*button);
            EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()) + 8);
            EXPECT_GE(button->height(), button->fontMetrics().height() + 2);
        }
    }
};

TEST_P(LegibilityTest, NoLabelOrButtonIsClipped) {
    expectNothingIsClipped();
    panel->apply(TextTransform::upperCase);
    expectNothingIsClipped();
    pasteboard.copyTextElsewhere(std::string(100'000, 'x'));
    panel->apply(TextTransform::normalizeDashes);
    expectNothingIsClipped();
    EXPECT_LE(status().block().lineCount(), 2);
    search().setText(QStringLiteral("  nothing matches this rather long query ") + QString(60, QLatin1Char('w')));
    expectNothingIsClipped();
}

TEST_P(LegibilityTest, ThePlaceholderAndTypedTextFitIntoTheField) {
    const QFontMetrics metrics = search().fontMetrics();
    EXPECT_TRUE(search().width() >= metrics.horizontalAdvance(search().placeholderText()) + 4 || GetParam() > 16);
    EXPECT_GE(search().height(), metrics.height());
    type("json");
    EXPECT_TRUE(clearButton().isVisible());
    EXPECT_GE(clearButton().height(), 11);
    EXPECT_LE(clearButton().geometry().right(), 316 - 8);
}

TEST_P(LegibilityTest, TheClearButtonDoesNotMoveTheRest) {
    const int heightBefore = search().parentWidget()->height();
    type(" ");
    EXPECT_EQ(search().parentWidget()->height(), heightBefore);
}

TEST_P(LegibilityTest, EveryTitleIsWholeAndEverySubtitleHasItsLine) {
    listed();
    const auto rows = list().widget()->findChildren<TransformRow*>();
    EXPECT_EQ(static_cast<std::size_t>(rows.size()), TextTransform::allCases().size());
    for (const TransformRow* const each : rows) {
        const TextBlock title = each->titleBlock();
        const TextBlock subtitle = each->subtitleBlock();
        const std::string name = each->objectName().toStdString();
        EXPECT_FALSE(title.isElided()) << name;
        EXPECT_EQ(subtitle.lineCount(), 1) << name;
        EXPECT_LE(5 + title.height() + 1 + subtitle.height() + 5, each->height()) << name;
        EXPECT_LE(std::max(title.naturalWidth(), subtitle.naturalWidth()),
                  each->width() - 12 - 10 - symbolSize(TextStyle::callout, each->font()))
            << name;
    }
}

TEST_P(LegibilityTest, SectionHeadersHaveRoomForTheirTitles) {
    for (const SectionHeader* const header : list().widget()->findChildren<SectionHeader*>()) {
        const QFontMetrics metrics(fontFor(TextStyle::caption2Semibold, header->font()));
        EXPECT_EQ(header->height(), metrics.height() + 6);
        EXPECT_LE(metrics.horizontalAdvance(header->text()) + 12, header->width());
    }
}

TEST_P(LegibilityTest, RowsDoNotOverlap) {
    listed();
    std::vector<QRect> places;
    for (const QWidget* const each : list().widget()->findChildren<QWidget*>())
        if (each->isVisible() && qobject_cast<const TransformSection*>(each) == nullptr)
            places.emplace_back(QPoint(0, topInList(*each)), each->size());
    std::ranges::sort(places, {}, &QRect::top);
    for (std::size_t i = 1; i < places.size(); ++i) EXPECT_EQ(places[i].top(), places[i - 1].bottom() + 1 + 6);
}

TEST_P(LegibilityTest, PicturesHaveOnePixelPerDevicePixel) {
    const qreal ratio = panel->devicePixelRatioF();
    const TransformRow& first = row(TextTransform::stripTracking);
    const QImage image = panel->grab().toImage();
    EXPECT_EQ(image.width(), qRound(340 * ratio));
    // The arrow's shaft is a horizontal line: at any size, some pixels of it are fully covered.
    const QColor expected = PanelColors(panel->palette()).tertiary;
    const QImage rowImage = const_cast<TransformRow&>(first).grab().toImage();
    int fullyCovered = 0;
    for (int y = 0; y < rowImage.height(); ++y)
        for (int x = rowImage.width() * 9 / 10; x < rowImage.width(); ++x)
            if (rowImage.pixelColor(x, y) == expected) ++fullyCovered;
    EXPECT_GE(fullyCovered, 2 * ratio);
}

INSTANTIATE_TEST_SUITE_P(Points, LegibilityTest, testing::Values(8, 9, 10, 11, 12, 14, 16, 28),
                         [](const auto& each) { return std::to_string(each.param) + "Points"; });

}  // namespace
}  // namespace ravlin
