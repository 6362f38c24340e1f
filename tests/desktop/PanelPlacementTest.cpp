#include "Platform/Desktop/PanelPlacement.h"

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using PanelPlacement::Screen;

constexpr QSize kPanel(340, 500);

/// As the tests' library can print it.
std::pair<int, int> coordinates(QPoint point) {
    return {point.x(), point.y()};
}

struct Case {
    const char* name;
    QSize panel;
    QRect anchor;
    std::vector<Screen> screens;
    std::pair<int, int> expected;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.name;
}

/// One screen of 1280x800 at the origin, less the bars that have reserved their edges.
std::vector<Screen> oneScreen(const QMargins& bars = {}) {
    const QRect geometry(0, 0, 1280, 800);
    return {{geometry, geometry - bars}};
}

/// A wide screen with its bar at the bottom, and a second one left of it, higher up, without any bar.
std::vector<Screen> twoScreens() {
    return {{QRect(0, 0, 1920, 1080), QRect(0, 0, 1920, 1040)},
            {QRect(-1280, -200, 1280, 800), QRect(-1280, -200, 1280, 800)}};
}

const Case kCases[] = {
    {"UnderAnIconInTheTopBar", kPanel, QRect(800, 1, 22, 22), oneScreen({0, 24, 0, 0}), {640, 24}},
    {"UnderAPointInTheTopBar", kPanel, QRect(800, 12, 1, 1), oneScreen({0, 24, 0, 0}), {630, 24}},
    {"KeptOnScreenRightOfTheTopBar", kPanel, QRect(1257, 1, 22, 22), oneScreen({0, 24, 0, 0}), {940, 24}},
    {"KeptOnScreenLeftOfTheTopBar", kPanel, QRect(1, 1, 22, 22), oneScreen({0, 24, 0, 0}), {0, 24}},
    {"AboveAnIconInTheBottomBar", kPanel, QRect(800, 777, 22, 22), oneScreen({0, 0, 0, 24}), {640, 276}},
    {"AboveAPointInTheBottomBar", kPanel, QRect(1270, 790, 1, 1), oneScreen({0, 0, 0, 24}), {940, 276}},
    {"RightOfAnIconInTheLeftBar", kPanel, QRect(1, 600, 22, 22), oneScreen({24, 0, 0, 0}), {24, 300}},
    {"LeftOfAnIconInTheRightBar", kPanel, QRect(1257, 100, 22, 22), oneScreen({0, 0, 24, 0}), {916, 0}},
    {"CornerBelongsToTheHorizontalBar", kPanel, QRect(1257, 1, 22, 22), oneScreen({24, 24, 24, 24}), {916, 24}},
    {"UnderAnIconInABarThatReservesNothing", kPanel, QRect(800, 1, 22, 22), oneScreen(), {640, 23}},
    {"AboveAnIconInABarThatReservesNothing", kPanel, QRect(800, 770, 22, 22), oneScreen(), {640, 270}},
    {"RightOfAnIconInASideBarThatReservesNothing", kPanel, QRect(4, 400, 22, 22), oneScreen(), {26, 160}},
    {"LeftOfAnIconInASideBarThatReservesNothing", kPanel, QRect(1250, 400, 22, 22), oneScreen(), {910, 160}},
    {"UnderThePointerWhereThereIsRoom", kPanel, QRect(600, 200, 1, 1), oneScreen(), {430, 201}},
    {"AboveThePointerWhereThereIsNoneBelow", kPanel, QRect(600, 600, 1, 1), oneScreen(), {430, 100}},
    {"OnScreenWhereThereIsRoomNeitherAboveNorBelow", kPanel, QRect(600, 400, 1, 1), oneScreen(), {430, 0}},
    {"OnTheScreenWithNegativeCoordinates", kPanel, QRect(-100, -195, 22, 22), twoScreens(), {-340, -173}},
    {"AtTheBottomBarOfTheMainScreen", kPanel, QRect(1800, 1050, 22, 22), twoScreens(), {1580, 540}},
    {"NotAcrossTwoScreens", kPanel, QRect(10, 1050, 22, 22), twoScreens(), {0, 540}},
    {"OnTheNearestScreenWhenTheAnchorIsOnNone", kPanel, QRect(-700, 2000, 1, 1), twoScreens(), {-870, 100}},
    {"TopLeftCornerKeptWhenLargerThanTheScreen", {2000, 900}, QRect(800, 1, 22, 22), oneScreen({0, 24, 0, 0}), {0, 24}},
    {"UnderTheAnchorWithoutAnyScreen", kPanel, QRect(800, 1, 22, 22), {}, {640, 23}},
};

class PanelPosition : public testing::TestWithParam<Case> {};

TEST_P(PanelPosition, IsAsListed) {
    const Case& each = GetParam();
    EXPECT_EQ(coordinates(PanelPlacement::position(each.panel, each.anchor, each.screens)), each.expected);
}

INSTANTIATE_TEST_SUITE_P(PanelPlacement, PanelPosition, testing::ValuesIn(kCases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(PanelPosition, LiesInTheAvailableAreaWhereverTheIconIs) {
    const std::vector<Screen> screens = oneScreen({30, 24, 50, 40});
    const QRect available = screens.front().available;
    for (int x = -50; x < 1330; x += 7)
        for (int y = -50; y < 850; y += 7) {
            const QPoint at = PanelPlacement::position(kPanel, QRect(x, y, 22, 22), screens);
            ASSERT_TRUE(available.contains(QRect(at, kPanel))) << "icon at " << x << "," << y;
        }
}

TEST(DevicePixels, AreDividedByTheRatioOfTheScreenThatHoldsThePoint) {
    const std::vector<Screen> screens = {{QRect(0, 0, 1280, 720), QRect(0, 0, 1280, 720), 2.0},
                                         {QRect(2560, 0, 1280, 1024), QRect(2560, 0, 1280, 1024), 1.0}};
    EXPECT_EQ(coordinates(PanelPlacement::fromDevicePixels({2400, 10}, screens)), std::pair(1200, 5));
    EXPECT_EQ(coordinates(PanelPlacement::fromDevicePixels({2570, 10}, screens)), std::pair(2570, 10));
    EXPECT_EQ(coordinates(PanelPlacement::fromDevicePixels({5000, 10}, screens)), std::pair(5000, 10));
}

}  // namespace
}  // namespace ravlin
