#include "Updater/UpdateSchedule.h"

#include <utility>

namespace ravlin {
namespace {

/// A single long timer would not count the time during which the machine sleeps.
constexpr std::chrono::minutes kTick{10};

}  // namespace

UpdateSchedule::UpdateSchedule(UpdateState& state, const Rules& rules, Clock clock)
    : state_(state), rules_(rules), clock_(std::move(clock)) {
    timer_.setTimerType(Qt::VeryCoarseTimer);
    connect(&timer_, &QTimer::timeout, this, &UpdateSchedule::tick);
}

bool UpdateSchedule::launch() {
    const bool isFirst = !state_.hasLaunchedBefore();
    if (isFirst) state_.setLaunchedBefore();
    timer_.start(kTick);
    tick();
    return !isFirst && !rules_.automaticChecks && !state_.automaticChecks();
}

bool UpdateSchedule::isDue() const {
    if (!rules_.automaticChecks.value_or(state_.automaticChecks().value_or(false))) return false;
    const QDateTime last = state_.lastCheck();
    const QDateTime now = clock_();
    return !last.isValid() || last > now || last.addSecs(rules_.interval.count()) <= now;
}

void UpdateSchedule::notePermission(bool isAutomatic) {
    state_.setAutomaticChecks(isAutomatic);
    tick();
}

void UpdateSchedule::tick() {
    if (isDue()) Q_EMIT due();
}

}  // namespace ravlin
