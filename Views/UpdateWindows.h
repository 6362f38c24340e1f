#pragma once

#include "Updater/UserDriver.h"

#include <QDialog>

#include <memory>

namespace ravlin {

/// The update component's windows, made when they are first needed.
class UpdateWindows final : public UserDriver {
public:
    UpdateWindows();
    UpdateWindows(const UpdateWindows&) = delete;
    UpdateWindows& operator=(const UpdateWindows&) = delete;
    UpdateWindows(UpdateWindows&&) = delete;
    UpdateWindows& operator=(UpdateWindows&&) = delete;
    ~UpdateWindows() override;

    void showUpdatesComeWithSystem() override;

private:
    std::unique_ptr<QDialog> updatesComeWithSystem_;
};

}  // namespace ravlin
