#pragma once

#include <QString>
#include <QUrl>

#include <cstdint>

namespace ravlin {

/// A newer version, as the user is told of it.
struct FoundUpdate {
    QString version;
    QString currentVersion;
    QString notes;  // empty where there are none
    bool notesAreMarkdown = false;
    bool isCritical = false;     // cannot be skipped
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
class UserDriver {
public:
    UserDriver() = default;
    UserDriver(const UserDriver&) = delete;
    UserDriver& operator=(const UserDriver&) = delete;
    UserDriver(UserDriver&&) = delete;
    UserDriver& operator=(UserDriver&&) = delete;
    virtual ~UserDriver() = default;

    /// Tells that this copy is updated by the system's own software updater. Called again while the window is open, the
    /// window comes to the front.
    virtual void showUpdatesComeWithSystem() = 0;
};

}  // namespace ravlin
