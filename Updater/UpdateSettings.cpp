#include "Updater/UpdateSettings.h"

#include "Updater/Address.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace ravlin {
namespace {

/// A value as it is written: Qt makes a list of one with commas.
QString textOf(const QSettings& file, QLatin1String name) {
    return file.value(QLatin1String("Update/") + name).toStringList().join(QLatin1Char(',')).trimmed();
}

std::optional<std::vector<PublicKey>> parseKeys(const QString& text) {
    std::vector<PublicKey> keys;
    for (const QString& each : text.split(QLatin1Char(','))) {
        const std::optional<PublicKey> key = Signature::parsePublicKey(each.trimmed().toLatin1());
        if (!key) return std::nullopt;
        keys.push_back(*key);
    }
    return keys;
}

std::chrono::seconds parseInterval(const QString& text) {
    bool isNumber = false;
    const std::chrono::seconds interval(text.toInt(&isNumber));
    return isNumber ? std::max(interval, UpdateSettings::kShortestInterval) : UpdateSettings::kUsualInterval;
}

std::optional<bool> parseAnswer(const QString& text) {
    if (text == QLatin1String("true")) return true;
    if (text == QLatin1String("false")) return false;
    return std::nullopt;
}

void readFeedSettings(const QSettings& file, UpdateSettings& settings) {
    settings.kind = InstallKind::appimage;
    settings.feed = QUrl(textOf(file, QLatin1String("FeedURL")), QUrl::StrictMode);
    const auto keys = parseKeys(textOf(file, QLatin1String("PublicEDKey")));
    if (!Address::isSafe(settings.feed)) {
        settings.problem = QStringLiteral("FeedURL is not an https address");
    } else if (!keys) {
        settings.problem = QStringLiteral("PublicEDKey is not a list of Ed25519 keys in Base64");
    } else {
        settings.keys = *keys;
    }
    settings.interval = parseInterval(textOf(file, QLatin1String("ScheduledCheckInterval")));
    settings.automaticChecks = parseAnswer(textOf(file, QLatin1String("EnableAutomaticChecks")));
}

}  // namespace

UpdateSettings UpdateSettings::read(const QString& file) {
    UpdateSettings settings;
    if (!QFileInfo::exists(file)) return settings;
    const QSettings ini(file, QSettings::IniFormat);
    const QString kind = textOf(ini, QLatin1String("InstallKind"));
    settings.provider = textOf(ini, QLatin1String("Provider"));
    if (ini.status() != QSettings::NoError) {
        settings.problem = QStringLiteral("the file cannot be read");
    } else if (kind == QLatin1String("appimage")) {
        readFeedSettings(ini, settings);
    } else if (!kind.isEmpty() && kind != QLatin1String("system")) {
        settings.problem = QStringLiteral("InstallKind is neither system nor appimage");
    }
    return settings;
}

UpdateSettings UpdateSettings::forProgram(const QString& executable) {
    const bool isSandboxed = QFileInfo::exists(QStringLiteral("/.flatpak-info")) || qEnvironmentVariableIsSet("SNAP");
    if (isSandboxed) return {};
    return read(QDir::cleanPath(QFileInfo(executable).path() + QStringLiteral("/../share/ravlin/update.ini")));
}

}  // namespace ravlin
