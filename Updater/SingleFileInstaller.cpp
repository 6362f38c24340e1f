#include "Updater/SingleFileInstaller.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <array>

#include <linux/close_range.h>
#include <unistd.h>

namespace ravlin {
namespace {

UpdateFailure notFromASingleFile() {
    return {.error = UpdateError::notFromASingleFile, .detail = {}};
}

bool isInside(const QString& file, const QString& folder) {
    return !file.isEmpty() && !folder.isEmpty() && file.startsWith(folder + QLatin1Char('/'));
}

QString causeOfFailure(const QString& folder, qsizetype size) {
    const QStorageInfo disk(folder);
    if (disk.isValid() && disk.bytesAvailable() < size) return QStringLiteral("there is not enough free space");
    return QStringLiteral("the file could not be written");
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
    const bool isOwn = file.ownerId() == geteuid() && QFileInfo(file.path()).isWritable();
    if (!isOwn) return UpdateFailure{.error = UpdateError::mayNotReplace, .detail = file.filePath()};
    return file.filePath();
}

std::optional<QString> SingleFileInstaller::replace(const QString& file, const QByteArray& contents) {
    QSaveFile saved(file);
    saved.setDirectWriteFallback(false);  // which would write over the old file
    const QFile::Permissions permissions = QFile::permissions(file) | QFile::ExeOwner | QFile::ExeUser;
    const bool isWritten = saved.open(QIODevice::WriteOnly) && saved.write(contents) == contents.size() &&
                           saved.setPermissions(permissions) && saved.commit();
    if (isWritten) return std::nullopt;
    saved.cancelWriting();
    return causeOfFailure(QFileInfo(file).path(), contents.size());
}

void SingleFileInstaller::relaunch(const QString& file) {
    for (const char* const name : {"APPDIR", "APPIMAGE", "ARGV0", "OWD", "LD_LIBRARY_PATH"}) qunsetenv(name);
    QByteArray path = QFile::encodeName(file);
    const std::array<char*, 2> arguments = {path.data(), nullptr};
    // What the old file keeps open would otherwise stay open, and with it what it has mounted.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    execv(path.constData(), arguments.data());
}

}  // namespace ravlin
