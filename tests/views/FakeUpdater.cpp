#include "tests/views/FakeUpdater.h"

namespace ravlin {

UpdaterController::UpdaterController(UserDriver& userDriver, QObject* parent)
    : QObject(parent), userDriver_(userDriver) {}

bool UpdaterController::canCheckForUpdates() const {
    return tests::FakeUpdater::canCheck;
}

void UpdaterController::checkForUpdates() {
    ++tests::FakeUpdater::checkCount;
}

}  // namespace ravlin
