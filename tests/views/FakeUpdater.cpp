#include "tests/views/FakeUpdater.h"

namespace ravlin {

struct UpdaterController::Component {};

UpdaterController::UpdaterController(UserDriver& /*userDriver*/, QObject* parent) : QObject(parent) {}

UpdaterController::~UpdaterController() = default;

bool UpdaterController::canCheckForUpdates() const {
    return tests::FakeUpdater::canCheck;
}

void UpdaterController::checkForUpdates() {
    ++tests::FakeUpdater::checkCount;
}

}  // namespace ravlin
