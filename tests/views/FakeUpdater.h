#pragma once

#include "App/UpdaterController.h"
#include "Updater/UserDriver.h"

namespace ravlin::tests {

/// Controls these tests' update controller, which is linked in place of the real one: the panel cannot tell them apart.
struct FakeUpdater {
    static inline bool canCheck = true;
    static inline int checkCount = 0;

    /// For the beginning of a test.
    static void reset() {
        canCheck = true;
        checkCount = 0;
    }
};

/// A user driver that shows nothing.
class SilentUserDriver final : public UserDriver {
public:
    void askForPermission(std::function<void(std::optional<bool>)> /*answer*/) override {}
    void showChecking(Reply /*cancel*/) override {}
    void showFound(const FoundUpdate& /*update*/, bool /*wasAskedFor*/,
                   std::function<void(UpdateAnswer)> /*answer*/) override {}
    void showDownloading(Reply /*cancel*/) override {}
    void showProgress(qint64 /*receivedBytes*/, qint64 /*totalBytes*/) override {}
    void showInstalling() override {}
    void showUpToDate(const QString& /*currentVersion*/) override {}
    void showSystemTooOld(const QString& /*newVersion*/) override {}
    void showUpdatesComeWithSystem(const QString& /*provider*/) override {}
    void showFailure(const UpdateFailure& /*failure*/) override {}
    void bringToFront() override {}
    void dismiss() override {}
};

}  // namespace ravlin::tests
