#include "Views/SearchLine.h"
#include "tests/support/FakePasteboard.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SearchLineTest : public testing::Test {
protected:
    void SetUp() override {
        line.show();
        line.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&line));
        line.setFocus();
    }

    void TearDown() override {
        EXPECT_FALSE(QGuiApplication::clipboard()->ownsClipboard());
        EXPECT_FALSE(QGuiApplication::clipboard()->ownsSelection());
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) { QTest::keyClick(&line, key, modifiers); }
    void setText(const char* text) { line.setText(QString::fromUtf8(text)); }
    std::string text() const { return line.text().toStdString(); }
    std::string clipboard() { return pasteboard.string().value_or("(nothing)"); }

    QAction* menuItem(QMenu& menu, const char* name) {
        auto* const action = menu.findChild<QAction*>(QString::fromUtf8(name));
        EXPECT_NE(action, nullptr) << name;
        return action;
    }

    tests::FakePasteboard pasteboard;
    SearchLine line;
};

struct Chord {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};
constexpr Chord kCopyKeys[] = {{Qt::Key_C, Qt::ControlModifier}, {Qt::Key_Insert, Qt::ControlModifier}};
constexpr Chord kCutKeys[] = {{Qt::Key_X, Qt::ControlModifier}, {Qt::Key_Delete, Qt::ShiftModifier}};
constexpr Chord kPasteKeys[] = {{Qt::Key_V, Qt::ControlModifier}, {Qt::Key_Insert, Qt::ShiftModifier}};

TEST_F(SearchLineTest, CopyKeysPutTheSelectionOnThePasteboard) {
    for (const auto& [key, modifiers] : kCopyKeys) {
        pasteboard.copyTextElsewhere("other");
        setText("json pretty");
        line.setSelection(5, 6);
        press(key, modifiers);
        EXPECT_EQ(clipboard(), "pretty");
        EXPECT_EQ(text(), "json pretty");
    }
}

TEST_F(SearchLineTest, CutKeysAlsoDeleteTheSelection) {
    for (const auto& [key, modifiers] : kCutKeys) {
        pasteboard.copyTextElsewhere("other");
        setText("json pretty");
        line.setSelection(4, 7);
        press(key, modifiers);
        EXPECT_EQ(clipboard(), " pretty");
        EXPECT_EQ(text(), "json");
    }
}

TEST_F(SearchLineTest, PasteKeysReplaceTheSelectionByThePasteboardsText) {
    for (const auto& [key, modifiers] : kPasteKeys) {
        pasteboard.copyTextElsewhere("é→");
        setText("json pretty");
        line.setSelection(0, 4);
        press(key, modifiers);
        EXPECT_EQ(text(), "é→ pretty");
    }
}

TEST_F(SearchLineTest, WithoutASelectionCopyAndCutLeaveThePasteboardAlone) {
    pasteboard.copyTextElsewhere("other");
    setText("json");
    for (const auto& [key, modifiers] : kCopyKeys) press(key, modifiers);
    line.setCursorPosition(4);
    for (const auto& [key, modifiers] : kCutKeys) press(key, modifiers);
    EXPECT_EQ(text(), "json");
    EXPECT_THAT(pasteboard.calls(), IsEmpty());
    EXPECT_EQ(clipboard(), "other");
}

TEST_F(SearchLineTest, DeletingTheLineOrItsRestLeavesThePasteboardAlone) {
    const struct {
        QKeySequence::StandardKey key;
        const char* left;
    } vectors[] = {{QKeySequence::DeleteEndOfLine, "json"}, {QKeySequence::DeleteCompleteLine, ""}};
    for (const auto& [key, left] : vectors) {
        for (const QKeySequence& chord : QKeySequence::keyBindings(key)) {
            setText("json pretty");
            line.setCursorPosition(4);
            press(chord[0].key(), chord[0].keyboardModifiers());
            EXPECT_EQ(text(), left) << chord.toString().toStdString();
        }
    }
    EXPECT_THAT(pasteboard.calls(), IsEmpty());
}

TEST_F(SearchLineTest, PastedLineBreaksBecomeSpaces) {
    const struct {
        const char* pasted;
        const char* expected;
    } vectors[] = {
        {"one\ntwo", "one two"},
        {"one\r\ntwo", "one two"},
        {"one\rtwo", "one two"},
        {"json\n", "json "},
        {"one\n\ntwo", "one  two"},
        {"one\u2028two\u2029three", "one two three"},
        {"one\u0085two", "one two"},
        {"one\v\ftwo", "one  two"},
        {"one\ttwo", "one\ttwo"},
        {"  blanks  ", "  blanks  "},
        {"", ""},
    };
    for (const auto& [pasted, expected] : vectors) {
        setText("");
        pasteboard.copyTextElsewhere(pasted);
        line.pasteText();
        EXPECT_EQ(text(), expected);
    }
}

TEST_F(SearchLineTest, PastingNothingChangesNothing) {
    setText("json");
    line.selectAll();
    line.pasteText();
    EXPECT_EQ(text(), "json");
}

TEST_F(SearchLineTest, AHugePasteIsCutToWhatTheFieldHolds) {
    std::string huge;
    for (int i = 0; i < 40'000; ++i) huge += "→";
    pasteboard.copyTextElsewhere(huge);
    line.pasteText();
    EXPECT_EQ(line.text(), QString(line.maxLength(), QChar(0x2192)));
}

TEST_F(SearchLineTest, ThePasteboardIsOnlyReadWhenSomethingIsPasted) {
    pasteboard.copyTextElsewhere("other");
    setText("json");
    QTest::keyClicks(&line, QStringLiteral("abc"));
    line.selectAll();
    const auto menu = line.makeContextMenu();
    menu->popup(QPoint());
    menu->close();
    EXPECT_THAT(pasteboard.calls(), IsEmpty());
}

TEST_F(SearchLineTest, TheContextMenuGoesThroughThePasteboardToo) {
    setText("json");
    line.selectAll();
    auto menu = line.makeContextMenu();
    menuItem(*menu, "Copy")->trigger();
    EXPECT_EQ(clipboard(), "json");
    menuItem(*menu, "Cut")->trigger();
    EXPECT_EQ(text(), "");
    menuItem(*menu, "Paste")->trigger();
    EXPECT_EQ(text(), "json");
    menuItem(*menu, "Select All")->trigger();
    EXPECT_EQ(line.selectedText().toStdString(), "json");
}

TEST_F(SearchLineTest, TheContextMenuOffersOnlyWhatIsPossible) {
    auto menu = line.makeContextMenu();
    EXPECT_FALSE(menuItem(*menu, "Copy")->isEnabled());
    EXPECT_FALSE(menuItem(*menu, "Cut")->isEnabled());
    EXPECT_FALSE(menuItem(*menu, "Select All")->isEnabled());
    EXPECT_TRUE(menuItem(*menu, "Paste")->isEnabled());
    setText("json");
    line.selectAll();
    menu = line.makeContextMenu();
    for (const char* const name : {"Copy", "Cut", "Paste", "Select All"})
        EXPECT_TRUE(menuItem(*menu, name)->isEnabled()) << name;
}

TEST_F(SearchLineTest, ARightClickOpensThatMenu) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), line.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&line, &event);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_NE(menu->findChild<QAction*>(QStringLiteral("Paste")), nullptr);
    menu->close();
}

// The tear-down checks this: other applications keep their primary selection.
TEST_F(SearchLineTest, SelectingAndMiddleClickingLeaveThePrimarySelectionAlone) {
    setText("json pretty");
    QTest::mouseDClick(&line, Qt::LeftButton, {}, QPoint(8, line.height() / 2));
    EXPECT_EQ(line.selectedText().toStdString(), "json");
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::mouseClick(&line, Qt::MiddleButton, {}, QPoint(8, line.height() / 2));
    EXPECT_EQ(text(), "json pretty");
    EXPECT_THAT(pasteboard.calls(), IsEmpty());
}

TEST_F(SearchLineTest, KeysThatSelectLeaveThePrimarySelectionAlone) {
    const struct {
        QKeySequence::StandardKey key;
        const char* selected;
    } vectors[] = {
        {QKeySequence::SelectAll, "json pretty"},    {QKeySequence::SelectNextChar, "p"},
        {QKeySequence::SelectPreviousChar, " "},     {QKeySequence::SelectNextWord, "pretty"},
        {QKeySequence::SelectPreviousWord, "json "}, {QKeySequence::SelectStartOfLine, "json "},
        {QKeySequence::SelectEndOfLine, "pretty"},
    };
    for (const auto& [key, selected] : vectors) {
        for (const QKeySequence& chord : QKeySequence::keyBindings(key)) {
            setText("json pretty");
            line.setCursorPosition(5);
            press(chord[0].key(), chord[0].keyboardModifiers());
            EXPECT_EQ(line.selectedText().toStdString(), selected) << chord.toString().toStdString();
            EXPECT_FALSE(QGuiApplication::clipboard()->ownsSelection()) << chord.toString().toStdString();
        }
    }
}

TEST_F(SearchLineTest, NothingCanBeDroppedOntoTheField) {
    EXPECT_FALSE(line.acceptDrops());
    EXPECT_FALSE(line.dragEnabled());
}

TEST_F(SearchLineTest, TypingIsUndoneAndRedone) {
    QTest::keyClicks(&line, QStringLiteral("abc"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), "");
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(text(), "abc");
}

}  // namespace
}  // namespace ravlin
