#pragma once

#include "App/UpdaterController.h"
#include "Updater/UserDriver.h"

namespace ravlin::tests {

/// Steers the update controller of these tests, which is linked in place of the real one: the panel cannot tell them
/// apart.
struct FakeUpdater {
    static inline bool canCheck = true;
    static inline int checkCount = 0;

    /// To begin a test with.
    static void reset() {
        canCheck = true;
        checkCount = 0;
    }
};

/// A user driver that shows nothing.
class SilentUserDriver final : public UserDriver {
public:
    void showUpdatesComeWithSystem() override {}
};

}  // namespace ravlin::tests
