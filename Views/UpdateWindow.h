#pragma once

#include <QDialog>

namespace ravlin {

class UpdatePage;

/// The window of the update component. There is one for the program's whole life, and what it shows changes in place,
/// so that a check turns into its result before the user's eyes.
class UpdateWindow final : public QDialog {
    Q_OBJECT

public:
    UpdateWindow();

    /// What it shows, or null in the beginning.
    UpdatePage* page() const { return page_; }

    /// Shows `page`, which is a child of this window, in place of the one before.
    void setPage(UpdatePage* page);

    /// What assistive technology says about the window.
    void describe(const QString& heading, const QString& text);

    void reject() override;

    /// Shows it over the other windows, with the keyboard.
    void bringToFront();

private:
    UpdatePage* page_ = nullptr;
};

}  // namespace ravlin
