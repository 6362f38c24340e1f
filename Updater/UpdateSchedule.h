#pragma once

#include "Updater/UpdateState.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

namespace ravlin {

/// When a single-file copy looks for updates on its own.
class UpdateSchedule final : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    struct Rules {
        std::chrono::seconds interval = std::chrono::hours(24);
        std::optional<bool> automaticChecks;  // if set, the user's answer does not count
    };

    /// `state` must outlive the schedule.
    UpdateSchedule(UpdateState& state, const Rules& rules, Clock clock = &QDateTime::currentDateTimeUtc);

    /// Counts this launch, and from now on signals when a check is due. Ask the user for permission if this returns
    /// true: at the second launch, when people know what the program is, and later until they answer.
    bool launch();

    /// Whether a scheduled check is due. If the last check is in the future, the clock was wrong.
    bool isDue() const;

    void noteCheck() { state_.setLastCheck(clock_()); }
    void notePermission(bool isAutomatic);

Q_SIGNALS:
    void due();

private:
    void tick();

    UpdateState& state_;
    Rules rules_;
    Clock clock_;
    QTimer timer_;
};

}  // namespace ravlin
