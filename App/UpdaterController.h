#pragma once

#include <QObject>

namespace ravlin {

class UserDriver;

/// The application's wrapper of the update component: one object for the program's whole life.
class UpdaterController final : public QObject {
    Q_OBJECT

public:
    /// Talks to the user through `userDriver`, which must outlive the controller.
    explicit UpdaterController(UserDriver& userDriver, QObject* parent = nullptr);

    /// Whether a check asked for by the user may start now. Read whenever the panel is drawn.
    bool canCheckForUpdates() const;

    /// Starts a check asked for by the user. This copy of Ravlin is updated by the system, and says so.
    void checkForUpdates();

Q_SIGNALS:
    void canCheckForUpdatesChanged();

private:
    UserDriver& userDriver_;
};

}  // namespace ravlin
