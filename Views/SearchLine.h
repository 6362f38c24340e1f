#pragma once

#include <QLineEdit>

#include <memory>

class QMenu;

namespace ravlin {

/// The one-line text field of the panel's search. It copies, cuts and pastes through the general pasteboard, because
/// Qt's own clipboard can block for many seconds on an application that does not answer. For the same reason it takes
/// no drops and leaves the primary selection alone.
class SearchLine final : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchLine(QWidget* parent = nullptr);

    /// Puts the selected text on the clipboard; without a selection, nothing happens.
    void copySelection() const;
    void cutSelection();

    /// Replaces the selection with the clipboard's text. Line breaks become spaces, as there is only one line.
    void pasteText();

    /// Deletes the text after the cursor, or everything, without putting it on the clipboard.
    void deleteToEnd();
    void deleteAll();

    /// The field's menu. It looks at the clipboard only when "Paste" is chosen.
    std::unique_ptr<QMenu> makeContextMenu();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
};

}  // namespace ravlin
