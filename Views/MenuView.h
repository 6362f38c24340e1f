#pragma once

#include "Engine/TextTransform.h"

#include <QWidget>

#include <optional>
#include <string>

namespace ravlin {

class Announcer;
class Footer;
class SearchField;
class StatusLine;
class TransformList;
class UpdaterController;

/// The panel: header, hint, search field, grouped list of transforms, status line and footer. It is a frameless
/// top-level window that hides itself on Esc and when it loses the keyboard focus; where it appears is the
/// application's business. The search and the last run's status are kept while it is hidden.
///
/// Keys, wherever the focus is: typing searches; Up, Down, Page Up and Page Down choose a row, Home and End too once
/// one is chosen; Return runs the marked row, which is the chosen one or else the first match of a search; Esc empties
/// the search, and then closes; Tab moves on through the list to the footer.
class MenuView final : public QWidget {
    Q_OBJECT

public:
    /// `updater` must outlive the panel.
    explicit MenuView(UpdaterController& updater, QWidget* parent = nullptr);

    /// Runs `transform` on the clipboard and shows the outcome in the status line.
    void apply(TextTransform transform);

    /// The search text exactly as typed.
    QString query() const;

    /// The status text of the last run, or nothing before the first one.
    const std::optional<std::string>& feedback() const { return feedback_; }

    /// Whether the last run succeeded; true before the first one.
    bool feedbackOK() const { return feedbackOK_; }

    /// The panel's height with the whole list and the current status: its place is chosen for that, so that it does not
    /// depend on an earlier search.
    int fullHeight() const;

    /// Limits the panel, which is about to be shown, to `height`. What does not fit is taken from the list.
    void setRoom(int height);

    void setVisible(bool visible) override;

Q_SIGNALS:
    /// "Quit" was pressed.
    void quitRequested();

    /// The panel hid itself because another window took the focus.
    void dismissedByFocusLoss();

    /// The panel's height changed with its content while it was shown.
    void resized();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QWidget* header();
    QWidget* hint();
    SearchField* searchField();
    Footer* footer();

    void refresh();
    int heightBesideTheList() const;
    void showMatches();
    void showStatus();
    void dismissForFocusLoss();

    bool chooseRow(int key);
    void runMarked();
    void followFocus(QWidget* now);
    void clearOrClose();
    bool typeIntoSearch(const QKeyEvent& event);
    bool focusStop(int stop);
    int currentStop() const;

    UpdaterController& updater_;
    std::optional<std::string> feedback_;
    bool feedbackOK_ = true;
    SearchField* searchField_ = nullptr;
    TransformList* list_ = nullptr;
    StatusLine* statusLine_ = nullptr;
    Footer* footer_ = nullptr;
    Announcer* announcer_ = nullptr;
    int room_ = QWIDGETSIZE_MAX;
    bool isHiding_ = false;
};

}  // namespace ravlin
