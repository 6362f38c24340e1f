#pragma once

#include "Updater/UpdateSchedule.h"
#include "Updater/UpdateSource.h"
#include "Updater/UserDriver.h"

#include <QObject>
#include <QString>

#include <cstdint>

namespace ravlin {

/// Runs one session after another: looks for an update when the user or the schedule asks, offers it, and installs it
/// if the user wants it. Windows that only show a result belong to no session.
class Updater final : public QObject {
    Q_OBJECT

public:
    enum class State : std::uint8_t { idle, asking, checking, found, downloading, installing };

    /// All of them must outlive the updater; without a schedule only the user starts checks. `version` is this
    /// program's.
    Updater(UpdateSource& source, UserDriver& user, UpdateSchedule* schedule, QString version);

    /// Starts following the schedule, once the event loop runs.
    void start();

    State state() const { return state_; }

    /// Whether the user may ask for a check now: not while one runs or an update is being installed.
    bool canCheckForUpdates() const;

    /// A check at the user's request. If a window waits for an answer, it comes to the front instead.
    void checkForUpdates();

Q_SIGNALS:
    void canCheckForUpdatesChanged();

    /// The new version is in place: quit the program, and start `file` instead.
    void relaunchRequested(const QString& file);

private:
    Q_SLOT void begin();
    void ask();
    void check(bool isAskedForByUser);
    void cancel();
    void handleResult(const CheckResult& result);
    void tell(const CheckResult& result);
    void offer(const FoundUpdate& update);
    void handleAnswer(UpdateAnswer answer);
    void setState(State state);

    UpdateSource& source_;
    UserDriver& user_;
    UpdateSchedule* schedule_;
    QString version_;
    State state_ = State::idle;
    bool isAskedForByUser_ = false;
};

}  // namespace ravlin
