#include "App/PanelPresenter.h"
#include "Views/MenuView.h"
#include "tests/support/FakePasteboard.h"
#include "tests/views/FakeUpdater.h"

#include <QApplication>
#include <QScreen>
#include <QTest>

#include <limits>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

/// Where the panel opens and stays, on the one 800x800 screen that exists without a desktop.
class PanelPresenterTest : public testing::Test {
protected:
    static MenuView* panel() {
        for (QWidget* const each : QApplication::topLevelWidgets())
            if (auto* const view = qobject_cast<MenuView*>(each)) return view;
        return nullptr;
    }
    MenuView& openAt(const QRect& icon) {
        presenter.toggle(icon, {});
        if (panel() == nullptr || !panel()->isVisible()) throw std::runtime_error("the panel is not open");
        return *panel();
    }
    void close() { panel()->hide(); }
    static void copyLongText(tests::FakePasteboard& pasteboard) {
        pasteboard.copyTextElsewhere(std::string(1'000'000, 'x'));
    }

    tests::FakePasteboard pasteboard;
    tests::SilentUserDriver driver;
    UpdaterController updater{driver};
    PanelPresenter presenter{updater};
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
};

TEST_F(PanelPresenterTest, KeepsItsTopEdgeWhateverItsContentIs) {
    const QRect icons[] = {{600, 1, 22, 22}, {600, 777, 22, 22}, {1, 300, 22, 22}, {400, 380, 1, 1}};
    for (const QRect& icon : icons) {
        MenuView& open = openAt(icon);
        const QPoint corner = open.pos();
        const auto expectStill = [&](const char* occasion) {
            QApplication::processEvents();
            EXPECT_EQ(open.y(), corner.y()) << occasion << " with an icon at " << icon.y();
            EXPECT_EQ(open.x(), corner.x()) << occasion << " with an icon at " << icon.y();
            EXPECT_TRUE(screen.contains(open.geometry())) << occasion << " with an icon at " << icon.y();
            EXPECT_FALSE(open.geometry().intersects(icon)) << occasion << " with an icon at " << icon.y();
        };
        expectStill("at first");
        for (const char letter : {'j', 's', 'o', 'n', 'x'}) {
            QTest::keyClick(open.focusWidget(), letter);
            expectStill("typing");
        }
        open.apply(TextTransform::upperCase);
        expectStill("a status of one line");
        copyLongText(pasteboard);
        open.apply(TextTransform::normalizeDashes);
        expectStill("a status of two lines");
        QTest::keyClick(open.focusWidget(), Qt::Key_Escape);
        EXPECT_EQ(open.query(), QString());
        expectStill("the whole list");
        close();
    }
}

TEST_F(PanelPresenterTest, AKeptSearchDoesNotDecideAboutThePlace) {
    const QRect icon(600, 777, 22, 22);
    const QPoint whole = openAt(icon).pos();
    QTest::keyClicks(panel()->focusWidget(), QStringLiteral("json"));
    close();
    EXPECT_EQ(openAt(icon).pos(), whole);
}

TEST_F(PanelPresenterTest, ASecondWishToOpenLeavesItWhereItIs) {
    const QPoint before = openAt(QRect(100, 1, 22, 22)).pos();
    presenter.open({});
    EXPECT_EQ(panel()->pos(), before);
    EXPECT_TRUE(panel()->isVisible());
}

// The build stops at an overflow: hosts may say whatever they like.
TEST_F(PanelPresenterTest, OpensOnTheScreenWhateverTheHostSaysAboutThePlace) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    for (const int x : {kLeast, -1, 0, kMost})
        for (const int y : {kLeast, -1, 0, kMost}) {
            EXPECT_TRUE(screen.contains(openAt(QRect(QPoint(x, y), QPoint(x, y))).geometry())) << x << "," << y;
            close();
        }
    EXPECT_TRUE(screen.contains(openAt(QRect()).geometry())) << "no place at all";
    close();
}

}  // namespace
}  // namespace ravlin
