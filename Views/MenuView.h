#pragma once

#include "Engine/TextTransform.h"

#include <QWidget>

namespace ravlin {

class UpdaterController;

/// The panel: header, hint, search field, grouped list of transforms, status line and footer. It is a frameless
/// top-level window that hides itself on Esc and when it loses the keyboard focus; where it appears is the
/// application's business.
class MenuView final : public QWidget {
    Q_OBJECT

public:
    /// `updater` must outlive the panel.
    explicit MenuView(UpdaterController& updater, QWidget* parent = nullptr);

    /// Runs `transform` on the clipboard and tells the outcome in the status line.
    void apply(TextTransform transform);

Q_SIGNALS:
    /// "Quit" was pressed.
    void quitRequested();

    /// The panel hid itself because another window took the focus.
    void dismissedByFocusLoss();

    /// The panel's height followed its content while it is shown.
    void resized();

private:
    UpdaterController& updater_;
};

}  // namespace ravlin
