#pragma once

#include "Updater/UserDriver.h"

#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace ravlin {

class UpdateProgressWindow;
class UpdateWindow;

/// The update component's windows, made when they are needed; at most one is open.
class UpdateWindows final : public UserDriver {
public:
    UpdateWindows();
    UpdateWindows(const UpdateWindows&) = delete;
    UpdateWindows& operator=(const UpdateWindows&) = delete;
    UpdateWindows(UpdateWindows&&) = delete;
    UpdateWindows& operator=(UpdateWindows&&) = delete;
    ~UpdateWindows() override;

    void askForPermission(std::function<void(std::optional<bool> isAutomatic)> answer) override;
    void showChecking(Reply cancel) override;
    void showFound(const FoundUpdate& update, bool wasAskedFor, std::function<void(UpdateAnswer)> answer) override;
    void showDownloading(Reply cancel) override;
    void showProgress(qint64 receivedBytes, qint64 totalBytes) override;
    void showInstalling() override;
    void showUpToDate(const QString& currentVersion) override;
    void showSystemTooOld(const QString& newVersion) override;
    void showUpdatesComeWithSystem(const QString& provider) override;
    void showFailure(const UpdateFailure& failure) override;
    void bringToFront() override;
    void dismiss() override;

private:
    /// A window may be on its way out while its own button is handled.
    struct DeleteLater {
        void operator()(UpdateWindow* window) const;
    };
    using WindowPointer = std::unique_ptr<UpdateWindow, DeleteLater>;

    UpdateWindow& replaceBy(WindowPointer window);
    void showNotice(const QString& name, const QString& heading, const QString& text);
    void addAnswers(UpdateWindow& window, const FoundUpdate& update, const std::function<void(UpdateAnswer)>& answer);
    UpdateProgressWindow* progress() const;

    WindowPointer window_;
    WindowPointer checking_;  // until it is worth showing
    QTimer checkingDelay_;
};

}  // namespace ravlin
