#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace ravlin {

class UserDriver;

/// The application's wrapper of the update component: one object for the program's whole life. The component starts
/// with it, and runs whatever scheduled checks its settings ask for.
class UpdaterController final : public QObject {
    Q_OBJECT

public:
    /// Talks to the user through `userDriver`, which must outlive the controller.
    explicit UpdaterController(UserDriver& userDriver, QObject* parent = nullptr);
    ~UpdaterController() override;

    /// Whether a check asked for by the user may start now. Read whenever the panel is drawn.
    bool canCheckForUpdates() const;

    /// Starts a check asked for by the user; where a window of an earlier one waits for an answer, brings it to the
    /// front.
    void checkForUpdates();

Q_SIGNALS:
    void canCheckForUpdatesChanged();

    /// A new version is in place: the program is to quit, and `file` to be started instead.
    void relaunchRequested(const QString& file);

private:
    struct Component;

    std::unique_ptr<Component> component_;  // none where its settings cannot be used
};

}  // namespace ravlin
