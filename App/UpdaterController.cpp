#include "App/UpdaterController.h"

#include "Updater/AppcastSource.h"
#include "Updater/PackageKitSource.h"
#include "Updater/UpdateSchedule.h"
#include "Updater/UpdateSettings.h"
#include "Updater/UpdateState.h"
#include "Updater/Updater.h"

#include <QCoreApplication>

#include <iostream>
#include <optional>

namespace ravlin {

struct UpdaterController::Component {
    std::unique_ptr<UpdateState> state;  // for a single-file copy only, like the schedule
    std::unique_ptr<UpdateSchedule> schedule;
    std::unique_ptr<UpdateSource> source;
    std::unique_ptr<Updater> updater;
};

UpdaterController::UpdaterController(UserDriver& userDriver, QObject* parent) : QObject(parent) {
    const QString version = QCoreApplication::applicationVersion();
    const QString executable = QCoreApplication::applicationFilePath();
    const UpdateSettings settings = UpdateSettings::forProgram(executable);
    if (!settings.problem.isEmpty()) {
        std::cerr << "ravlin: no updates, since in update.ini " << settings.problem.toStdString() << '\n';
        return;
    }
    auto component = std::make_unique<Component>();
    if (settings.kind == InstallKind::appimage) {
        component->state = std::make_unique<UpdateState>();
        component->schedule = std::make_unique<UpdateSchedule>(
            *component->state,
            UpdateSchedule::Rules{.interval = settings.interval, .automaticChecks = settings.automaticChecks});
        component->source =
            std::make_unique<AppcastSource>(settings, *component->state, Version::parse(version).value_or(Version()));
    } else {
        component->source =
            std::make_unique<PackageKitSource>(PackageKitSource::Copy{.package = QStringLiteral("ravlin"),
                                                                      .version = version,
                                                                      .executable = executable,
                                                                      .provider = settings.provider});
    }
    component->updater = std::make_unique<Updater>(*component->source, userDriver, component->schedule.get(), version);
    connect(component->updater.get(), &Updater::canCheckForUpdatesChanged, this,
            &UpdaterController::canCheckForUpdatesChanged);
    connect(component->updater.get(), &Updater::relaunchRequested, this, &UpdaterController::relaunchRequested);
    component_ = std::move(component);
    component_->updater->start();
}

UpdaterController::~UpdaterController() = default;

bool UpdaterController::canCheckForUpdates() const {
    return component_ != nullptr && component_->updater->canCheckForUpdates();
}

void UpdaterController::checkForUpdates() {
    if (component_ != nullptr) component_->updater->checkForUpdates();
}

}  // namespace ravlin
