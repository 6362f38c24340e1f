#pragma once

#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <optional>

namespace ravlin {

/// A newer version, as shown to the user.
struct FoundUpdate {
    QString version;
    QString currentVersion;
    QString notes;  // empty if there are none
    bool notesAreMarkdown = false;
    bool isCritical = false;
    bool canBeSkipped = true;
    bool canBeInstalled = true;  // otherwise `link` says more about it
    QUrl link;
};

/// What the user wants done about a newer version.
enum class UpdateAnswer : std::uint8_t { install, later, skip };

/// Why a check or an installation failed.
enum class UpdateError : std::uint8_t {
    notFetched,          // the server or the system's updater could not be asked
    notGenuine,          // what the server sent was not written by Ravlin's makers
    olderThanBefore,     // ... or was written before what it sent last time
    outOfDate,           // ... or has expired
    notDownloaded,       // the update could not be fetched
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

/// The update component's only way to reach the user: every window it shows goes through here. Views/UpdateWindows
/// implements it; tests have a recorder.
///
/// There is one window at a time: whatever is shown replaces what was shown before. An answer comes once, later, and
/// not after the window has been replaced or dismissed.
class UserDriver {
public:
    using Reply = std::function<void()>;

    UserDriver() = default;
    Q_DISABLE_COPY_MOVE(UserDriver)
    virtual ~UserDriver() = default;

    /// Asks whether Ravlin should look for updates by itself. Closing the window gives no answer at all.
    virtual void askForPermission(std::function<void(std::optional<bool> isAutomatic)> answer) = 0;

    /// Shows that the check the user asked for is running.
    virtual void showChecking(Reply cancel) = 0;

    /// Offers an update. It takes the keyboard focus only if `wasAskedFor`.
    virtual void showFound(const FoundUpdate& update, bool wasAskedFor, std::function<void(UpdateAnswer)> answer) = 0;

    /// Shows that the update is being fetched.
    virtual void showDownloading(Reply cancel) = 0;

    /// How much of the update has arrived, in bytes. A `totalBytes` of 0 means that the size is unknown.
    virtual void showProgress(qint64 receivedBytes, qint64 totalBytes) = 0;

    /// Shows that the update is being put in place, which cannot be cancelled.
    virtual void showInstalling() = 0;

    /// Shows that there is nothing newer than `currentVersion`.
    virtual void showUpToDate(const QString& currentVersion) = 0;

    /// Shows that there is a newer version, for which this system is too old.
    virtual void showSystemTooOld(const QString& newVersion) = 0;

    /// Shows that the system's own software updater updates this copy; `provider` is where it comes from, for example
    /// "Debian", or empty. Called again while the window is open, this brings it to the front.
    virtual void showUpdatesComeWithSystem(const QString& provider) = 0;

    /// Shows what went wrong.
    virtual void showFailure(const UpdateFailure& failure) = 0;

    /// Brings the window that waits for the user to the front.
    virtual void bringToFront() = 0;

    /// Closes what is open.
    virtual void dismiss() = 0;
};

}  // namespace ravlin
