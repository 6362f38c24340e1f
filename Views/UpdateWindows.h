#pragma once

#include "Updater/UserDriver.h"

#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace ravlin {

class UpdateProgressPage;
class UpdateWindow;

/// The update component's windows: they are one window that shows one thing after the other.
class UpdateWindows final : public UserDriver {
public:
    UpdateWindows();
    Q_DISABLE_COPY_MOVE(UpdateWindows)
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
    UpdateWindow& window();
    template <class Page, class... Arguments>
    Page& showPage(const Arguments&... arguments);
    void showNotice(const QString& name, const QString& heading, const QString& text);
    void forgetCheck();
    UpdateProgressPage* progress() const;

    std::unique_ptr<UpdateWindow> window_;  // made when it is first needed
    Reply cancelCheck_;                     // of a check that is not worth showing yet
    QTimer checkingDelay_;
};

}  // namespace ravlin
