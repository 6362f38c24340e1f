#include "Updater/SingleFileInstaller.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <array>
#include <cstdio>

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

/// Where the new file stands before it takes the place of `file`: a name that nobody else gives to anything, so that
/// what a kill has left there may be removed.
QString stagedName(const QString& file) {
    return QLatin1Char('.') + QFileInfo(file).fileName() + QStringLiteral(".update");
}

/// Whether `name` is what QSaveFile writes `staged` as where a file cannot be without a name.
bool isTemporaryNameOf(const QString& staged, const QString& name) {
    constexpr int kSuffixSize = 7;  // a full stop and six letters
    return name.size() == staged.size() + kSuffixSize && name.startsWith(staged + QLatin1Char('.'));
}

bool moveOver(const QString& file, const QString& staged) {
    return std::rename(QFile::encodeName(staged).constData(), QFile::encodeName(file).constData()) == 0;
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
    removeRemains(file);
    const QString staged = QFileInfo(file).dir().filePath(stagedName(file));
    QSaveFile saved(staged);
    saved.setDirectWriteFallback(false);  // it is to be on the disk before it has a name
    const QFile::Permissions permissions = QFile::permissions(file) | QFile::ExeOwner | QFile::ExeUser;
    const bool isReplaced = saved.open(QIODevice::WriteOnly) && saved.write(contents) == contents.size() &&
                            saved.setPermissions(permissions) && saved.commit() && moveOver(file, staged);
    if (isReplaced) return std::nullopt;
    saved.cancelWriting();
    removeRemains(file);
    return causeOfFailure(QFileInfo(file).path(), contents.size());
}

void SingleFileInstaller::removeRemains(const QString& file) {
    QDir folder = QFileInfo(file).dir();
    const QString staged = stagedName(file);
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (name == staged || isTemporaryNameOf(staged, name)) folder.remove(name);
    }
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
