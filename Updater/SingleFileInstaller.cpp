#include "Updater/SingleFileInstaller.h"

#include "Updater/OpenedFolder.h"
#include "Updater/StagedFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>

#include <linux/close_range.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ravlin {
namespace {

UpdateFailure notFromASingleFile() {
    return {.error = UpdateError::notFromASingleFile, .detail = {}};
}

bool isInside(const QString& file, const QString& folder) {
    return !file.isEmpty() && !folder.isEmpty() && file.startsWith(folder + QLatin1Char('/'));
}

UpdateFailure folderIsShared(const QString& folder) {
    return {
        .error = UpdateError::notInstalled,
        .detail = QStringLiteral("other users may write to the folder \u201C%1\u201D; move Ravlin to one of your own")
                      .arg(folder)};
}

QString causeOfFailure(int error) {
    if (error == ENOSPC || error == EDQUOT) return QStringLiteral("there is not enough free space");
    return QStringLiteral("the file could not be written");
}

bool isFileOfOurs(const std::optional<struct stat>& status) {
    return status && S_ISREG(status->st_mode) && status->st_uid == geteuid();
}

/// No one else may write to the new file, whatever the old one allowed.
mode_t modeAfter(mode_t old) {
    constexpr mode_t kOthersWrite = S_IWGRP | S_IWOTH;
    return (old & ACCESSPERMS & ~kOthersWrite) | S_IXUSR;
}

}  // namespace

SingleFileInstaller::Surroundings SingleFileInstaller::Surroundings::current() {
    return {.appImage = qEnvironmentVariable("APPIMAGE"),
            .appDir = qEnvironmentVariable("APPDIR"),
            .executable = QCoreApplication::applicationFilePath()};
}

std::variant<QString, UpdateFailure> SingleFileInstaller::target(const Surroundings& surroundings) {
    if (surroundings.appImage.isEmpty() || surroundings.appDir.isEmpty()) return notFromASingleFile();
    const QString folder = QFileInfo(surroundings.appDir).canonicalFilePath();
    if (!isInside(QFileInfo(surroundings.executable).canonicalFilePath(), folder)) return notFromASingleFile();
    const QFileInfo file(QFileInfo(surroundings.appImage).canonicalFilePath());
    if (!file.isFile()) return notFromASingleFile();
    const std::optional<OpenedFolder> place = OpenedFolder::open(file.path());
    const bool isOwn = place && place->isWritable() && isFileOfOurs(place->status(QFile::encodeName(file.fileName())));
    if (!isOwn) return UpdateFailure{.error = UpdateError::mayNotReplace, .detail = file.filePath()};
    if (place->isShared()) return folderIsShared(file.path());
    return file.filePath();
}

std::optional<QString> SingleFileInstaller::replace(const QString& file, const QByteArray& contents) {
    const QFileInfo path(file);
    const QByteArray name = QFile::encodeName(path.fileName());
    const std::optional<OpenedFolder> folder = OpenedFolder::open(path.path());
    if (!folder) return causeOfFailure(errno);
    if (folder->isShared()) return folderIsShared(path.path()).detail;
    const auto old = folder->status(name);
    if (!isFileOfOurs(old)) return causeOfFailure(EACCES);
    StagedFile::removeRemains(*folder);
    StagedFile staged(*folder);
    if (staged.write(contents, modeAfter(old->st_mode)) && staged.replace(name)) return std::nullopt;
    return causeOfFailure(errno);
}

void SingleFileInstaller::removeRemains(const QString& file) {
    const std::optional<OpenedFolder> folder = OpenedFolder::open(QFileInfo(file).path());
    if (folder && !folder->isShared()) StagedFile::removeRemains(*folder);
}

void SingleFileInstaller::relaunch(const QString& file) {
    for (const char* const name : {"APPDIR", "APPIMAGE", "ARGV0", "OWD", "LD_LIBRARY_PATH"}) qunsetenv(name);
    QByteArray path = QFile::encodeName(file);
    const std::array<char*, 2> arguments = {path.data(), nullptr};
    // Otherwise what the old file keeps open would stay open, and with it what it has mounted.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    execv(path.constData(), arguments.data());
}

}  // namespace ravlin
