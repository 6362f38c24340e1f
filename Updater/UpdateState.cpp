#include "Updater/UpdateState.h"

#include <QStandardPaths>

namespace ravlin {
namespace {

constexpr QLatin1String kHasLaunchedBefore("HasLaunchedBefore");
constexpr QLatin1String kEnableAutomaticChecks("EnableAutomaticChecks");
constexpr QLatin1String kLastCheckTime("LastCheckTime");
constexpr QLatin1String kSkippedVersion("SkippedVersion");
constexpr QLatin1String kNewestFeed("NewestFeed");

}  // namespace

UpdateState::UpdateState(const QString& file) : file_(file, QSettings::IniFormat) {}

QString UpdateState::userFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/ravlin/updater.ini");
}

bool UpdateState::hasLaunchedBefore() const {
    return file_.value(kHasLaunchedBefore).toBool();
}

void UpdateState::setLaunchedBefore() {
    set(kHasLaunchedBefore, true);
}

std::optional<bool> UpdateState::automaticChecks() const {
    const QVariant answer = file_.value(kEnableAutomaticChecks);
    return answer.isValid() ? std::optional(answer.toBool()) : std::nullopt;
}

void UpdateState::setAutomaticChecks(bool isAutomatic) {
    set(kEnableAutomaticChecks, isAutomatic);
}

QDateTime UpdateState::lastCheck() const {
    return time(kLastCheckTime);
}

void UpdateState::setLastCheck(const QDateTime& time) {
    set(kLastCheckTime, time.toUTC().toString(Qt::ISODate));
}

QString UpdateState::skippedVersion() const {
    return file_.value(kSkippedVersion).toString();
}

void UpdateState::setSkippedVersion(const QString& version) {
    set(kSkippedVersion, version);
}

QDateTime UpdateState::newestFeed() const {
    return time(kNewestFeed);
}

void UpdateState::setNewestFeed(const QDateTime& date) {
    set(kNewestFeed, date.toUTC().toString(Qt::ISODate));
}

QDateTime UpdateState::time(QLatin1String name) const {
    return QDateTime::fromString(file_.value(name).toString(), Qt::ISODate);
}

void UpdateState::set(QLatin1String name, const QVariant& value) {
    file_.setValue(name, value);
    file_.sync();  // to survive a kill at log-out
}

}  // namespace ravlin
