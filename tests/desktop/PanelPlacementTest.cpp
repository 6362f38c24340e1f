#include "Platform/Desktop/PanelPlacement.h"

#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using PanelPlacement::Screen;

constexpr QSize kPanel(340, 500);
constexpr QSize kTall(340, 606);  // with the whole list and a status of two lines
constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();

/// In a form that the test library can print.
std::pair<int, int> coordinates(QPoint point) {
    return {point.x(), point.y()};
}

struct Case {
    const char* name;
    QSize panel;
    QRect anchor;
    std::vector<Screen> screens;
    std::pair<int, int> expected;
    int room;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.name;
}

/// One 1280x800 screen at the origin, minus the bars that have reserved its edges.
std::vector<Screen> oneScreen(const QMargins& bars = {}) {
    const QRect geometry(0, 0, 1280, 800);
    return {{geometry, geometry - bars}};
}

std::vector<Screen> smallScreen(int width, int height, const QMargins& bars = {}) {
    const QRect geometry(0, 0, width, height);
    return {{geometry, geometry - bars}};
}

/// A wide screen with its bar at the bottom, and a second one to its left, higher up, without any bar.
std::vector<Screen> twoScreens() {
    return {{QRect(0, 0, 1920, 1080), QRect(0, 0, 1920, 1040)},
            {QRect(-1280, -200, 1280, 800), QRect(-1280, -200, 1280, 800)}};
}

const Case kCases[] = {
    {"UnderAnIconInTheTopBar", kPanel, QRect(800, 1, 22, 22), oneScreen({0, 24, 0, 0}), {640, 24}, 776},
    {"UnderAPointInTheTopBar", kPanel, QRect(800, 12, 1, 1), oneScreen({0, 24, 0, 0}), {630, 24}, 776},
    {"KeptOnScreenRightOfTheTopBar", kPanel, QRect(1257, 1, 22, 22), oneScreen({0, 24, 0, 0}), {940, 24}, 776},
    {"KeptOnScreenLeftOfTheTopBar", kPanel, QRect(1, 1, 22, 22), oneScreen({0, 24, 0, 0}), {0, 24}, 776},
    {"AboveAnIconInTheBottomBar", kPanel, QRect(800, 777, 22, 22), oneScreen({0, 0, 0, 24}), {640, 276}, 500},
    {"AboveAPointInTheBottomBar", kPanel, QRect(1270, 790, 1, 1), oneScreen({0, 0, 0, 24}), {940, 276}, 500},
    {"RightOfAnIconInTheLeftBar", kPanel, QRect(1, 600, 22, 22), oneScreen({24, 0, 0, 0}), {24, 300}, 500},
    {"LeftOfAnIconInTheRightBar", kPanel, QRect(1257, 100, 22, 22), oneScreen({0, 0, 24, 0}), {916, 0}, 800},
    {"CornerBelongsToTheHorizontalBar", kPanel, QRect(1257, 1, 22, 22), oneScreen({24, 24, 24, 24}), {916, 24}, 752},
    {"UnderAnIconInABarThatReservesNothing", kPanel, QRect(800, 1, 22, 22), oneScreen(), {640, 23}, 777},
    {"AboveAnIconInABarThatReservesNothing", kPanel, QRect(800, 770, 22, 22), oneScreen(), {640, 270}, 500},
    {"RightOfAnIconInASideBarThatReservesNothing", kPanel, QRect(4, 400, 22, 22), oneScreen(), {26, 160}, 640},
    {"LeftOfAnIconInASideBarThatReservesNothing", kPanel, QRect(1250, 400, 22, 22), oneScreen(), {910, 160}, 640},
    {"UnderThePointerWhereThereIsRoom", kPanel, QRect(600, 200, 1, 1), oneScreen(), {430, 201}, 599},
    {"AboveThePointerWhereThereIsNoneBelow", kPanel, QRect(600, 600, 1, 1), oneScreen(), {430, 100}, 500},
    {"RightOfThePointerWhereThereIsRoomNeitherAboveNorBelow",
     kPanel,
     QRect(600, 400, 1, 1),
     oneScreen(),
     {601, 150},
     650},
    {"LeftOfThePointerWhereThereIsRoomNowhereElse", kPanel, QRect(1100, 400, 1, 1), oneScreen(), {760, 150}, 650},
    {"OverThePointerWhereThereIsNoRoomAround", kPanel, QRect(300, 240, 1, 1), smallScreen(600, 480), {130, 0}, 480},
    {"OnTheScreenWithNegativeCoordinates", kPanel, QRect(-100, -195, 22, 22), twoScreens(), {-340, -173}, 773},
    {"AtTheBottomBarOfTheMainScreen", kPanel, QRect(1800, 1050, 22, 22), twoScreens(), {1580, 540}, 500},
    {"NotAcrossTwoScreens", kPanel, QRect(10, 1050, 22, 22), twoScreens(), {0, 540}, 500},
    {"OnTheNearestScreenWhenTheAnchorIsOnNone", kPanel, QRect(-700, 2000, 1, 1), twoScreens(), {-870, 100}, 500},
    {"TopLeftCornerKeptWhenLargerThanTheScreen",
     {2000, 900},
     QRect(800, 1, 22, 22),
     oneScreen({0, 24, 0, 0}),
     {0, 24},
     776},
    {"LowerThanItWouldLikeUnderATopBar",
     kTall,
     QRect(900, 1, 22, 22),
     smallScreen(960, 540, {0, 24, 0, 0}),
     {620, 24},
     516},
    {"LowerThanItWouldLikeAboveABottomBar",
     kTall,
     QRect(900, 517, 22, 22),
     smallScreen(960, 540, {0, 0, 0, 24}),
     {620, 0},
     516},
    {"LowerThanItWouldLikeUnderABarThatReservesNothing",
     kTall,
     QRect(700, 1, 22, 22),
     smallScreen(800, 480),
     {460, 23},
     457},
    {"LowerThanItWouldLikeAboveABarThatReservesNothing",
     kTall,
     QRect(700, 457, 22, 22),
     smallScreen(800, 480),
     {460, 0},
     457},
    {"LowerThanItWouldLikeBesideALeftBar",
     kTall,
     QRect(1, 400, 22, 22),
     smallScreen(1093, 500, {24, 0, 0, 0}),
     {24, 0},
     500},
    {"FarBeyondEveryScreenAboveAndLeft", kPanel, QRect(QPoint(kLeast, kLeast), QSize(1, 1)), oneScreen(), {0, 0}, 800},
    {"FarBeyondEveryScreenBelowAndRight",
     kPanel,
     QRect(QPoint(kMost, kMost), QPoint(kMost, kMost)),
     oneScreen(),
     {940, 300},
     500},
    {"UnderTheAnchorWithoutAnyScreen", kPanel, QRect(800, 1, 22, 22), {}, {640, 23}, 500},
};

class PanelPosition : public testing::TestWithParam<Case> {};

TEST_P(PanelPosition, IsAsListed) {
    const Case& each = GetParam();
    const PanelPlacement::Place place = PanelPlacement::place(each.panel, each.anchor, each.screens);
    EXPECT_EQ(coordinates(place.topLeft), each.expected);
    EXPECT_EQ(place.room, each.room);
}

INSTANTIATE_TEST_SUITE_P(PanelPlacement, PanelPosition, testing::ValuesIn(kCases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(PanelPosition, KeepsAPixelAwayFromEdgesThatWereRounded) {
    const QRect geometry(0, 0, 1024, 640);
    const std::vector<Screen> screens = {{geometry, geometry, 1.25}};
    const PanelPlacement::Place above = PanelPlacement::place(kPanel, QRect(900, 622, 22, 18), screens);
    EXPECT_EQ(above.topLeft.y() + above.room, 621);
    const PanelPlacement::Place below = PanelPlacement::place(kPanel, QRect(1000, 1, 22, 18), screens);
    EXPECT_EQ(coordinates(below.topLeft), std::pair(1023 - kPanel.width(), 20));
    EXPECT_EQ(below.room, 639 - 20);
}

class PanelOnScreen : public testing::TestWithParam<QSize> {};

TEST_P(PanelOnScreen, LiesInTheAvailableAreaAndCoversNoIconWhereverThatIs) {
    const QRect geometry(QPoint(), GetParam());
    for (const QMargins& bars : {QMargins(30, 24, 50, 40), QMargins()}) {
        const std::vector<Screen> screens = {{geometry, geometry - bars}};
        const QRect available = screens.front().available;
        for (int x = -50; x < geometry.right() + 50; x += 7)
            for (int y = -50; y < geometry.bottom() + 50; y += 7) {
                const QRect icon(x, y, 22, 22);
                const PanelPlacement::Place place = PanelPlacement::place(kTall, icon, screens);
                const QRect panel(place.topLeft, QSize(kTall.width(), place.room));
                ASSERT_TRUE(available.contains(panel)) << "icon at " << x << "," << y;
                ASSERT_FALSE(panel.intersects(icon)) << "icon at " << x << "," << y;
                ASSERT_GE(place.room, 340) << "icon at " << x << "," << y;
            }
    }
}

INSTANTIATE_TEST_SUITE_P(PanelPlacement, PanelOnScreen,
                         testing::Values(QSize(1280, 800), QSize(960, 540), QSize(1093, 614), QSize(800, 480)),
                         [](const auto& each) { return "Of" + std::to_string(each.param.width()); });

TEST(DevicePixels, AreDividedByTheRatioOfTheScreenThatHoldsThePoint) {
    const std::vector<Screen> screens = {{QRect(0, 0, 1280, 720), QRect(0, 0, 1280, 720), 2.0},
                                         {QRect(2560, 0, 1280, 1024), QRect(2560, 0, 1280, 1024), 1.0}};
    EXPECT_EQ(coordinates(PanelPlacement::fromDevicePixels({2400, 10}, screens)), std::pair(1200, 5));
    EXPECT_EQ(coordinates(PanelPlacement::fromDevicePixels({2570, 10}, screens)), std::pair(2570, 10));
    EXPECT_EQ(coordinates(PanelPlacement::fromDevicePixels({5000, 10}, screens)), std::pair(5000, 10));
    EXPECT_EQ(coordinates(PanelPlacement::fromDevicePixels({kLeast, kMost}, screens)), std::pair(-32768, 32768));
}

}  // namespace
}  // namespace ravlin
