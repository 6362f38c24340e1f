#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QString>

#include <functional>

class QPushButton;
class QVBoxLayout;

namespace ravlin {

class TextLabel;

/// A window of the update component: the application's icon, a heading, a text, whatever is added, and buttons. It is
/// as large as its content.
class UpdateWindow : public QDialog {
    Q_OBJECT

public:
    struct Content {
        QString name;  // for tests and for assistive technology's scripts
        QString heading;
        QString text;  // may be empty
    };

    explicit UpdateWindow(const Content& content);

    const Content& content() const { return content_; }

    /// Puts `widget` under the text.
    void add(QWidget* widget);

    /// Adds a button that closes the window, and then does `action`.
    QPushButton* addButton(const QString& text, const QString& name, std::function<void()> action = {});

    /// Makes `button` the one that Return presses.
    static void setDefault(QPushButton* button);

    /// What closing the window with Esc or its frame does.
    void setCloseAction(std::function<void()> action) { closeAction_ = std::move(action); }

    void reject() override;

    /// Shows it over the other windows, with the keyboard.
    void bringToFront();

private:
    Content content_;
    QVBoxLayout* column_;
    QDialogButtonBox* buttons_;
    std::function<void()> closeAction_;
};

}  // namespace ravlin
