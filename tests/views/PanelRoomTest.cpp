#include "Views/Metrics.h"
#include "tests/views/PanelFixture.h"

#include <map>

#include <gmock/gmock.h>

namespace ravlin {
namespace {

/// The panel with less room than it would like: only the list gives way.
class PanelRoomTest : public tests::PanelFixture {
protected:
    static constexpr int kSmallest = 456;  // what a 24-pixel bar leaves of 800x480

    void openIn(int room) {
        panel->setRoom(room);
        open();
    }
    int bottom(const QWidget& widget) const { return widget.mapTo(panel.get(), QPoint(0, widget.height())).y(); }
    int top(const QWidget& widget) const { return widget.mapTo(panel.get(), QPoint()).y(); }

    /// Where everything is that a pointer can be on: the field, and what is in view of the list.
    std::map<std::string, int> places() const {
        std::map<std::string, int> tops = {{"searchField", top(search())}, {"list", top(list())}};
        for (const auto* const each : list().widget()->findChildren<TransformRow*>())
            if (each->isVisible() && !inView(*each).isEmpty()) tops[std::string(each->transform().id())] = top(*each);
        return tops;
    }
    void expectStill(const std::map<std::string, int>& before, const char* occasion) const {
        const auto now = places();
        EXPECT_EQ(now.at("searchField"), before.at("searchField")) << occasion;
        for (const auto& [name, y] : now) {
            const auto was = before.find(name);
            EXPECT_EQ(y, was == before.end() ? y : was->second) << name << occasion;
        }
    }
    void showLongStatus() {
        pasteboard.copyTextElsewhere(std::string(1'000'000, 'x'));
        panel->apply(TextTransform::normalizeDashes);
        ASSERT_EQ(status().block().lineCount(), 2);
    }
    void showShortStatus() {
        pasteboard.clearElsewhere();
        panel->apply(TextTransform::upperCase);
        ASSERT_EQ(status().block().lineCount(), 1);
    }
    void expectWhole(int room) const {
        EXPECT_LE(panel->height(), room);
        EXPECT_EQ(panel->height(), bottom(quitButton()) + Metrics::kPanelPadding);
        EXPECT_EQ(status().height(), status().block().height());
        EXPECT_EQ(top(quitButton()) - Metrics::kPanelSpacing * 2 - 1,
                  status().isVisible() ? bottom(*status().parentWidget()) : bottom(list()));
    }
};

TEST_F(PanelRoomTest, TheWholePanelHasTheWholeListAndTheStatusOfNow) {
    EXPECT_EQ(panel->fullHeight(), panel->height());
    open();
    const int without = panel->fullHeight();
    type("json");
    EXPECT_EQ(panel->fullHeight(), without) << "whatever is searched for";
    showLongStatus();
    EXPECT_EQ(panel->fullHeight(), without + status().parentWidget()->height() + Metrics::kPanelSpacing);
}

TEST_F(PanelRoomTest, OnSmallScreensTheListIsLowerAndAllElseIsWhole) {
    for (const int room : {kSmallest, 516, 559, 590}) {
        panel->setRoom(room);
        open();
        expectWhole(room);
        showShortStatus();
        expectWhole(room);
        showLongStatus();
        expectWhole(room);
        EXPECT_EQ(panel->height(), std::min(room, panel->fullHeight())) << "as high as there is room";
        EXPECT_GE(list().height(), 200);
        close();
    }
}

TEST_F(PanelRoomTest, AStatusMovesNeitherTheFieldNorRows) {
    openIn(panel->height());
    for (const int scroll : {0, 700, list().verticalScrollBar()->maximum()}) {
        scrollTo(scroll);
        const auto before = places();
        showShortStatus();
        expectStill(before, " at a status of one line");
        showLongStatus();
        expectStill(before, " at a status of two lines");
        showShortStatus();
        expectStill(before, " at a status of one line again");
    }
}

TEST_F(PanelRoomTest, AStatusMovesNothingAtTheEndOfALowList) {
    openIn(kSmallest);
    showLongStatus();
    scrollTo(list().verticalScrollBar()->maximum());
    const auto before = places();
    showShortStatus();
    expectStill(before, " at a shorter status");
    EXPECT_EQ(list().verticalScrollBar()->value(), list().verticalScrollBar()->maximum());
}

TEST_F(PanelRoomTest, WhereThereIsRoomBelowTheListKeepsItsHeight) {
    openIn(panel->height() + 100);
    showLongStatus();
    EXPECT_EQ(list().height(), Metrics::kListMaxHeight);
}

TEST_F(PanelRoomTest, TypingMovesNeitherTheFieldNorTheList) {
    openIn(kSmallest);
    showLongStatus();
    const auto before = places();
    for (const char* const letter : {"j", "s", "o", "n", "x"}) {
        type(letter);
        EXPECT_EQ(places().at("searchField"), before.at("searchField"));
        EXPECT_EQ(places().at("list"), before.at("list"));
        expectWhole(kSmallest);
    }
}

TEST_F(PanelRoomTest, WhatTheStatusTookComesBackWithTheNextContent) {
    openIn(panel->height());
    const int full = panel->height();
    showLongStatus();
    showShortStatus();
    EXPECT_LT(panel->height(), full) << "or the rows at the end would move";
    type("line");
    EXPECT_EQ(panel->height(), full);
}

TEST_F(PanelRoomTest, EachOpeningTakesTheRoomThatThereIsThen) {
    openIn(kSmallest);
    const int low = list().height();
    close();
    openIn(900);
    EXPECT_EQ(list().height(), Metrics::kListMaxHeight);
    close();
    openIn(kSmallest);
    EXPECT_EQ(list().height(), low);
}

TEST_F(PanelRoomTest, TheRowThatTheKeyboardChoseStaysInSightOfAStatusBelowIt) {
    openIn(panel->height());
    QTest::mouseMove(panel.get(), QPoint(3, 3));
    QApplication::processEvents();
    while (bottom(row(list().highlighted().value_or(TextTransform::stripTracking))) < bottom(list()) - 20)
        press(Qt::Key_Down);
    const TransformRow& chosen = row(*list().highlighted());
    pasteboard.copyTextElsewhere("hello");
    press(Qt::Key_Return);
    EXPECT_EQ(inView(chosen).size(), chosen.size());
}

TEST_F(PanelRoomTest, AScreenWithoutRoomForAnythingKeepsARowInSight) {
    openIn(100);
    EXPECT_EQ(list().height(), Metrics::kListMinHeight);
    EXPECT_GE(list().height(), row(TextTransform::stripTracking).geometry().bottom());
}

}  // namespace
}  // namespace ravlin
