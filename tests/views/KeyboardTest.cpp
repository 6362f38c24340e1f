#include "tests/views/PanelFixture.h"

#include <gmock/gmock.h>

namespace ravlin {

static std::ostream& operator<<(std::ostream& out, const TextTransform& transform) {
    return out << transform.id();
}

namespace {

const int kCount = static_cast<int>(TextTransform::allCases().size());
const std::string kLast(TextTransform::allCases().back().id());

class KeyboardTest : public tests::PanelFixture {
protected:
    void SetUp() override { open(); }

    std::string highlighted() const {
        const auto transform = list().highlighted();
        return transform ? std::string(transform->id()) : "(none)";
    }
    std::string focusName() const { return panel->focusWidget()->objectName().toStdString(); }

    /// Whether the highlighted row is completely in view and not under the pinned header.
    bool highlightIsInFullView() const {
        const TransformRow& highlightedRow = row(*list().highlighted());
        const auto& pinned = find<SectionHeader>("pinnedHeader");
        const QRect visible = inView(highlightedRow);
        return visible.size() == highlightedRow.size() &&
               !(pinned.isVisible() && pinned.geometry().intersects(visible));
    }
};

TEST_F(KeyboardTest, TypingSearchesWhereverTheFocusIs) {
    const struct {
        const char* place;
        std::function<void()> go;
    } vectors[] = {
        {"the search field", [] {}},
        {"a row", [this] { press(Qt::Key_Down, 3); }},
        {"the footer", [this] { quitButton().setFocus(); }},
        {"the clear button", [this] { clearButton().setFocus(); }},
    };
    for (const auto& [place, go] : vectors) {
        search().setText(QStringLiteral("js"));
        search().setFocus();
        go();
        type("on");
        EXPECT_EQ(panel->query(), QStringLiteral("json")) << place;
        EXPECT_TRUE(search().hasFocus()) << place;
    }
}

TEST_F(KeyboardTest, BackspaceAndPasteGoToTheSearchFieldToo) {
    type("jsonx");
    press(Qt::Key_Tab, 3);
    press(Qt::Key_Backspace);
    EXPECT_EQ(panel->query(), QStringLiteral("json"));
    press(Qt::Key_Down);
    pasteboard.copyTextElsewhere(" pretty");
    press(Qt::Key_V, 1, Qt::ControlModifier);
    EXPECT_EQ(panel->query(), QStringLiteral("json pretty"));
}

TEST_F(KeyboardTest, ModifiersAndOtherChordsStayWhereTheyAre) {
    press(Qt::Key_Down);
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_F5}) press(key);
    press(Qt::Key_G, 1, Qt::ControlModifier);
    press(Qt::Key_G, 1, Qt::AltModifier);
    EXPECT_EQ(highlighted(), "stripTracking");
    EXPECT_EQ(panel->query(), QString());
}

TEST_F(KeyboardTest, DownEntersTheListAtItsFirstRowAndGoesOn) {
    EXPECT_EQ(highlighted(), "(none)");
    press(Qt::Key_Down);
    EXPECT_EQ(highlighted(), "stripTracking");
    press(Qt::Key_Down);
    EXPECT_EQ(highlighted(), "stripFormatting");
    press(Qt::Key_Down, 3);
    EXPECT_EQ(highlighted(), "htmlToMarkdown") << "over the section's end";
}

TEST_F(KeyboardTest, UpGoesBackAndFromTheFirstRowToTheSearchField) {
    press(Qt::Key_Down, 2);
    press(Qt::Key_Up);
    EXPECT_EQ(highlighted(), "stripTracking");
    press(Qt::Key_Up);
    EXPECT_EQ(highlighted(), "(none)");
    EXPECT_TRUE(search().hasFocus());
    press(Qt::Key_Up);
    EXPECT_TRUE(search().hasFocus());
}

TEST_F(KeyboardTest, DownStopsAtTheLastRow) {
    press(Qt::Key_Down, kCount + 6);
    EXPECT_EQ(highlighted(), kLast);
}

TEST_F(KeyboardTest, HomeAndEndLeadToTheFirstAndTheLastRowOnceARowIsHighlighted) {
    press(Qt::Key_Down);
    press(Qt::Key_End);
    EXPECT_EQ(highlighted(), kLast);
    press(Qt::Key_Home);
    EXPECT_EQ(highlighted(), "stripTracking");
}

TEST_F(KeyboardTest, HomeAndEndMoveTheCursorWhileTheFieldHasTheFocus) {
    type("json");
    press(Qt::Key_Home);
    EXPECT_EQ(search().cursorPosition(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(search().cursorPosition(), 4);
    EXPECT_EQ(highlighted(), "(none)");
}

TEST_F(KeyboardTest, PagesMoveByWhatFitsIntoTheView) {
    press(Qt::Key_Down);
    press(Qt::Key_PageDown);
    const auto first = *list().highlighted();
    EXPECT_GE(first, TextTransform::htmlToMarkdown);
    press(Qt::Key_PageDown);
    EXPECT_GT(*list().highlighted(), first);
    press(Qt::Key_PageUp);
    EXPECT_EQ(*list().highlighted(), first);
    press(Qt::Key_PageUp);
    EXPECT_EQ(highlighted(), "stripTracking");
    press(Qt::Key_PageDown, 20);
    EXPECT_EQ(highlighted(), kLast);
}

TEST_F(KeyboardTest, PageDownAlsoEntersTheList) {
    press(Qt::Key_PageDown);
    EXPECT_NE(highlighted(), "(none)");
    EXPECT_NE(highlighted(), "stripTracking");
}

TEST_F(KeyboardTest, TheHighlightedRowIsAlwaysInFullView) {
    for (int i = 0; i < kCount; ++i) {
        press(Qt::Key_Down);
        EXPECT_TRUE(highlightIsInFullView()) << "down to " << highlighted();
    }
    for (int i = 1; i < kCount; ++i) {
        press(Qt::Key_Up);
        EXPECT_TRUE(highlightIsInFullView()) << "up to " << highlighted();
    }
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_End, Qt::Key_Home}) {
        press(key);
        EXPECT_TRUE(highlightIsInFullView()) << highlighted();
    }
}

TEST_F(KeyboardTest, TheFirstRowBringsTheListBackToItsTop) {
    press(Qt::Key_Down);
    press(Qt::Key_End);
    press(Qt::Key_Home);
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
}

TEST_F(KeyboardTest, ReturnRunsTheFirstMatch) {
    pasteboard.copyTextElsewhere("{}");
    type("json");
    press(Qt::Key_Return);
    EXPECT_THAT(statusText(), testing::StartsWith("JSON Pretty — ready"));
    press(Qt::Key_Enter);
    EXPECT_THAT(statusText(), testing::StartsWith("JSON Pretty — ready"));
}

TEST_F(KeyboardTest, ReturnRunsTheHighlightedRow) {
    pasteboard.copyTextElsewhere("{}");
    type("json");
    press(Qt::Key_Down, 2);
    press(Qt::Key_Return);
    EXPECT_THAT(statusText(), testing::StartsWith("JSON Minify — ready"));
    EXPECT_EQ(highlighted(), "jsonMinify") << "so that it can be run again";
}

TEST_F(KeyboardTest, SpaceRunsTheHighlightedRow) {
    pasteboard.copyTextElsewhere("hello");
    press(Qt::Key_Down, 2);
    press(Qt::Key_Space);
    EXPECT_THAT(statusText(), testing::StartsWith("Strip formatting — ready"));
    EXPECT_EQ(panel->query(), QString());
}

TEST_F(KeyboardTest, ReturnWithoutAMatchRunsNothing) {
    type("xyz");
    press(Qt::Key_Return);
    EXPECT_EQ(statusText(), "");
    EXPECT_THAT(pasteboard.calls(), testing::IsEmpty());
}

TEST_F(KeyboardTest, HoldingReturnRunsOnce) {
    pasteboard.copyTextElsewhere("hello");
    type("upper");
    press(Qt::Key_Return);
    EXPECT_THAT(statusText(), testing::StartsWith("UPPERCASE — ready"));
    const auto calls = pasteboard.calls().size();
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), /*autorep=*/true);
    QApplication::sendEvent(&search(), &repeated);
    EXPECT_EQ(pasteboard.calls().size(), calls);
}

TEST_F(KeyboardTest, EscapeClearsTheSearchFirstAndThenCloses) {
    type("json");
    press(Qt::Key_Escape);
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->query(), QString());
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(KeyboardTest, EscapeClearsAQueryOfBlanksToo) {
    type("  ");
    press(Qt::Key_Escape);
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->query(), QString());
}

TEST_F(KeyboardTest, EscapeWorksFromARowAndFromTheFooter) {
    type("json");
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    EXPECT_EQ(panel->query(), QString());
    EXPECT_TRUE(search().hasFocus());
    quitButton().setFocus();
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(KeyboardTest, TabLeadsThroughTheListToTheFooterAndBackToTheSearch) {
    const char* const stops[] = {"row.stripTracking", "checkForUpdatesButton", "quitButton", "searchField"};
    for (const char* const stop : stops) {
        press(Qt::Key_Tab);
        EXPECT_EQ(focusName(), stop);
    }
    for (const char* const stop : {"quitButton", "checkForUpdatesButton", "row.stripTracking", "searchField"}) {
        QTest::keyClick(panel->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(focusName(), stop);
    }
}

TEST_F(KeyboardTest, TabSkipsWhatCannotBeUsed) {
    type("xyz");
    tests::FakeUpdater::canCheck = false;
    Q_EMIT updater.canCheckForUpdatesChanged();
    for (const char* const stop : {"clearButton", "quitButton", "searchField"}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(focusName(), stop);
    }
}

TEST_F(KeyboardTest, TabReturnsToTheRowThatItLeft) {
    press(Qt::Key_Down, 15);
    const std::string left = highlighted();
    press(Qt::Key_Tab, 3);
    EXPECT_EQ(highlighted(), "(none)");
    press(Qt::Key_Tab);
    EXPECT_EQ(highlighted(), left);
}

TEST_F(KeyboardTest, TabEntersAScrolledListAtARowInView) {
    scrollTo(500);
    press(Qt::Key_Tab);
    EXPECT_EQ(list().verticalScrollBar()->value(), 500);
    EXPECT_TRUE(highlightIsInFullView());
}

TEST_F(KeyboardTest, ReturnAndSpacePressTheButtonThatHasTheFocus) {
    QSignalSpy quit(panel.get(), &MenuView::quitRequested);
    quitButton().setFocus();
    press(Qt::Key_Return);
    press(Qt::Key_Space);
    EXPECT_EQ(quit.count(), 2);
    checkForUpdatesButton().setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(tests::FakeUpdater::checkCount, 1);
    type("json");
    clearButton().setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(panel->query(), QString());
    EXPECT_TRUE(search().hasFocus());
}

TEST_F(KeyboardTest, DownFromTheFooterEntersTheListAndUpLeadsToTheSearch) {
    quitButton().setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(highlighted(), "stripTracking");
    quitButton().setFocus();
    press(Qt::Key_Up);
    EXPECT_TRUE(search().hasFocus());
}

TEST_F(KeyboardTest, TheFocusIsAlwaysSeen) {
    type("e");
    for (const char* const name : {"clearButton", "row.stripTracking", "checkForUpdatesButton", "quitButton"}) {
        auto& widget = find<QWidget>(name);
        search().setFocus();
        const QImage before = widget.grab().toImage();
        while (focusName() != name) press(Qt::Key_Tab);
        EXPECT_NE(widget.grab().toImage(), before) << name;
    }
}

TEST_F(KeyboardTest, AHighlightThatIsFilteredAwayGivesTheFocusBack) {
    press(Qt::Key_Down);
    search().setText(QStringLiteral("json"));
    EXPECT_NE(highlighted(), "stripTracking");
    EXPECT_TRUE(panel->focusWidget()->isVisible());
}

}  // namespace
}  // namespace ravlin
