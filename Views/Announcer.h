#pragma once

#include <QString>
#include <QTimer>
#include <QWidget>

namespace ravlin {

/// What assistive technology reads out without being asked, as a notification. It takes no room and draws nothing.
class Announcer final : public QWidget {
    Q_OBJECT

public:
    explicit Announcer(QWidget* parent);

    /// Has `text` read out now, once, even where it is the same as before.
    void say(const QString& text);

    /// Has `text` read out after a pause, unless something else is to be said by then: for what changes with every
    /// letter that is typed.
    void saySoon(const QString& text);

    bool isAboutToSpeak() const { return pause_.isActive(); }

    /// Says no more.
    void silence();

private:
    QTimer pause_;
    QString next_;
};

/// `text` with the paste shortcut as it is called on this keyboard.
///     spoken("ready to paste with ⌘V.")  ->  "ready to paste with Control V."
QString spoken(QString text);

}  // namespace ravlin
