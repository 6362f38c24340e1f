#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace ravlin {

class UserDriver;

/// The application's wrapper around the update component: one object for the program's whole life. The component starts
/// with it, and runs whatever scheduled checks its settings ask for.
class UpdaterController final : public QObject {
    Q_OBJECT

public:
    /// Talks to the user through `userDriver`, which must outlive the controller.
    explicit UpdaterController(UserDriver& userDriver, QObject* parent = nullptr);
    ~UpdaterController() override;

    /// Whether the user may start a check now. Read whenever the panel is drawn.
    bool canCheckForUpdates() const;

    /// Starts a check at the user's request; if a window of an earlier one is waiting for an answer, brings it to the
    /// front.
    void checkForUpdates();

Q_SIGNALS:
    void canCheckForUpdatesChanged();

    /// A new version is in place: quit the program, and start `file` instead.
    void relaunchRequested(const QString& file);

private:
    struct Component;

    std::unique_ptr<Component> component_;  // null if its settings cannot be used
};

}  // namespace ravlin
