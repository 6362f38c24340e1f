#include "Views/SearchLine.h"

#include "Engine/PasteboardService.h"
#include "Views/TextStyle.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QRegularExpression>

#include <cstddef>
#include <optional>
#include <string>

namespace ravlin {
namespace {

/// What a field of at most `maxLength` UTF-16 units can take of `text`, on one line.
QString asOneLine(std::string_view text, int maxLength) {
    constexpr std::size_t kMaxBytesPerUnit = 3;
    text = text.substr(0, static_cast<std::size_t>(maxLength) * kMaxBytesPerUnit);
    const QRegularExpression lineBreak(QStringLiteral("\r\n|[\n\v\f\r\u0085\u2028\u2029]"));
    return toQString(text).replace(lineBreak, QStringLiteral(" "));
}

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
    if (!handleEditingKey(*event)) QLineEdit::keyPressEvent(event);
}

// Every key for which the base class would reach for Qt's clipboard. It does so for the two keys that delete, too, and
// would overwrite what the user copied.
bool SearchLine::handleEditingKey(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Copy)) {
        copySelection();
    } else if (event.matches(QKeySequence::Cut)) {
        cutSelection();
    } else if (event.matches(QKeySequence::Paste)) {
        pasteText();
    } else if (event.matches(QKeySequence::DeleteEndOfLine)) {
        deleteToEnd();
    } else if (event.matches(QKeySequence::DeleteCompleteLine)) {
        selectAll();
        del();
    } else {
        return false;
    }
    return true;
}

void SearchLine::deleteToEnd() {
    const int length = static_cast<int>(text().size());
    if (cursorPosition() == length) return;
    setSelection(cursorPosition(), length - cursorPosition());
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
