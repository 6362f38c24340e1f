#include "tests/views/PanelFixture.h"

#include <QWheelEvent>

#include <gmock/gmock.h>

namespace ravlin {

static std::ostream& operator<<(std::ostream& out, const TextTransform& transform) {
    return out << transform.id();
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What stands out in the list, and what Return runs.
class MarkTest : public tests::PanelFixture {
protected:
    void SetUp() override {
        open();
        pasteboard.copyTextElsewhere("{}");
    }

    /// Every row that looks different from an unchosen one, with its ground's name.
    std::vector<std::string> lit() const {
        const PanelColors colors(panel->palette());
        std::vector<std::string> found;
        for (auto* const each : list().widget()->findChildren<TransformRow*>()) {
            if (!each->isVisible()) continue;
            const QColor ground = each->grab().toImage().pixelColor(each->width() / 2, 4);
            if (ground == colors.window) continue;
            const char* const name = ground == colors.hover       ? "hovered "
                                     : ground == colors.highlight ? "marked "
                                                                  : "? ";
            found.push_back(name + std::string(each->transform().id()));
        }
        return found;
    }
    std::string ran() {
        const auto status = statusText();
        return status.substr(0, status.find(" — "));
    }
    void pointAt(TextTransform transform) {
        auto& target = row(transform);
        QTest::mouseMove(&target, target.rect().center() + QPoint(nudge_ = 1 - nudge_, 0));
        QApplication::processEvents();
    }
    void turnWheel(TextTransform over, int steps) {
        const QPointF where = row(over).rect().center();
        const QPointF onScreen = row(over).mapToGlobal(where);
        QWheelEvent event(row(over).mapTo(list().viewport(), where), onScreen, {}, QPoint(0, steps * 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(list().viewport(), &event);
    }

private:
    int nudge_ = 0;
};

TEST_F(MarkTest, OnAnUntouchedPanelNothingStandsOutAndReturnRunsNothing) {
    EXPECT_THAT(lit(), IsEmpty());
    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    EXPECT_EQ(statusText(), "");
    EXPECT_EQ(pasteboard.string(), "{}");
}

TEST_F(MarkTest, ASearchForBlanksIsNone) {
    type("  ");
    EXPECT_THAT(lit(), IsEmpty());
    press(Qt::Key_Return);
    EXPECT_EQ(statusText(), "");
}

TEST_F(MarkTest, FromTheFirstLetterOnTheFirstMatchIsMarkedAndRuns) {
    for (const char* const letter : {"j", "s", "o", "n"}) {
        type(letter);
        const auto first = groupedTransforms(panel->query().toStdString()).front().items.front();
        EXPECT_THAT(lit(), ElementsAre("marked " + std::string(first.id())));
        press(Qt::Key_Return);
        EXPECT_EQ(ran(), first.title());
    }
}

TEST_F(MarkTest, ALetterThatMatchesEverythingMarksTheFirstRow) {
    search().setText(QStringLiteral(" "));
    type("e");
    EXPECT_THAT(lit(), ElementsAre("marked stripTracking"));
    search().clear();
    EXPECT_THAT(lit(), IsEmpty());
}

TEST_F(MarkTest, ASearchWithoutAMatchMarksNothing) {
    type("json");
    type("x");
    EXPECT_EQ(list().marked(), std::nullopt);
    press(Qt::Key_Return);
    EXPECT_EQ(statusText(), "");
}

TEST_F(MarkTest, AKeptSearchIsMarkedWhenThePanelOpensAgain) {
    type("json");
    press(Qt::Key_Down);
    close();
    open();
    EXPECT_THAT(lit(), ElementsAre("marked jsonPretty"));
    press(Qt::Key_Return);
    EXPECT_EQ(ran(), "JSON Pretty");
}

TEST_F(MarkTest, TheArrowsGoOnFromTheMark) {
    type("json");
    press(Qt::Key_Down);
    EXPECT_THAT(lit(), ElementsAre("marked jsonMinify"));
    press(Qt::Key_Return);
    EXPECT_EQ(ran(), "JSON Minify");
    press(Qt::Key_Up, 2);
    EXPECT_TRUE(search().hasFocus());
    EXPECT_THAT(lit(), ElementsAre("marked jsonPretty"));
}

TEST_F(MarkTest, ThePointerOnlyHoversWhereReturnRunsNothing) {
    pointAt(TextTransform::stripFormatting);
    EXPECT_THAT(lit(), ElementsAre("hovered stripFormatting"));
    press(Qt::Key_Return);
    EXPECT_EQ(statusText(), "");
    QTest::mouseMove(panel.get(), QPoint(3, 3));
    QApplication::processEvents();
    EXPECT_THAT(lit(), IsEmpty());
}

TEST_F(MarkTest, WhicheverMovedLastStandsOutAlone) {
    pointAt(TextTransform::removeInvisibles);
    press(Qt::Key_Down);
    EXPECT_THAT(lit(), ElementsAre("marked stripTracking")) << "the keyboard after the pointer";
    pointAt(TextTransform::stripFormatting);
    EXPECT_THAT(lit(), ElementsAre("marked stripFormatting")) << "the pointer after the keyboard";
    EXPECT_EQ(list().highlighted(), TextTransform(TextTransform::stripFormatting));
    press(Qt::Key_Down);
    EXPECT_THAT(lit(), ElementsAre("marked removeInvisibles")) << "the keyboard goes on from there";
    type("json");
    EXPECT_THAT(lit(), ElementsAre("marked jsonPretty")) << "typing after the keyboard";
    pointAt(TextTransform::jsonMinify);
    EXPECT_THAT(lit(), ElementsAre("marked jsonMinify")) << "the pointer after typing";
    EXPECT_TRUE(search().hasFocus());
    press(Qt::Key_Return);
    EXPECT_EQ(ran(), "JSON Minify");
}

TEST_F(MarkTest, RowsThatComeUnderAStillPointerDoNotCount) {
    type("case");
    pointAt(row(TextTransform::upperCase).transform());
    QApplication::processEvents();
    search().clear();
    type("json");
    EXPECT_THAT(lit(), ElementsAre("marked jsonPretty"));
}

TEST_F(MarkTest, AClickMovesTheMarkToo) {
    type("json");
    click(&row(TextTransform::jsonMinify));
    EXPECT_EQ(ran(), "JSON Minify");
    EXPECT_THAT(lit(), ElementsAre("marked jsonMinify"));
}

TEST_F(MarkTest, AfterTheWheelTheRowUnderTheStillPointerIsTheHoveredOne) {
    pointAt(TextTransform::removeInvisibles);
    const QPoint where = row(TextTransform::removeInvisibles).mapTo(list().viewport(), QPoint(100, 20));
    turnWheel(TextTransform::removeInvisibles, -1);
    ASSERT_GT(list().verticalScrollBar()->value(), 0);
    const auto* const under =
        qobject_cast<TransformRow*>(list().widget()->childAt(list().widget()->mapFrom(list().viewport(), where)));
    ASSERT_NE(under, nullptr);
    ASSERT_NE(under->transform(), TextTransform(TextTransform::removeInvisibles));
    EXPECT_THAT(lit(), ElementsAre("hovered " + std::string(under->transform().id())));
}

TEST_F(MarkTest, TheWheelMovesTheMarkOfASearch) {
    type("line");
    pointAt(TextTransform::sortLinesAsc);
    turnWheel(TextTransform::sortLinesAsc, -1);
    EXPECT_THAT(lit(), testing::SizeIs(1));
    EXPECT_NE(list().marked(), TextTransform(TextTransform::sortLinesAsc));
}

TEST_F(MarkTest, WhatThePinnedHeaderCoversIsNotUnderThePointer) {
    auto& first = row(TextTransform::stripTracking);
    const QPoint overHeader = list().viewport()->mapToGlobal(QPoint(100, 5));
    QWheelEvent event(list().viewport()->mapFromGlobal(overHeader), overHeader, {}, QPoint(0, -60), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(list().viewport(), &event);
    EXPECT_GT(list().verticalScrollBar()->value(), 0);
    EXPECT_EQ(first.mark(), TransformRow::Mark::none);
    EXPECT_THAT(lit(), IsEmpty());
}

TEST_F(MarkTest, AFocusedButtonIsWhatReturnPressesAndNoRowIsMarked) {
    type("json");
    press(Qt::Key_Tab);
    EXPECT_TRUE(clearButton().hasFocus());
    EXPECT_THAT(lit(), IsEmpty());
    press(Qt::Key_Tab);
    EXPECT_THAT(lit(), ElementsAre("marked jsonPretty"));
    press(Qt::Key_Tab, 2);
    EXPECT_TRUE(quitButton().hasFocus());
    EXPECT_THAT(lit(), IsEmpty());
    search().setFocus();
    EXPECT_THAT(lit(), ElementsAre("marked jsonPretty"));
}

TEST_F(MarkTest, NothingIsLeftOfThePointerWhenThePanelOpensAgain) {
    pointAt(TextTransform::stripFormatting);
    close();
    open();
    EXPECT_THAT(lit(), IsEmpty());
}

TEST_F(MarkTest, TheMarkHasABarAndTheFocusARing) {
    type("json");
    const PanelColors colors(panel->palette());
    const auto colorAt = [&](int x, int y) { return row(TextTransform::jsonPretty).grab().toImage().pixelColor(x, y); };
    const int middle = row(TextTransform::jsonPretty).height() / 2;
    EXPECT_EQ(colorAt(2, middle), colors.focusRing);
    EXPECT_NE(colorAt(100, 0), colors.focusRing);
    press(Qt::Key_Tab, 2);
    EXPECT_EQ(colorAt(100, 0), colors.focusRing);
    EXPECT_EQ(colorAt(3, middle), colors.highlight);
}

}  // namespace
}  // namespace ravlin
