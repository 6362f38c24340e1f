#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <cstdint>
#include <optional>

namespace ravlin {

/// One query to PackageKit, or one job for it. It ends with `finished`, even if PackageKit quits first.
class PackageKitTransaction final : public QObject {
    Q_OBJECT

public:
    /// Some of PackageKit's numbers.
    enum class Error : std::uint32_t {
        noNetwork = 2,
        notSupported = 3,
        downloadFailed = 10,
        cancelled = 17,
        notAuthorized = 48,
    };

    struct Result {
        bool isPresent = true;   // PackageKit is on this system, and answers
        bool hasWorked = false;  // otherwise `error` and `detail` may say why
        std::optional<Error> error;
        QString detail;
        QStringList packages;  // identifiers: "name;version;architecture;origin"
    };

    explicit PackageKitTransaction(QDBusConnection bus, QObject* parent = nullptr);

    /// Calls `method` of a new transaction. Call this once.
    void run(const QString& method, const QVariantList& arguments);

    /// Asks PackageKit to stop. `finished` still follows.
    void cancel();

Q_SIGNALS:
    /// Everything has been fetched, and is now being installed.
    void installing();
    void finished(const ravlin::PackageKitTransaction::Result& result);

private:
    void handleCreated(const QDBusPendingCallWatcher& created, const QString& method, const QVariantList& arguments);
    void listen();
    QDBusPendingCallWatcher* call(const QDBusMessage& message);
    void end(const Result& result);
    Q_SLOT void endAsItIs();

    Q_SLOT void addPackage(uint info, const QString& identifier, const QString& summary);
    Q_SLOT void noteError(uint code, const QString& details);
    Q_SLOT void noteProperties(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);
    Q_SLOT void handleFinished(uint exit, uint runtime);

    QDBusConnection bus_;
    QString path_;
    Result result_;
    bool isOver_ = false;
};

}  // namespace ravlin
