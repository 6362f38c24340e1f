#include "Views/SearchLine.h"

#include "Engine/PasteboardService.h"
#include "Views/QtText.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QRegularExpression>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>

namespace ravlin {
namespace {

/// As much of `text` as a field of at most `maxLength` UTF-16 units can take, on one line.
QString asOneLine(std::string_view text, int maxLength) {
    constexpr std::size_t kMaxBytesPerUnit = 3;
    text = text.substr(0, static_cast<std::size_t>(maxLength) * kMaxBytesPerUnit);
    const QRegularExpression lineBreak(QStringLiteral("\r\n|[\n\v\f\r\u0085\u2028\u2029]"));
    return toQString(text).replace(lineBreak, QStringLiteral(" "));
}

struct EditingKey {
    QKeySequence::StandardKey key;
    void (*act)(SearchLine& line);
};

// Every key for which the base class would use Qt's clipboard: it also puts text that a key deletes on the clipboard,
// over what the user copied, and text that a key selects or restores into the primary selection.
constexpr EditingKey kEditingKeys[] = {
    {QKeySequence::Copy, [](SearchLine& line) { line.copySelection(); }},
    {QKeySequence::Cut, [](SearchLine& line) { line.cutSelection(); }},
    {QKeySequence::Paste, [](SearchLine& line) { line.pasteText(); }},
    {QKeySequence::DeleteEndOfLine, [](SearchLine& line) { line.deleteToEnd(); }},
    {QKeySequence::DeleteCompleteLine, [](SearchLine& line) { line.deleteAll(); }},
    {QKeySequence::Undo, [](SearchLine& line) { line.undo(); }},
    {QKeySequence::Redo, [](SearchLine& line) { line.redo(); }},
    {QKeySequence::SelectAll, [](SearchLine& line) { line.selectAll(); }},
    {QKeySequence::SelectNextChar, [](SearchLine& line) { line.cursorForward(/*mark=*/true); }},
    {QKeySequence::SelectPreviousChar, [](SearchLine& line) { line.cursorBackward(/*mark=*/true); }},
    {QKeySequence::SelectNextWord, [](SearchLine& line) { line.cursorWordForward(/*mark=*/true); }},
    {QKeySequence::SelectPreviousWord, [](SearchLine& line) { line.cursorWordBackward(/*mark=*/true); }},
    {QKeySequence::SelectStartOfLine, [](SearchLine& line) { line.home(/*mark=*/true); }},
    {QKeySequence::SelectStartOfBlock, [](SearchLine& line) { line.home(/*mark=*/true); }},
    {QKeySequence::SelectEndOfLine, [](SearchLine& line) { line.end(/*mark=*/true); }},
    {QKeySequence::SelectEndOfBlock, [](SearchLine& line) { line.end(/*mark=*/true); }},
};

QString withShortcut(const QString& text, QKeySequence::StandardKey key) {
    return text + QLatin1Char('\t') + QKeySequence(key).toString(QKeySequence::NativeText);
}

}  // namespace

SearchLine::SearchLine(QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    setAcceptDrops(false);
    setDragEnabled(false);
}

void SearchLine::copySelection() const {
    if (hasSelectedText()) PasteboardService::setText(selectedText().toStdString());
}

void SearchLine::cutSelection() {
    if (!hasSelectedText()) return;
    copySelection();
    del();
}

void SearchLine::pasteText() {
    if (const std::optional<std::string> text = PasteboardService::plainText()) insert(asOneLine(*text, maxLength()));
}

std::unique_ptr<QMenu> SearchLine::makeContextMenu() {
    auto menu = std::make_unique<QMenu>(this);
    const auto add = [&](const QString& text, QKeySequence::StandardKey key, auto slot, bool enabled) {
        QAction* const action = menu->addAction(withShortcut(text, key), this, slot);
        action->setObjectName(text);
        action->setEnabled(enabled);
    };
    add(QStringLiteral("Cut"), QKeySequence::Cut, &SearchLine::cutSelection, hasSelectedText());
    add(QStringLiteral("Copy"), QKeySequence::Copy, &SearchLine::copySelection, hasSelectedText());
    add(QStringLiteral("Paste"), QKeySequence::Paste, &SearchLine::pasteText, true);
    menu->addSeparator();
    add(QStringLiteral("Select All"), QKeySequence::SelectAll, &SearchLine::selectAll, !text().isEmpty());
    return menu;
}

void SearchLine::keyPressEvent(QKeyEvent* event) {
    const auto* const found =
        std::ranges::find_if(kEditingKeys, [event](const EditingKey& each) { return event->matches(each.key); });
    if (found == std::end(kEditingKeys)) return QLineEdit::keyPressEvent(event);
    found->act(*this);
}

void SearchLine::deleteToEnd() {
    const int length = static_cast<int>(text().size());
    if (cursorPosition() == length) return;
    setSelection(cursorPosition(), length - cursorPosition());
    del();
}

void SearchLine::deleteAll() {
    selectAll();
    del();
}

// The base class does nothing here but exchange text with the primary selection through Qt's clipboard.
void SearchLine::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

void SearchLine::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* const menu = makeContextMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

}  // namespace ravlin
