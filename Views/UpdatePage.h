#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QDialogButtonBox;
class QPushButton;
class QVBoxLayout;

namespace ravlin {

/// What an update window shows: the application's icon, a heading, a text, whatever is added, and buttons. It is as
/// large as its content.
class UpdatePage : public QWidget {
    Q_OBJECT

public:
    struct Content {
        QString name;  // for tests and for assistive technology's scripts
        QString heading;
        QString text;  // may be empty
        QString title = QStringLiteral("Software Update");
    };

    UpdatePage(const Content& content, QWidget* window);

    const Content& content() const { return content_; }

    /// Puts `widget` under the text.
    void add(QWidget* widget);

    /// Adds a button that closes the window, and then does `action`.
    QPushButton* addButton(const QString& text, const QString& name, std::function<void()> action = {});

    /// Makes `button` the one that Return presses.
    static void setDefault(QPushButton* button);

    /// What closing the window with Esc or its frame does.
    void setCloseAction(std::function<void()> action) { closeAction_ = std::move(action); }
    const std::function<void()>& closeAction() const { return closeAction_; }

    /// Whether the window may be closed now.
    virtual bool canClose() const { return true; }

private:
    Content content_;
    QVBoxLayout* column_;
    QDialogButtonBox* buttons_;
    std::function<void()> closeAction_;
};

}  // namespace ravlin
