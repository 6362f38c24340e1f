#pragma once

#include "Updater/UserDriver.h"

#include <QObject>
#include <QString>

#include <variant>

namespace ravlin {

struct UpToDate {};
struct SystemTooOld {
    QString newVersion;
};
struct ComesWithSystem {
    QString provider;
};

/// What a check found.
using CheckResult = std::variant<FoundUpdate, UpToDate, SystemTooOld, ComesWithSystem, UpdateFailure>;

/// Where updates come from and how they are installed. One thing is done at a time.
class UpdateSource : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Looks for an update; `checked` follows later.
    virtual void check(bool isAskedForByUser) = 0;

    /// Installs what the last check found: `progressed`, `installing` and `installed` follow, or `failed`, which may
    /// come at once.
    virtual void install() = 0;

    /// Stops offering what the last check found, unless the user asks for a check.
    virtual void skip() = 0;

    /// Gives up, unless installation has begun. No signal follows.
    virtual void cancel() = 0;

Q_SIGNALS:
    void checked(const ravlin::CheckResult& result);
    void progressed(qint64 receivedBytes, qint64 totalBytes);

    /// The update has arrived, and is now being put in place.
    void installing();

    /// The new version is in place; start it through `file`.
    void installed(const QString& file);

    void failed(const ravlin::UpdateFailure& failure);
};

}  // namespace ravlin
