#include "App/RavlinApp.h"

#include "App/SessionBus.h"
#include "Platform/Desktop/LaunchFeedback.h"
#include "Platform/Desktop/LayerShell.h"
#include "Platform/Desktop/WindowSystem.h"
#include "Updater/SingleFileInstaller.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QSemaphore>
#include <QThread>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include <malloc.h>

namespace ravlin {
namespace {

/// How long a desktop has to show the icon before the panel is shown instead. Long enough for a tray that starts
/// together with Ravlin at login, short enough for a user who is waiting for something to happen.
constexpr std::chrono::seconds kTrayLimit{2};

/// Returns the memory of a large text to the system as soon as the text is gone. By default the first such text teaches
/// glibc to keep tens of megabytes for the next.
void giveLargeMemoryBack() {
#ifdef __GLIBC__
    constexpr int kLarge = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, kLarge);
    mallopt(M_TRIM_THRESHOLD, kLarge);
#endif
}

void describeApplication() {
    // No data of the user's belongs in a log, and no one reads a log full of a toolkit's remarks.
    // Warnings without a category are not shown, either, but see `lingerIfWaylandIsLost`.
    QLoggingCategory::setFilterRules(
        QStringLiteral("*.debug=false\n*.info=false\n*.warning=false\ndefault.warning=true"));
    QCoreApplication::setApplicationName(QStringLiteral("ravlin"));
    QCoreApplication::setApplicationVersion(QStringLiteral(RAVLIN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.ravlin.ravlin"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

const char* textOf(const char* variable) {
    const char* const value = std::getenv(variable);
    return value == nullptr ? "not set" : value;
}

/// Replaces Qt's own message handling while the application is made: all Qt can do without a display is abort.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*message*/) {
    if (type != QtFatalMsg) return;
    std::cerr << "ravlin: no display can be opened (WAYLAND_DISPLAY is " << textOf("WAYLAND_DISPLAY") << ", DISPLAY is "
              << textOf("DISPLAY") << ")\n";
    std::_Exit(EXIT_FAILURE);
}

/// Has the clipboard's own thread leave our text to a child, unless that thread is too busy.
void lingerFromAnyThread() {
    constexpr int kLimit = 2000;  // ms
    if (QThread::currentThread() == qApp->thread()) return SystemClipboard::linger();
    const auto done = std::make_shared<QSemaphore>();
    const auto linger = [done] {
        SystemClipboard::linger();
        done->release();
    };
#ifndef __clang_analyzer__  // which takes what Qt keeps for lost
    QMetaObject::invokeMethod(qApp, linger, Qt::QueuedConnection);
#endif
    done->tryAcquire(1, kLimit);
}

/// Replaces Qt's own message handling from then on. If Qt loses its connection to a Wayland compositor, it warns, on
/// whatever thread, and then ends the program without `exit`: this is the last thing that is called.
void lingerIfWaylandIsLost(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type != QtWarningMsg) {
        std::cerr << qFormatLogMessage(type, context, message).toStdString() << std::endl;
    } else if (qApp != nullptr && WindowSystem::hasLostWayland()) {
        lingerFromAnyThread();
    }
}

/// The exit status of a start that has found another Ravlin running.
int statusOf(SingleInstance::Role role) {
    if (role == SingleInstance::Role::second) return EXIT_SUCCESS;
    std::cerr << "ravlin: it runs already, but does not answer; was it stopped?\n";
    return EXIT_FAILURE;
}

}  // namespace

int RavlinApp::main(int argc, char** argv) {
    // A program that stops reading the clipboard halfway must not take this one down.
    std::signal(SIGPIPE, SIG_IGN);  // NOLINT(cert-err33-c): cannot fail for this signal
    giveLargeMemoryBack();
    SessionBus::avoidIfSilent();
    const Launch launch = Launch::fromEnvironment();
    std::unique_ptr<SystemPasteboard> pasteboard;
    QString successor;
    {
        SingleInstance instance;
        if (const auto role = instance.claim(launch); role != SingleInstance::Role::first) return statusOf(role);
        describeApplication();
        LayerShell::prepare();
        qInstallMessageHandler(&endWithoutDisplay);
        const QApplication application(argc, argv);
        qInstallMessageHandler(&lingerIfWaylandIsLost);
        RavlinApp ravlin(instance, launch);
        QApplication::exec();
        pasteboard = ravlin.releasePasteboard();
        successor = ravlin.successor();
    }
    if (pasteboard != nullptr) pasteboard->lingerIfOwner();
    // By now the display, the tray and the program's name are free for it.
    if (!successor.isEmpty()) SingleFileInstaller::relaunch(successor);
    return 0;
}

RavlinApp::RavlinApp(SingleInstance& instance, const Launch& launch) : statusItem_(instance.bus()) {
    connectStatusItem();
    connect(&updater_, &UpdaterController::canCheckForUpdatesChanged, this,
            [this] { statusItem_.setCanCheckForUpdates(updater_.canCheckForUpdates()); });
    statusItem_.setCanCheckForUpdates(updater_.canCheckForUpdates());
    connect(&updater_, &UpdaterController::relaunchRequested, this, [this](const QString& file) {
        successor_ = file;
        quit();
    });
    connect(&panel_, &PanelPresenter::opening, &clipboard_, &SystemClipboard::ensureOpen);
    connect(&panel_, &PanelPresenter::quitRequested, this, &RavlinApp::quit);
    connect(&quitSignals_, &QuitSignals::received, this, &RavlinApp::quit);
    // Queued, so that the caller gets its answer before the panel is built.
    connect(&instance, &SingleInstance::activated, this, &RavlinApp::activate, Qt::QueuedConnection);
    waitForTray(launch);
}

void RavlinApp::connectStatusItem() {
    connect(&statusItem_, &StatusItem::activated, &panel_, &PanelPresenter::toggle);
    connect(&statusItem_, &StatusItem::openRequested, &panel_, &PanelPresenter::open);
    connect(&statusItem_, &StatusItem::checkForUpdatesRequested, &updater_, &UpdaterController::checkForUpdates);
    connect(&statusItem_, &StatusItem::quitRequested, this, &RavlinApp::quit);
}

/// On a desktop that shows no icon, the panel is shown instead, so that the user can see that the program has started.
void RavlinApp::waitForTray(const Launch& launch) {
    connect(&statusItem_, &StatusItem::shownChanged, &trayDeadline_, [this, launch] {
        if (!trayDeadline_.isActive() || !statusItem_.isShown()) return;
        trayDeadline_.stop();
        LaunchFeedback::finish(launch.startupId);
    });
    connect(&trayDeadline_, &QTimer::timeout, this, [this, launch] {
        if (!statusItem_.isShown()) activate(launch);
    });
    connect(&panel_, &PanelPresenter::opening, &trayDeadline_, &QTimer::stop);
    trayDeadline_.setSingleShot(true);
    trayDeadline_.start(kTrayLimit);
}

void RavlinApp::activate(const Launch& launch) {
    panel_.open(launch.activationToken);
    LaunchFeedback::finish(launch.startupId);
}

void RavlinApp::quit() {
    QCoreApplication::exit();
}

}  // namespace ravlin
