#include "Updater/Updater.h"

#include <utility>

namespace ravlin {
namespace {

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

}  // namespace

Updater::Updater(UpdateSource& source, UserDriver& user, UpdateSchedule* schedule, QString version)
    : source_(source), user_(user), schedule_(schedule), version_(std::move(version)) {
    connect(&source_, &UpdateSource::checked, this, &Updater::handleResult);
    connect(&source_, &UpdateSource::progressed, this,
            [this](qint64 received, qint64 total) { user_.showProgress(received, total); });
    connect(&source_, &UpdateSource::installing, this, [this] {
        setState(State::installing);
        user_.showInstalling();
    });
    connect(&source_, &UpdateSource::installed, this, [this](const QString& file) {
        user_.dismiss();
        Q_EMIT relaunchRequested(file);
    });
    connect(&source_, &UpdateSource::failed, this, [this](const UpdateFailure& failure) {
        setState(State::idle);
        user_.showFailure(failure);
    });
}

void Updater::start() {
    if (schedule_ == nullptr) return;
    connect(schedule_, &UpdateSchedule::due, this, [this] {
        if (state_ == State::idle) check(/*isAskedForByUser=*/false);
    });
    QMetaObject::invokeMethod(this, "begin", Qt::QueuedConnection);
}

// By now the user may have asked for a check.
void Updater::begin() {
    if (schedule_->launch() && state_ == State::idle) ask();
}

void Updater::ask() {
    setState(State::asking);
    user_.askForPermission([this](std::optional<bool> isAutomatic) {
        if (state_ != State::asking) return;
        setState(State::idle);
        if (isAutomatic) schedule_->notePermission(*isAutomatic);
    });
}

bool Updater::canCheckForUpdates() const {
    switch (state_) {
        case State::idle:
        case State::asking:
        case State::found: return true;
        case State::checking:
        case State::downloading:
        case State::installing: return false;
    }
    return false;
}

void Updater::checkForUpdates() {
    if (state_ == State::idle) {
        check(/*isAskedForByUser=*/true);
    } else if (canCheckForUpdates()) {
        user_.bringToFront();
    }
}

void Updater::check(bool isAskedForByUser) {
    isAskedForByUser_ = isAskedForByUser;
    setState(State::checking);
    if (schedule_ != nullptr) schedule_->noteCheck();
    if (isAskedForByUser) user_.showChecking([this] { cancel(); });
    source_.check(isAskedForByUser);
}

void Updater::cancel() {
    if (state_ != State::checking && state_ != State::downloading) return;
    source_.cancel();
    setState(State::idle);
    user_.dismiss();
}

void Updater::handleResult(const CheckResult& result) {
    if (const auto* const update = std::get_if<FoundUpdate>(&result)) return offer(*update);
    setState(State::idle);
    // The user does not wait for a scheduled check, and the next one may succeed.
    if (isAskedForByUser_) tell(result);
}

void Updater::tell(const CheckResult& result) {
    std::visit(Overloaded{
                   [](const FoundUpdate&) {},  // offered instead
                   [this](const UpToDate&) { user_.showUpToDate(version_); },
                   [this](const SystemTooOld& tooOld) { user_.showSystemTooOld(tooOld.newVersion); },
                   [this](const ComesWithSystem& system) { user_.showUpdatesComeWithSystem(system.provider); },
                   [this](const UpdateFailure& failure) { user_.showFailure(failure); },
               },
               result);
}

void Updater::offer(const FoundUpdate& update) {
    setState(State::found);
    user_.showFound(update, isAskedForByUser_, [this](UpdateAnswer answer) {
        if (state_ == State::found) handleAnswer(answer);
    });
}

void Updater::handleAnswer(UpdateAnswer answer) {
    switch (answer) {
        case UpdateAnswer::install:
            setState(State::downloading);
            user_.showDownloading([this] { cancel(); });
            return source_.install();
        case UpdateAnswer::skip: source_.skip(); break;
        case UpdateAnswer::later: break;
    }
    setState(State::idle);
}

void Updater::setState(State state) {
    const bool couldCheck = canCheckForUpdates();
    state_ = state;
    if (canCheckForUpdates() != couldCheck) Q_EMIT canCheckForUpdatesChanged();
}

}  // namespace ravlin
