#pragma once

#include "Updater/UserDriver.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

/// Replaces the single executable file that Ravlin was started from.
namespace ravlin::SingleFileInstaller {

/// How this process was started. Programs inherit the environment of the program that started them, which may be an
/// AppImage too.
struct Surroundings {
    QString appImage;    // $APPIMAGE: the file that was started
    QString appDir;      // $APPDIR: where it unpacked itself to
    QString executable;  // the running program

    static Surroundings current();
};

/// The file to replace, with links resolved; or why there is none: the program was not unpacked from that file, or the
/// file is not the user's to change.
std::variant<QString, UpdateFailure> target(const Surroundings& surroundings);

/// Puts `contents` in the place of `file`, which stays as it is until the new file is completely on the disk. Returns
/// the cause if that fails; then `file` is as it was, and nothing is left beside it.
std::optional<QString> replace(const QString& file, const QByteArray& contents);

/// Removes what an earlier `replace` of `file` left beside it when its process was killed.
void removeRemains(const QString& file);

/// Becomes the program in `file`, as if it had been started from the desktop: the last thing that a process does.
/// Returns only if that fails.
void relaunch(const QString& file);

}  // namespace ravlin::SingleFileInstaller
