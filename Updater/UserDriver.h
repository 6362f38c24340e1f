#pragma once

#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <optional>

namespace ravlin {

/// A newer version, as the user is told of it.
struct FoundUpdate {
    QString version;
    QString currentVersion;
    QString notes;  // empty where there are none
    bool notesAreMarkdown = false;
    bool isCritical = false;
    bool canBeSkipped = true;
    bool canBeInstalled = true;  // else `link` tells more about it
    QUrl link;
};

/// What the user wants done about a newer version.
enum class UpdateAnswer : std::uint8_t { install, later, skip };

/// Why a check or an installation came to nothing.
enum class UpdateError : std::uint8_t {
    notFetched,          // the server or the system's updater could not be asked
    notGenuine,          // what the server told was not written by Ravlin's makers
    olderThanBefore,     // ... or was written before what it told last time
    outOfDate,           // ... or is not meant to be believed any more
    notDownloaded,       // the update could not be had
    signatureIsWrong,    // the update was not made by Ravlin's makers
    notInstalled,        // the update could not be put in place
    mayNotReplace,       // the file that Ravlin was started from is not the user's to change
    notFromASingleFile,  // Ravlin was not started from a file that could be replaced
};

/// An error, and what is known about it: for `notInstalled` the cause, for `mayNotReplace` the file.
struct UpdateFailure {
    UpdateError error = UpdateError::notFetched;
    QString detail;
};

/// The update component's only way to the user: every window it shows goes through here. Views/UpdateWindows implements
/// it; tests have a recorder.
///
/// There is one window at a time: whatever is shown takes the place of what was shown before. An answer is given once,
/// later, and not after the window has been replaced or dismissed.
class UserDriver {
public:
    using Reply = std::function<void()>;

    UserDriver() = default;
    Q_DISABLE_COPY_MOVE(UserDriver)
    virtual ~UserDriver() = default;

    /// Asks whether Ravlin should look for updates by itself. Closing the window answers nothing at all.
    virtual void askForPermission(std::function<void(std::optional<bool> isAutomatic)> answer) = 0;

    /// Tells that the check the user asked for runs.
    virtual void showChecking(Reply cancel) = 0;

    /// Offers an update. It does not take the keyboard away from the user unless `wasAskedFor`.
    virtual void showFound(const FoundUpdate& update, bool wasAskedFor, std::function<void(UpdateAnswer)> answer) = 0;

    /// Tells that the update is fetched.
    virtual void showDownloading(Reply cancel) = 0;

    /// How much of the update has come, in bytes. `totalBytes` of 0 means that nobody knows.
    virtual void showProgress(qint64 receivedBytes, qint64 totalBytes) = 0;

    /// Tells that the update is put in place, which cannot be cancelled.
    virtual void showInstalling() = 0;

    /// Tells that there is nothing newer than `currentVersion`.
    virtual void showUpToDate(const QString& currentVersion) = 0;

    /// Tells that there is a newer version, which this system is too old for.
    virtual void showSystemTooOld(const QString& newVersion) = 0;

    /// Tells that this copy is updated by the system's own software updater; `provider` is where it comes from, for
    /// example "Debian", or empty. Called again while the window is open, the window comes to the front.
    virtual void showUpdatesComeWithSystem(const QString& provider) = 0;

    /// Tells that it went wrong.
    virtual void showFailure(const UpdateFailure& failure) = 0;

    /// Brings the window that waits for the user to the front.
    virtual void bringToFront() = 0;

    /// Closes what is open.
    virtual void dismiss() = 0;
};

}  // namespace ravlin
