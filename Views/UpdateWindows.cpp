#include "Views/UpdateWindows.h"

#include "Views/Metrics.h"
#include "Views/ReleaseNotes.h"
#include "Views/TextLabel.h"
#include "Views/UpdatePage.h"
#include "Views/UpdateProgressPage.h"
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

void addNotes(UpdatePage& page, const FoundUpdate& update) {
    if (update.notes.isEmpty()) return;
    auto* const label = new TextLabel(QStringLiteral("Release Notes:"), {.style = TextStyle::calloutMedium}, &page);
    label->setObjectName(QStringLiteral("notesLabel"));
    page.add(label);
    page.add(new ReleaseNotes(update.notes, update.notesAreMarkdown, &page));
}

void addAnswers(UpdatePage& page, const FoundUpdate& update, const std::function<void(UpdateAnswer)>& answer) {
    page.setCloseAction([answer] { answer(UpdateAnswer::later); });
    if (update.canBeSkipped)
        page.addButton(QStringLiteral("Skip This Version"), QStringLiteral("skipButton"),
                       [answer] { answer(UpdateAnswer::skip); });
    page.addButton(QStringLiteral("Remind Me Later"), QStringLiteral("laterButton"),
                   [answer] { answer(UpdateAnswer::later); });
    QPushButton* const first =
        update.canBeInstalled ? page.addButton(QStringLiteral("Install and Relaunch"), QStringLiteral("installButton"),
                                               [answer] { answer(UpdateAnswer::install); })
                              : page.addButton(QStringLiteral("Learn More…"), QStringLiteral("learnMoreButton"),
                                               [answer, link = update.link] {
                                                   if (ReleaseNotes::mayOpen(link)) QDesktopServices::openUrl(link);
                                                   answer(UpdateAnswer::later);
                                               });
    UpdatePage::setDefault(first);
}

}  // namespace

UpdateWindows::UpdateWindows() {
    checkingDelay_.setSingleShot(true);
    checkingDelay_.setInterval(kCheckingDelay);
    QObject::connect(&checkingDelay_, &QTimer::timeout, &checkingDelay_, [this] {
        showPage<UpdateProgressPage>(QStringLiteral("Checking for updates…"), cancelCheck_);
        window().bringToFront();
    });
}

UpdateWindows::~UpdateWindows() = default;

UpdateWindow& UpdateWindows::window() {
    if (window_ == nullptr) window_ = std::make_unique<UpdateWindow>();
    return *window_;
}

template <class Page, class... Arguments>
Page& UpdateWindows::showPage(const Arguments&... arguments) {
    auto* const page = new Page(arguments..., &window());
    forgetCheck();
    window().setAttribute(Qt::WA_ShowWithoutActivating, false);
    window().setPage(page);
    return *page;
}

void UpdateWindows::forgetCheck() {
    checkingDelay_.stop();
    cancelCheck_ = {};
}

void UpdateWindows::askForPermission(std::function<void(std::optional<bool> isAutomatic)> answer) {
    auto& page = showPage<UpdatePage>(UpdatePage::Content{
        .name = QStringLiteral("updatePermission"),
        .heading = QStringLiteral("Check for updates automatically?"),
        .text = QStringLiteral("Should Ravlin automatically check for updates? You can always check for updates "
                               "yourself in Ravlin’s panel.")});
    page.setCloseAction([answer] { answer(std::nullopt); });
    page.addButton(QStringLiteral("Don’t Check"), QStringLiteral("doNotCheckButton"), [answer] { answer(false); });
    UpdatePage::setDefault(page.addButton(QStringLiteral("Check Automatically"),
                                          QStringLiteral("checkAutomaticallyButton"), [answer] { answer(true); }));
    window().setAttribute(Qt::WA_ShowWithoutActivating);  // nobody has asked for it
    window().show();
}

void UpdateWindows::showChecking(Reply cancel) {
    cancelCheck_ = std::move(cancel);
    checkingDelay_.start();
}

void UpdateWindows::showFound(const FoundUpdate& update, bool wasAskedFor, std::function<void(UpdateAnswer)> answer) {
    auto& page =
        showPage<UpdatePage>(UpdatePage::Content{.name = QStringLiteral("updateFound"),
                                                 .heading = QStringLiteral("A new version of Ravlin is available!"),
                                                 .text = textOf(update)});
    addNotes(page, update);
    addAnswers(page, update, answer);
    if (wasAskedFor) return window().bringToFront();
    window().setAttribute(Qt::WA_ShowWithoutActivating);
    window().show();
}

void UpdateWindows::showDownloading(Reply cancel) {
    showPage<UpdateProgressPage>(QStringLiteral("Downloading update…"), cancel);
    window().bringToFront();
}

UpdateProgressPage* UpdateWindows::progress() const {
    return window_ == nullptr ? nullptr : qobject_cast<UpdateProgressPage*>(window_->page());
}

void UpdateWindows::showProgress(qint64 receivedBytes, qint64 totalBytes) {
    if (progress() != nullptr) progress()->setProgress(receivedBytes, totalBytes);
}

void UpdateWindows::showInstalling() {
    const QString activity = QStringLiteral("Installing update…");
    if (progress() == nullptr) return;
    progress()->setFinalActivity(activity);
    window_->describe(activity, {});
}

void UpdateWindows::showNotice(const QString& name, const QString& heading, const QString& text) {
    const bool isOpen = window_ != nullptr && window_->isVisible() && window_->page()->content().name == name &&
                        window_->page()->content().text == text;
    if (!isOpen) {
        auto& page = showPage<UpdatePage>(UpdatePage::Content{.name = name, .heading = heading, .text = text});
        UpdatePage::setDefault(page.addButton(QStringLiteral("OK"), QStringLiteral("okButton")));
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
    forgetCheck();
    if (window_ != nullptr) window_->bringToFront();
}

void UpdateWindows::dismiss() {
    forgetCheck();
    if (window_ != nullptr) window_->hide();
}

}  // namespace ravlin
