#include "App/UpdaterController.h"

#include "Updater/UserDriver.h"

namespace ravlin {

UpdaterController::UpdaterController(UserDriver& userDriver, QObject* parent)
    : QObject(parent), userDriver_(userDriver) {}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): what it tells is this controller's state
bool UpdaterController::canCheckForUpdates() const {
    return true;
}

void UpdaterController::checkForUpdates() {
    userDriver_.showUpdatesComeWithSystem();
}

}  // namespace ravlin
