#include "Engine/Support/Characters/Unicode.h"
#include "Views/GroupedTransforms.h"
#include "Views/MenuView.h"
#include "Views/Metrics.h"
#include "tests/views/PanelFixture.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QToolTip>

#include <gmock/gmock.h>

namespace ravlin {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class MenuViewTest : public tests::PanelFixture {
protected:
    SymbolView& statusSymbol() const { return *status().parentWidget()->findChild<SymbolView*>(); }
    void expectStatus(const std::string& text, Symbol symbol, QColor PanelColors::*color) {
        EXPECT_EQ(statusText(), text);
        EXPECT_EQ(panel->feedback(), text);
        EXPECT_EQ(panel->feedbackOK(), symbol == Symbol::checkCircle);
        EXPECT_EQ(statusSymbol().look().symbol, symbol);
        EXPECT_EQ(statusSymbol().look().color, color);
        const QColor expected = PanelColors(panel->palette()).*color;
        const QImage image = statusSymbol().grab().toImage();
        bool isDrawnInColor = false;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) isDrawnInColor |= image.pixelColor(x, y) == expected;
        EXPECT_TRUE(isDrawnInColor);
    }
};

// --- The panel's parts -------------------------------------------------------------------------------------------

TEST_F(MenuViewTest, IsAFramelessToolWindowThatStaysOnTop) {
    EXPECT_EQ(panel->windowType(), Qt::Tool);
    EXPECT_TRUE(panel->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(panel->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(panel->windowTitle(), QStringLiteral("Ravlin"));
}

TEST_F(MenuViewTest, ShowsItsTextsExactly) {
    EXPECT_EQ(find<QLabel>("titleLabel").text().toStdString(), "Ravlin");
    EXPECT_EQ(find<QLabel>("hintLabel").text().toStdString(),
              "Copy text, pick a transform — it's ready to paste with ⌘V.");
    EXPECT_EQ(search().placeholderText().toStdString(), "Search transforms…");
    EXPECT_EQ(checkForUpdatesButton().text().toStdString(), "Check for Updates…");
    EXPECT_EQ(quitButton().text().toStdString(), "Quit");
}

TEST_F(MenuViewTest, BeginsWithoutAQueryAndWithoutAStatus) {
    open();
    EXPECT_EQ(panel->query(), QString());
    EXPECT_EQ(panel->feedback(), std::nullopt);
    EXPECT_TRUE(panel->feedbackOK());
    EXPECT_FALSE(status().isVisible());
    EXPECT_FALSE(clearButton().isVisible());
}

TEST_F(MenuViewTest, IsPutTogetherByTheDocumentedSizes) {
    open();
    EXPECT_EQ(panel->width(), 340);
    const auto top = [&](const char* name) { return find<QWidget>(name).mapTo(panel.get(), QPoint()).y(); };
    const auto bottom = [&](const char* name) { return top(name) + find<QWidget>(name).height(); };
    const QWidget& field = *search().parentWidget();
    EXPECT_EQ(find<QWidget>("titleLabel").parentWidget()->mapTo(panel.get(), QPoint()), QPoint(12, 12));
    EXPECT_EQ(find<QWidget>("hintLabel").mapTo(panel.get(), QPoint()).x(), 12);
    EXPECT_EQ(field.geometry().left(), 12);
    EXPECT_EQ(field.width(), 316);
    EXPECT_EQ(field.geometry().top() - bottom("hintLabel"), 10);
    EXPECT_EQ(search().geometry().top(), 6);
    EXPECT_EQ(field.height() - search().geometry().bottom() - 1, 6);
    EXPECT_EQ(top("transformList") - (field.geometry().bottom() + 1), 10 + 1 + 10) << "a divider between two gaps";
    EXPECT_EQ(list().height(), 380);
    EXPECT_EQ(top("quitButton") - bottom("transformList"), 10 + 1 + 10);
    EXPECT_EQ(panel->height() - bottom("quitButton"), 12);
    EXPECT_EQ(quitButton().mapTo(panel.get(), QPoint(quitButton().width(), 0)).x(), 340 - 12);
}

// --- Search ------------------------------------------------------------------------------------------------------

TEST_F(MenuViewTest, AnEmptyQueryListsEverythingInCatalogueOrder) {
    open();
    std::vector<std::string> expected;
    for (const TransformGroup& group : groupedTransforms("")) {
        expected.push_back(Unicode::upperCased(group.category.title()));
        for (const TextTransform transform : group.items) expected.emplace_back(transform.title());
    }
    EXPECT_EQ(expected.size(), TextTransform::allCases().size() + TransformCategory::allCases().size());
    EXPECT_EQ(listed(), expected);
}

TEST_F(MenuViewTest, SectionHeadersAreInCapitals) {
    open();
    EXPECT_THAT(listed(), testing::IsSupersetOf({"CLEAN", "CONVERT", "CASE", "LINES", "SPACING", "ENCODE / DEV"}));
}

TEST_F(MenuViewTest, TypingFiltersTheList) {
    open();
    type("json");
    EXPECT_THAT(listed(), ElementsAre("CONVERT", "JSON Pretty", "JSON Minify"));
    type("  m");
    EXPECT_THAT(listed(), ElementsAre());
}

TEST_F(MenuViewTest, BlanksAndLetterCaseAroundAQueryDoNotCount) {
    open();
    type("  JSON ");
    EXPECT_THAT(listed(), ElementsAre("CONVERT", "JSON Pretty", "JSON Minify"));
    EXPECT_EQ(panel->query(), QStringLiteral("  JSON "));
}

TEST_F(MenuViewTest, AQueryOfBlanksListsEverythingButCanBeCleared) {
    open();
    type("   ");
    EXPECT_EQ(listed().size(), TextTransform::allCases().size() + TransformCategory::allCases().size());
    EXPECT_TRUE(clearButton().isVisible());
    click(&clearButton());
    EXPECT_EQ(panel->query(), QString());
    EXPECT_FALSE(clearButton().isVisible());
}

TEST_F(MenuViewTest, AQueryThatMatchesOnlySubtitlesListsThemUnderTheirCategories) {
    open();
    type("percent");
    EXPECT_THAT(listed(), ElementsAre("ENCODE / DEV", "URL encode", "URL decode"));
}

TEST_F(MenuViewTest, AQueryWithoutAMatchIsQuotedExactlyAsTyped) {
    open();
    const QLabel& text = find<QLabel>("emptyText");
    EXPECT_FALSE(text.isVisible());
    const struct {
        const char* query;
        const char* expected;
    } vectors[] = {
        {"xyz", "No transforms match “xyz”."},         {"  XyZ ", "No transforms match “  XyZ ”."},
        {"a  b\tc", "No transforms match “a  b\tc”."}, {"%1 <b>&amp;", "No transforms match “%1 <b>&amp;”."},
        {"”.", "No transforms match “”.”."},
    };
    for (const auto& [query, expected] : vectors) {
        search().setText(QString::fromUtf8(query));
        EXPECT_TRUE(text.isVisible());
        EXPECT_EQ(text.text().toStdString(), expected);
        EXPECT_EQ(text.textFormat(), Qt::PlainText);
        EXPECT_THAT(listed(), ElementsAre());
    }
    EXPECT_EQ(text.y(), 8);
    EXPECT_EQ(list().height(), 8 + text.height() + 8 + 4);
}

TEST_F(MenuViewTest, TheListAndThePanelShrinkToTheirContent) {
    open();
    const int fullHeight = panel->height();
    EXPECT_EQ(list().height(), 380);
    EXPECT_TRUE(list().verticalScrollBar()->isVisible());
    type("json");
    const ListGeometry expected(groupedTransforms("json"), SectionHeader::heightFor(panel->font()),
                                [&](TextTransform each) { return TransformRow::heightFor(each, 316, panel->font()); });
    EXPECT_EQ(list().height(), expected.height());
    EXPECT_FALSE(list().verticalScrollBar()->isVisible());
    EXPECT_EQ(panel->height(), fullHeight - 380 + list().height());
    search().clear();
    EXPECT_EQ(panel->height(), fullHeight);
}

TEST_F(MenuViewTest, TellsWhenItsHeightChanges) {
    QSignalSpy resized(panel.get(), &MenuView::resized);
    panel->adjustSize();
    EXPECT_EQ(resized.count(), 0) << "while it is hidden, nobody needs to know";
    open();
    resized.clear();
    type("json");
    EXPECT_GE(resized.count(), 1);
    resized.clear();
    panel->apply(TextTransform::upperCase);
    EXPECT_EQ(resized.count(), 1);
    panel->apply(TextTransform::lowerCase);
    EXPECT_EQ(resized.count(), 1) << "the second status takes the first one's place";
}

TEST_F(MenuViewTest, ANewListStartsAtItsTop) {
    open();
    scrollTo(700);
    type("line");
    EXPECT_TRUE(list().verticalScrollBar()->isVisible());
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
}

// --- Rows --------------------------------------------------------------------------------------------------------

TEST_F(MenuViewTest, OnlyRowsInViewAreMade) {
    if (QAccessible::isActive()) GTEST_SKIP() << "assistive technology has to find every row, so all are made";
    open();
    EXPECT_GT(list().madeRowCount(), 4U);
    EXPECT_LE(list().madeRowCount(), 11U);
    EXPECT_FALSE(has(TextTransform::rot13));
    const std::size_t before = list().madeRowCount();
    scrollTo(60);
    EXPECT_LE(list().madeRowCount(), before + 2);
    scrollTo(list().verticalScrollBar()->maximum());
    EXPECT_TRUE(has(TextTransform::rot13));
    EXPECT_LT(list().madeRowCount(), TextTransform::allCases().size());
}

TEST_F(MenuViewTest, ARowIsMadeOnce) {
    open();
    const TransformRow* const before = &row(TextTransform::jsonPretty);
    type("json");
    search().clear();
    EXPECT_EQ(&row(TextTransform::jsonPretty), before);
}

TEST_F(MenuViewTest, RowsHaveTheDocumentedSizes) {
    open();
    const TransformRow& first = row(TextTransform::stripTracking);
    EXPECT_EQ(first.width(), 316);
    EXPECT_EQ(first.height(), 5 + first.titleBlock().height() + 1 + first.subtitleBlock().height() + 5);
    EXPECT_EQ(row(TextTransform::stripFormatting).y(), first.geometry().bottom() + 1 + 6);
}

TEST_F(MenuViewTest, ClickingARowRunsItsTransform) {
    open();
    pasteboard.copyTextElsewhere("hello");
    click(&row(TextTransform::stripFormatting));
    EXPECT_THAT(pasteboard.calls(),
                Contains("replaceIfUnchanged(" + TextTransform(TextTransform::stripFormatting).apply("hello") + ")"));
    EXPECT_THAT(statusText(), testing::StartsWith("Strip formatting — ready"));
}

TEST_F(MenuViewTest, TheWholeRowIsClickable) {
    open();
    const QWidget& target = row(TextTransform::stripFormatting);
    const QPoint corners[] = {{0, 0},
                              {target.width() - 1, 0},
                              {target.width() / 2, target.height() / 2},
                              {target.width() - 1, target.height() - 1}};
    for (const QPoint& point : corners) {
        const auto before = pasteboard.calls().size();
        QTest::mouseClick(&row(TextTransform::stripFormatting), Qt::LeftButton, {}, point);
        EXPECT_GT(pasteboard.calls().size(), before);
    }
}

TEST_F(MenuViewTest, ClickingLeavesTheFocusInTheSearchField) {
    open();
    click(&row(TextTransform::stripFormatting));
    EXPECT_TRUE(search().hasFocus());
    EXPECT_EQ(list().highlighted(), std::nullopt);
}

TEST_F(MenuViewTest, RowsLookDifferentUnderTheMouseAndWhilePressed) {
    open();
    TransformRow& target = row(TextTransform::stripFormatting);
    const auto ground = [&] { return target.grab().toImage().pixelColor(target.width() / 2, 3); };
    const PanelColors colors(panel->palette());
    EXPECT_EQ(ground(), colors.window);
    QTest::mouseMove(&target);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ground() == colors.hover; }));
    QTest::mousePress(&target, Qt::LeftButton);
    EXPECT_EQ(ground(), colors.pressed);
    QTest::mouseRelease(&target, Qt::LeftButton);
    EXPECT_EQ(ground(), colors.hover);
    press(Qt::Key_Down, 2);
    EXPECT_EQ(ground(), colors.highlight);
}

TEST_F(MenuViewTest, ASubtitleThatHasNoRoomIsElidedInOneLine) {
    QFont font = QApplication::font();
    font.setPointSizeF(16);
    QApplication::setFont(font);
    open();
    EXPECT_TRUE(row(TextTransform::stripTracking).subtitleBlock().isElided());
    EXPECT_EQ(row(TextTransform::stripTracking).subtitleBlock().lineCount(), 1);
}

TEST_F(MenuViewTest, PointingAtAnElidedSubtitleShowsItWhole) {
    const auto toolTipOver = [](QWidget& widget) {
        QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), widget.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&widget, &event);
        return QToolTip::text().toStdString();
    };
    open();
    EXPECT_FALSE(row(TextTransform::stripTracking).subtitleBlock().isElided());
    EXPECT_EQ(toolTipOver(row(TextTransform::stripTracking)), "");
    QFont font = QApplication::font();
    font.setPointSizeF(16);
    QApplication::setFont(font);
    type("escape &");
    ASSERT_TRUE(QTest::qWaitFor([&] { return row(TextTransform::htmlEntitiesEncode).subtitleBlock().isElided(); }));
    EXPECT_EQ(toolTipOver(row(TextTransform::htmlEntitiesEncode)),
              "<qt>Escape &amp; &lt; &gt; &quot; ' to HTML entities</qt>");
    QToolTip::hideText();
}

TEST_F(MenuViewTest, StaysLeftToRightOnARightToLeftDesktop) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    MenuView mirrored(updater);
    mirrored.show();
    EXPECT_EQ(mirrored.layoutDirection(), Qt::LeftToRight);
    const auto* const quit = mirrored.findChild<QPushButton*>(QStringLiteral("quitButton"));
    EXPECT_EQ(quit->mapTo(&mirrored, QPoint(quit->width(), 0)).x(), 340 - 12);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

// --- Pinned section headers --------------------------------------------------------------------------------------

TEST_F(MenuViewTest, TheHeaderOfTheSectionInViewStaysAtTheTop) {
    open();
    const auto& pinned = find<SectionHeader>("pinnedHeader");
    const int caseTop = topInList(find<QWidget>("section.Case"));
    const struct {
        int scroll;
        const char* text;
        int offset;
    } vectors[] = {
        {0, "CLEAN", 0},
        {100, "CLEAN", 0},
        {caseTop, "CASE", 0},
        {caseTop + 77, "CASE", 0},
        {caseTop - Metrics::kListSpacing - 5, "CONVERT", 5 - pinned.height()},
    };
    for (const auto& [scroll, text, offset] : vectors) {
        scrollTo(scroll);
        EXPECT_TRUE(pinned.isVisible()) << scroll;
        EXPECT_EQ(pinned.text().toStdString(), text) << scroll;
        EXPECT_EQ(pinned.y(), offset) << scroll;
    }
    scrollTo(caseTop - 3);
    EXPECT_FALSE(pinned.isVisible()) << "between two sections";
}

TEST_F(MenuViewTest, ThePinnedHeaderHidesTheRowsUnderIt) {
    open();
    scrollTo(60);
    const auto& pinned = find<SectionHeader>("pinnedHeader");
    const QImage view = list().viewport()->grab().toImage();
    const QColor bar = PanelColors(panel->palette()).bar;
    for (int x = pinned.width() / 2; x < pinned.width(); ++x)
        for (int y = 0; y < pinned.height(); ++y) ASSERT_EQ(view.pixelColor(x, y), bar) << x << ", " << y;
}

// --- Running a transform -----------------------------------------------------------------------------------------

TEST_F(MenuViewTest, SuccessIsToldInGreen) {
    open();
    pasteboard.copyTextElsewhere("hello");
    panel->apply(TextTransform::stripFormatting);
    expectStatus("Strip formatting — ready, paste with ⌘V  (5→5 chars)", Symbol::checkCircle, &PanelColors::success);
}

TEST_F(MenuViewTest, AnEmptyClipboardIsToldInTheSecondaryColour) {
    open();
    panel->apply(TextTransform::upperCase);
    expectStatus("Clipboard is empty — copy some text first", Symbol::infoCircle, &PanelColors::secondary);
}

TEST_F(MenuViewTest, AClipboardWithoutTextIsToldInTheSecondaryColour) {
    open();
    pasteboard.copyElsewhere({});
    panel->apply(TextTransform::upperCase);
    expectStatus("No text in the clipboard — copy some text first", Symbol::infoCircle, &PanelColors::secondary);
}

TEST_F(MenuViewTest, AClipboardThatChangedMeanwhileIsToldInTheSecondaryColour) {
    open();
    pasteboard.copyTextElsewhere("hello");
    pasteboard.before("changeCount", 2, [this] { pasteboard.copyTextElsewhere("other"); });
    panel->apply(TextTransform::upperCase);
    expectStatus("Clipboard changed mid-transform — copy again and retry", Symbol::infoCircle, &PanelColors::secondary);
}

TEST_F(MenuViewTest, ASecondRunTransformsTheFirstOnesResultAndReplacesItsStatus) {
    open();
    pasteboard.copyTextElsewhere("hi");
    panel->apply(TextTransform::base64Encode);
    panel->apply(TextTransform::hexEncode);
    const std::string once = TextTransform(TextTransform::base64Encode).apply("hi");
    const std::string twice = TextTransform(TextTransform::hexEncode).apply(once);
    EXPECT_EQ(pasteboard.string(), twice);
    EXPECT_EQ(statusText(), "Hex encode — ready, paste with ⌘V  (" + std::to_string(once.size()) + "→" +
                                std::to_string(twice.size()) + " chars)");
}

TEST_F(MenuViewTest, AFailureAfterASuccessReplacesItAndTheOtherWayRound) {
    open();
    pasteboard.copyTextElsewhere("hello");
    panel->apply(TextTransform::stripFormatting);
    pasteboard.clearElsewhere();
    panel->apply(TextTransform::stripFormatting);
    expectStatus("Clipboard is empty — copy some text first", Symbol::infoCircle, &PanelColors::secondary);
    pasteboard.copyTextElsewhere("hello");
    panel->apply(TextTransform::stripFormatting);
    expectStatus("Strip formatting — ready, paste with ⌘V  (5→5 chars)", Symbol::checkCircle, &PanelColors::success);
}

TEST_F(MenuViewTest, ARunLeavesThePanelOpenAndTheQueryAsItIs) {
    open();
    type("form");
    pasteboard.copyTextElsewhere("hello");
    click(&row(TextTransform::stripFormatting));
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->query(), QStringLiteral("form"));
}

TEST_F(MenuViewTest, EveryRowStillRunsAfterAFailure) {
    open();
    panel->apply(TextTransform::upperCase);
    for (const auto* const each : list().widget()->findChildren<TransformRow*>()) EXPECT_TRUE(each->isEnabled());
    pasteboard.copyTextElsewhere("hello");
    click(&row(TextTransform::stripFormatting));
    EXPECT_THAT(statusText(), testing::StartsWith("Strip formatting"));
}

TEST_F(MenuViewTest, ALongStatusTakesTwoLinesAndNoMore) {
    open();
    pasteboard.copyTextElsewhere(std::string(100'000, 'x'));
    panel->apply(TextTransform::normalizeDashes);
    EXPECT_EQ(status().block().lineCount(), 2);

    QFont font = QApplication::font();
    font.setPointSizeF(18);
    QApplication::setFont(font);
    QApplication::processEvents();
    EXPECT_EQ(status().block().lineCount(), 2);
    EXPECT_TRUE(status().block().isElided());
    EXPECT_EQ(status().height(), status().block().height());
}

// --- Footer ------------------------------------------------------------------------------------------------------

TEST_F(MenuViewTest, CheckForUpdatesStartsACheck) {
    open();
    click(&checkForUpdatesButton());
    EXPECT_EQ(tests::FakeUpdater::checkCount, 1);
}

TEST_F(MenuViewTest, CheckForUpdatesIsGreyWhileNoCheckCanStart) {
    tests::FakeUpdater::canCheck = false;
    open();
    EXPECT_FALSE(checkForUpdatesButton().isEnabled());
    click(&checkForUpdatesButton());
    EXPECT_EQ(tests::FakeUpdater::checkCount, 0);
}

TEST_F(MenuViewTest, WhetherACheckCanStartIsReadAgainWheneverThePanelIsDrawnAnew) {
    open();
    const struct {
        const char* occasion;
        std::function<void()> redraw;
    } vectors[] = {
        {"typing", [this] { type("t"); }},
        {"a run", [this] { panel->apply(TextTransform::upperCase); }},
        {"the updater's signal", [this] { Q_EMIT updater.canCheckForUpdatesChanged(); }},
        {"showing",
         [this] {
             panel->hide();
             panel->show();
         }},
    };
    for (const auto& [occasion, redraw] : vectors) {
        tests::FakeUpdater::canCheck = !tests::FakeUpdater::canCheck;
        redraw();
        EXPECT_EQ(checkForUpdatesButton().isEnabled(), tests::FakeUpdater::canCheck) << occasion;
    }
}

TEST_F(MenuViewTest, QuitIsPassedOn) {
    open();
    QSignalSpy quit(panel.get(), &MenuView::quitRequested);
    click(&quitButton());
    EXPECT_EQ(quit.count(), 1);
}

// --- Showing and hiding ------------------------------------------------------------------------------------------

TEST_F(MenuViewTest, EveryShowingPutsTheFocusIntoTheSearchField) {
    open();
    EXPECT_TRUE(search().hasFocus());
    press(Qt::Key_Down, 2);
    EXPECT_FALSE(search().hasFocus());
    close();
    open();
    EXPECT_TRUE(search().hasFocus());
}

TEST_F(MenuViewTest, QueryAndStatusAreKeptWhileThePanelIsHidden) {
    open();
    type("form");
    panel->apply(TextTransform::upperCase);
    close();
    open();
    EXPECT_EQ(panel->query(), QStringLiteral("form"));
    EXPECT_EQ(statusText(), "Clipboard is empty — copy some text first");
    EXPECT_TRUE(has(TextTransform::stripFormatting));
    EXPECT_FALSE(has(TextTransform::stripTracking));
}

TEST_F(MenuViewTest, ThePlaceInTheListIsKeptWhileThePanelIsHidden) {
    open();
    scrollTo(700);
    close();
    open();
    EXPECT_EQ(list().verticalScrollBar()->value(), 700);
}

TEST_F(MenuViewTest, AKeptQueryIsSelectedSoThatTypingReplacesIt) {
    open();
    type("form");
    close();
    open();
    type("json");
    EXPECT_EQ(panel->query(), QStringLiteral("json"));
}

TEST_F(MenuViewTest, HidesItselfWhenAnotherWindowTakesTheFocus) {
    open();
    QSignalSpy dismissed(panel.get(), &MenuView::dismissedByFocusLoss);
    goElsewhere();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(dismissed.count(), 1);
}

TEST_F(MenuViewTest, HidingItOtherwiseIsNoDismissal) {
    open();
    QSignalSpy dismissed(panel.get(), &MenuView::dismissedByFocusLoss);
    close();
    open();
    press(Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(dismissed.count(), 0);
}

TEST_F(MenuViewTest, TheSearchFieldsMenuDoesNotDismissIt) {
    open();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), search().mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&search(), &event);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QApplication::processEvents();
    EXPECT_TRUE(panel->isVisible());
    QApplication::activePopupWidget()->close();
    QApplication::processEvents();
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(MenuViewTest, OpeningThePanelDoesNotTouchTheClipboard) {
    pasteboard.copyTextElsewhere("hello");
    open();
    type("json");
    press(Qt::Key_Down);
    close();
    open();
    EXPECT_THAT(pasteboard.calls(), testing::IsEmpty());
}

// --- The desktop's looks -----------------------------------------------------------------------------------------

TEST_F(MenuViewTest, FollowsThePaletteAtRunTime) {
    QApplication::setPalette(tests::lightPalette());
    open();
    for (const QPalette& palette : {tests::darkPalette(), tests::lightPalette()}) {
        QApplication::setPalette(palette);
        QApplication::processEvents();
        const PanelColors colors(palette);
        const QImage image = panel->grab().toImage();
        EXPECT_EQ(image.pixelColor(5, 5), colors.window);
        EXPECT_EQ(image.pixelColor(0, 50), colors.border);
        EXPECT_EQ(find<QWidget>("section.Clean").grab().toImage().pixelColor(200, 5), colors.bar);
        const QWidget& field = *search().parentWidget();
        EXPECT_EQ(image.pixelColor(field.geometry().center()), colors.field);
        EXPECT_EQ(search().palette().color(QPalette::Text), colors.text);
        EXPECT_EQ(search().palette().color(QPalette::PlaceholderText), colors.secondary);
    }
}

TEST_F(MenuViewTest, FollowsTheFontAtRunTime) {
    open();
    type("json");
    const int rowHeight = row(TextTransform::jsonPretty).height();
    const int panelHeight = panel->height();
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    QApplication::setFont(font);
    EXPECT_TRUE(QTest::qWaitFor([&] { return row(TextTransform::jsonPretty).height() > rowHeight; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return panel->height() > panelHeight + 20; }));
    EXPECT_EQ(panel->width(), 340);
}

}  // namespace
}  // namespace ravlin
