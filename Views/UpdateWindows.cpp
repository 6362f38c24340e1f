#include "Views/UpdateWindows.h"

#include "Views/Metrics.h"
#include "Views/ReleaseNotes.h"
#include "Views/TextLabel.h"
#include "Views/UpdateProgressWindow.h"
#include "Views/UpdateWindow.h"

#include <QDesktopServices>
#include <QPushButton>

#include <chrono>
#include <utility>

namespace ravlin {
namespace {

/// A check that takes no longer than this shows its result only: a window that flashes up tells nothing.
constexpr std::chrono::milliseconds kCheckingDelay{150};

QString textOf(const UpdateFailure& failure) {
    switch (failure.error) {
        case UpdateError::notFetched:
            return QStringLiteral("Update information could not be fetched. Please try again later.");
        case UpdateError::notGenuine:
            return QStringLiteral("The update information is not genuine or is damaged, and was not used.");
        case UpdateError::olderThanBefore:
            return QStringLiteral("The server offered older update information than it did before. It was not used.");
        case UpdateError::outOfDate:
            return QStringLiteral("The server’s update information is out of date. Please try again later.");
        case UpdateError::notDownloaded:
            return QStringLiteral("The update could not be downloaded. Please try again later.");
        case UpdateError::signatureIsWrong:
            return QStringLiteral(
                "The update is not signed by Ravlin’s makers and was thrown away. Ravlin is unchanged.");
        case UpdateError::notInstalled: {
            const QString text = QStringLiteral("The update could not be installed. Ravlin is unchanged.");
            return failure.detail.isEmpty() ? text : text + QStringLiteral(" (%1)").arg(failure.detail);
        }
        case UpdateError::mayNotReplace:
            return QStringLiteral("You may not replace the file “%1”.").arg(failure.detail);
        case UpdateError::notFromASingleFile: return QStringLiteral("It was not started from its AppImage.");
    }
    return {};
}

QString textOf(const FoundUpdate& update) {
    const QString versions = QStringLiteral("Ravlin %1 is now available — you have %2. ");
    const QString question =
        !update.canBeInstalled ? QStringLiteral("Would you like to learn more about this update on the web?")
        : update.isCritical    ? QStringLiteral("This is an important update; would you like to install it now?")
                               : QStringLiteral("Would you like to install it now?");
    return versions.arg(update.version, update.currentVersion) + question;
}

void addNotes(UpdateWindow& window, const FoundUpdate& update) {
    if (update.notes.isEmpty()) return;
    auto* const label = new TextLabel(QStringLiteral("Release Notes:"), {.style = TextStyle::calloutMedium}, &window);
    label->setObjectName(QStringLiteral("notesLabel"));
    window.add(label);
    window.add(new ReleaseNotes(update.notes, update.notesAreMarkdown, &window));
}

}  // namespace

void UpdateWindows::DeleteLater::operator()(UpdateWindow* window) const {
    window->hide();
    window->deleteLater();
}

UpdateWindows::UpdateWindows() {
    checkingDelay_.setSingleShot(true);
    checkingDelay_.setInterval(kCheckingDelay);
    QObject::connect(&checkingDelay_, &QTimer::timeout, &checkingDelay_, [this] {
        WindowPointer checking = std::move(checking_);
        replaceBy(std::move(checking)).bringToFront();
    });
}

// No event loop may follow, which would delete them later.
UpdateWindows::~UpdateWindows() {
    delete checking_.release();
    delete window_.release();
}

UpdateWindow& UpdateWindows::replaceBy(WindowPointer window) {
    checkingDelay_.stop();
    checking_.reset();
    window_ = std::move(window);
    return *window_;
}

void UpdateWindows::askForPermission(std::function<void(std::optional<bool> isAutomatic)> answer) {
    UpdateWindow& window = replaceBy(WindowPointer(new UpdateWindow(
        {.name = QStringLiteral("updatePermission"),
         .heading = QStringLiteral("Check for updates automatically?"),
         .text = QStringLiteral("Should Ravlin automatically check for updates? You can always check for updates "
                                "yourself in Ravlin’s panel.")})));
    window.setAttribute(Qt::WA_ShowWithoutActivating);  // nobody has asked for it
    window.setCloseAction([answer] { answer(std::nullopt); });
    window.addButton(QStringLiteral("Don’t Check"), QStringLiteral("doNotCheckButton"), [answer] { answer(false); });
    window
        .addButton(QStringLiteral("Check Automatically"), QStringLiteral("checkAutomaticallyButton"),
                   [answer] { answer(true); })
        ->setDefault(true);
    window.show();
}

void UpdateWindows::showChecking(Reply cancel) {
    checking_.reset(new UpdateProgressWindow(QStringLiteral("Checking for updates…"), std::move(cancel)));
    checkingDelay_.start();
}

void UpdateWindows::showFound(const FoundUpdate& update, bool wasAskedFor, std::function<void(UpdateAnswer)> answer) {
    UpdateWindow& window =
        replaceBy(WindowPointer(new UpdateWindow({.name = QStringLiteral("updateFound"),
                                                  .heading = QStringLiteral("A new version of Ravlin is available!"),
                                                  .text = textOf(update)})));
    addNotes(window, update);
    addAnswers(window, update, answer);
    window.setAttribute(Qt::WA_ShowWithoutActivating, !wasAskedFor);
    if (wasAskedFor) {
        window.bringToFront();
    } else {
        window.show();
    }
}

void UpdateWindows::addAnswers(UpdateWindow& window, const FoundUpdate& update,
                               const std::function<void(UpdateAnswer)>& answer) {
    window.setCloseAction([answer] { answer(UpdateAnswer::later); });
    if (update.canBeSkipped)
        window.addButton(QStringLiteral("Skip This Version"), QStringLiteral("skipButton"),
                         [answer] { answer(UpdateAnswer::skip); });
    window.addButton(QStringLiteral("Remind Me Later"), QStringLiteral("laterButton"),
                     [answer] { answer(UpdateAnswer::later); });
    QPushButton* const first = update.canBeInstalled
                                   ? window.addButton(QStringLiteral("Install Update"), QStringLiteral("installButton"),
                                                      [answer] { answer(UpdateAnswer::install); })
                                   : window.addButton(QStringLiteral("Learn More…"), QStringLiteral("learnMoreButton"),
                                                      [answer, link = update.link] {
                                                          if (ReleaseNotes::mayOpen(link))
                                                              QDesktopServices::openUrl(link);
                                                          answer(UpdateAnswer::later);
                                                      });
    UpdateWindow::setDefault(first);
}

void UpdateWindows::showDownloading(Reply cancel) {
    replaceBy(WindowPointer(new UpdateProgressWindow(QStringLiteral("Downloading update…"), std::move(cancel))))
        .bringToFront();
}

UpdateProgressWindow* UpdateWindows::progress() const {
    return qobject_cast<UpdateProgressWindow*>(window_.get());
}

void UpdateWindows::showProgress(qint64 receivedBytes, qint64 totalBytes) {
    if (progress() != nullptr) progress()->setProgress(receivedBytes, totalBytes);
}

void UpdateWindows::showInstalling() {
    if (progress() != nullptr) progress()->setFinalActivity(QStringLiteral("Installing update…"));
}

void UpdateWindows::showNotice(const QString& name, const QString& heading, const QString& text) {
    const bool isOpen = window_ != nullptr && window_->isVisible() && window_->content().name == name &&
                        window_->content().text == text;
    if (!isOpen) {
        UpdateWindow& window =
            replaceBy(WindowPointer(new UpdateWindow({.name = name, .heading = heading, .text = text})));
        UpdateWindow::setDefault(window.addButton(QStringLiteral("OK"), QStringLiteral("okButton")));
    }
    bringToFront();
}

void UpdateWindows::showUpToDate(const QString& currentVersion) {
    showNotice(QStringLiteral("upToDate"), QStringLiteral("You’re up to date!"),
               QStringLiteral("Ravlin %1 is currently the newest version available.").arg(currentVersion));
}

void UpdateWindows::showSystemTooOld(const QString& newVersion) {
    showNotice(QStringLiteral("systemTooOld"), QStringLiteral("Your system is too old"),
               QStringLiteral("Ravlin %1 is available, but it needs a newer system than this one.").arg(newVersion));
}

void UpdateWindows::showUpdatesComeWithSystem(const QString& provider) {
    const QString origin = provider.isEmpty() ? QString() : QStringLiteral("comes from %1 and ").arg(provider);
    showNotice(QStringLiteral("updatesComeWithSystem"), QStringLiteral("Updates come with your system"),
               QStringLiteral("This copy of Ravlin %1is updated by your system’s software updater, together with your "
                              "other software.")
                   .arg(origin));
}

void UpdateWindows::showFailure(const UpdateFailure& failure) {
    const bool isNotHere =
        failure.error == UpdateError::mayNotReplace || failure.error == UpdateError::notFromASingleFile;
    showNotice(QStringLiteral("updateError"),
               isNotHere ? QStringLiteral("Ravlin Can’t Be Updated Here") : QStringLiteral("Update Error"),
               textOf(failure));
}

void UpdateWindows::bringToFront() {
    checkingDelay_.stop();
    checking_.reset();
    if (window_ != nullptr) window_->bringToFront();
}

void UpdateWindows::dismiss() {
    checkingDelay_.stop();
    checking_.reset();
    window_.reset();
}

}  // namespace ravlin
