#include "Views/PanelColors.h"
#include "tests/views/Palettes.h"

#include <QApplication>

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

constexpr qreal kTextContrast = 4.5;
constexpr qreal kSignContrast = 3;

struct Theme {
    const char* name;
    QPalette palette;
};

QPalette themed(QRgb window, QRgb text, QRgb highlight, QRgb link) {
    QPalette palette{QColor(window)};
    palette.setColor(QPalette::WindowText, QColor(text));
    palette.setColor(QPalette::Highlight, QColor(highlight));
    palette.setColor(QPalette::Link, QColor(link));
    return palette;
}

// What desktops ship, and palettes whose accents are too pale or too dark to be read.
const std::vector<Theme>& themes() {
    static const std::vector<Theme> all = {
        {"light", tests::lightPalette()},
        {"dark", tests::darkPalette()},
        {"the style's own", QApplication::palette()},
        {"black on white", themed(0xffffff, 0x000000, 0x000000, 0x0000ff)},
        {"white on black", themed(0x000000, 0xffffff, 0xffffff, 0x00ffff)},
        {"yellow selection on white", themed(0xffffff, 0x202020, 0xffff00, 0xffee88)},
        {"navy selection on black", themed(0x101010, 0xf0f0f0, 0x000080, 0x202060)},
        {"grey selection on grey", themed(0xd4d0c8, 0x000000, 0xb0b0b0, 0xb8b8b8)},
        {"green", themed(0x30b050, 0x000000, 0x20a040, 0x30c060)},
        {"sepia", themed(0xf4ecd8, 0x3b2f1c, 0xd9a441, 0x8a5a00)},
    };
    return all;
}

TEST(Contrast, IsThatOfTheAccessibilityGuidelines) {
    const struct {
        QRgb one, other;
        qreal expected;
    } vectors[] = {
        {0x000000, 0xffffff, 21.0}, {0xffffff, 0xffffff, 1.0},   {0x777777, 0xffffff, 4.48},
        {0x767676, 0xffffff, 4.54}, {0xff0000, 0xffffff, 3.998}, {0x0000ff, 0xffffff, 8.59},
    };
    for (const auto& [one, other, expected] : vectors) {
        EXPECT_NEAR(contrast(QColor(one), QColor(other)), expected, 0.01);
        EXPECT_NEAR(contrast(QColor(other), QColor(one)), expected, 0.01);
    }
}

TEST(PanelColors, EveryTextIsLegibleOnEveryGroundThatItStandsOn) {
    for (const auto& [name, palette] : themes()) {
        const PanelColors colors(palette);
        for (const QColor& ground : {colors.window, colors.field, colors.hover, colors.pressed, colors.highlight}) {
            EXPECT_GE(contrast(colors.text, ground), kTextContrast)
                << name << " text on " << ground.name().toStdString();
            EXPECT_GE(contrast(colors.secondary, ground), kTextContrast)
                << name << " secondary on " << ground.name().toStdString();
        }
        EXPECT_GE(contrast(colors.accent, colors.bar), kTextContrast) << name << " section header";
        EXPECT_GE(contrast(colors.success, colors.window), kTextContrast) << name << " status";
    }
}

TEST(PanelColors, EverySignIsRecognisableOnEveryGroundThatItStandsOn) {
    for (const auto& [name, palette] : themes()) {
        const PanelColors colors(palette);
        for (const QColor& ground : {colors.window, colors.field, colors.hover, colors.pressed, colors.highlight})
            EXPECT_GE(contrast(colors.tertiary, ground), kSignContrast) << name;
        EXPECT_GE(contrast(colors.accent, colors.window), kSignContrast) << name;
        EXPECT_GE(contrast(colors.focusRing, colors.highlight), kSignContrast) << name;
        EXPECT_GE(contrast(colors.focusRing, colors.window), kSignContrast) << name;
    }
}

TEST(PanelColors, SecondaryAndTertiaryStepBackFromTheText) {
    for (const Theme& theme : {themes()[0], themes()[1]}) {
        const PanelColors colors(theme.palette);
        EXPECT_LT(contrast(colors.secondary, colors.window), contrast(colors.text, colors.window)) << theme.name;
        EXPECT_LT(contrast(colors.tertiary, colors.window), contrast(colors.secondary, colors.window)) << theme.name;
    }
}

/// Whether two grounds can be told apart by lightness or colour.
bool differ(const QColor& one, const QColor& other) {
    return contrast(one, other) > 1.1 || std::abs(one.hsvSaturationF() - other.hsvSaturationF()) > 0.08F;
}

TEST(PanelColors, RowStatesDifferFromEachOtherAndFromThePanel) {
    for (const Theme& theme : {themes()[0], themes()[1]}) {
        const PanelColors colors(theme.palette);
        const std::vector<QColor> grounds = {colors.window, colors.hover, colors.pressed, colors.highlight};
        for (std::size_t i = 0; i < grounds.size(); ++i)
            for (std::size_t k = i + 1; k < grounds.size(); ++k)
                EXPECT_TRUE(differ(grounds[i], grounds[k])) << theme.name << ' ' << i << ' ' << k;
    }
}

TEST(PanelColors, SuccessIsGreen) {
    for (const auto& [name, palette] : {themes()[0], themes()[1], themes()[2]}) {
        const QColor success = PanelColors(palette).success;
        EXPECT_GT(success.green(), success.red() + 40) << name;
        EXPECT_GT(success.green(), success.blue() + 40) << name;
    }
}

TEST(PanelColors, TheAccentIsTheDesktopsOwnWhereThatIsLegible) {
    EXPECT_EQ(PanelColors(themed(0xffffff, 0x000000, 0x0044aa, 0x0000ff)).accent, QColor(0x0044aa));
    EXPECT_EQ(PanelColors(themed(0x202020, 0xffffff, 0x66bbff, 0x00ffff)).accent, QColor(0x66bbff));
}

TEST(PanelColors, APaleSelectionColourGivesWayToTheLinkColour) {
    EXPECT_EQ(PanelColors(themed(0xffffff, 0x000000, 0xeeeeaa, 0x0044aa)).accent, QColor(0x0044aa));
}

TEST(PanelColors, TheFieldsGroundIsATenthOfTheSecondaryColour) {
    const PanelColors colors(themed(0xffffff, 0x000000, 0x0044aa, 0x0000ff));
    const int expected = qRound(255 - (255 - colors.secondary.red()) * 0.1);
    EXPECT_NEAR(colors.field.red(), expected, 2);
}

}  // namespace
}  // namespace ravlin
