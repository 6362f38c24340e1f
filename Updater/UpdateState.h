#pragma once

#include <QDateTime>
#include <QSettings>
#include <QString>

#include <optional>

namespace ravlin {

/// What the update component remembers between runs, in its own file in the user's configuration.
class UpdateState {
public:
    explicit UpdateState(const QString& file = userFile());

    /// Where a user's state is kept.
    static QString userFile();

    bool hasLaunchedBefore() const;
    void setLaunchedBefore();

    /// Whether the user lets Ravlin look for updates on its own; nothing before they have answered.
    std::optional<bool> automaticChecks() const;
    void setAutomaticChecks(bool isAutomatic);

    /// When the last check began; invalid before the first one.
    QDateTime lastCheck() const;
    void setLastCheck(const QDateTime& time);

    /// The version that the user does not want offered again, or empty.
    QString skippedVersion() const;
    void setSkippedVersion(const QString& version);

    /// The newest date of a feed that was accepted; invalid before the first one.
    QDateTime newestFeed() const;
    void setNewestFeed(const QDateTime& date);

private:
    QDateTime time(QLatin1String name) const;
    void set(QLatin1String name, const QVariant& value);

    QSettings file_;
};

}  // namespace ravlin
