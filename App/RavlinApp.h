#pragma once

#include "App/Launch.h"
#include "App/PanelPresenter.h"
#include "App/QuitSignals.h"
#include "App/SingleInstance.h"
#include "App/SystemClipboard.h"
#include "App/UpdaterController.h"
#include "Platform/Desktop/StatusItem.h"
#include "Views/UpdateWindows.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace ravlin {

/// The application: an icon in the tray with one panel, and no other window. It owns everything that lives as long as
/// the program does.
class RavlinApp final : public QObject {
    Q_OBJECT

public:
    /// Runs the program from start to end, and returns its exit status.
    static int main(int argc, char** argv);

    /// Shows the icon. The application object must exist, and `instance` must hold the program's name.
    RavlinApp(SingleInstance& instance, const Launch& launch);

    /// Hands over the clipboard, for the program's last act.
    std::unique_ptr<SystemPasteboard> releasePasteboard() { return clipboard_.release(); }

    /// The file to start in place of this program; empty unless an update has installed a new one.
    const QString& successor() const { return successor_; }

private:
    void connectStatusItem();
    void waitForTray(const Launch& launch);
    void activate(const Launch& launch);
    static void quit();

    UpdateWindows updateWindows_;
    UpdaterController updater_{updateWindows_};
    StatusItem statusItem_;
    SystemClipboard clipboard_;
    PanelPresenter panel_{updater_};
    QuitSignals quitSignals_;
    QTimer trayDeadline_;
    QString successor_;
};

}  // namespace ravlin
