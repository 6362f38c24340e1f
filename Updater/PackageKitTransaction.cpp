#include "Updater/PackageKitTransaction.h"

#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

#include <utility>

namespace ravlin {
namespace {

const QString& service() {
    static const QString name = QStringLiteral("org.freedesktop.PackageKit");
    return name;
}
const QString& transactionInterface() {
    static const QString name = QStringLiteral("org.freedesktop.PackageKit.Transaction");
    return name;
}

// PackageKit's numbers.
constexpr uint kSuccess = 1;         // of an exit
constexpr uint kBlockedPackage = 9;  // of a package: it cannot be updated now
constexpr uint kInstalling = 9;      // of a status
constexpr uint kUpdating = 10;

// Limits on PackageKit's answers: more than any system has honest reasons for.
constexpr qsizetype kMaxPackages = 100'000;
constexpr qsizetype kMaxIdentifierSize = 1024;  // UTF-16 units
constexpr qsizetype kMaxDetailSize = 200;       // as much as a window can show

QString detailOf(const QString& text) {
    const QString start = text.left(4 * kMaxDetailSize).simplified();
    return start.size() <= kMaxDetailSize ? start : start.left(kMaxDetailSize - 1) + QChar(0x2026);
}

QDBusMessage messageTo(const QString& path, const QString& interface, const QString& method,
                       const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service(), path, interface, method);
    message.setArguments(arguments);
    return message;
}

}  // namespace

PackageKitTransaction::PackageKitTransaction(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    auto* const watcher = new QDBusServiceWatcher(service(), bus_, QDBusServiceWatcher::WatchForUnregistration, this);
    // PackageKit quits when it is idle, perhaps at this very moment, and the next call starts it again.
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (!path_.isEmpty()) end(result_);
    });
}

void PackageKitTransaction::run(const QString& method, const QVariantList& arguments) {
    if (!bus_.isConnected()) {
        // A call would never be answered, not even with an error.
        result_.isPresent = false;
        QMetaObject::invokeMethod(this, "endAsItIs", Qt::QueuedConnection);
        return;
    }
    QDBusPendingCallWatcher* const created = call(
        messageTo(QStringLiteral("/org/freedesktop/PackageKit"), service(), QStringLiteral("CreateTransaction"), {}));
    connect(created, &QDBusPendingCallWatcher::finished, this,
            [this, created, method, arguments] { handleCreated(*created, method, arguments); });
}

void PackageKitTransaction::handleCreated(const QDBusPendingCallWatcher& created, const QString& method,
                                          const QVariantList& arguments) {
    const QDBusPendingReply<QDBusObjectPath> path = created;
    if (path.isError()) {
        result_.isPresent = false;
        return end(result_);
    }
    path_ = path.value().path();
    listen();
    QDBusPendingCallWatcher* const started = call(messageTo(path_, transactionInterface(), method, arguments));
    connect(started, &QDBusPendingCallWatcher::finished, this, [this, started] {
        if (!started->isError()) return;
        result_.detail = detailOf(started->error().message());
        end(result_);
    });
}

void PackageKitTransaction::listen() {
    const QString& interface = transactionInterface();
    bus_.connect(service(), path_, interface, QStringLiteral("Package"), this,
                 SLOT(addPackage(uint, QString, QString)));
    bus_.connect(service(), path_, interface, QStringLiteral("ErrorCode"), this, SLOT(noteError(uint, QString)));
    bus_.connect(service(), path_, interface, QStringLiteral("Finished"), this, SLOT(handleFinished(uint, uint)));
    bus_.connect(service(), path_, QStringLiteral("org.freedesktop.DBus.Properties"),
                 QStringLiteral("PropertiesChanged"), this, SLOT(noteProperties(QString, QVariantMap, QStringList)));
}

QDBusPendingCallWatcher* PackageKitTransaction::call(const QDBusMessage& message) {
    return new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
}

void PackageKitTransaction::cancel() {
    if (!path_.isEmpty()) bus_.send(messageTo(path_, transactionInterface(), QStringLiteral("Cancel"), {}));
}

void PackageKitTransaction::addPackage(uint info, const QString& identifier, const QString& /*summary*/) {
    const bool isAcceptable = identifier.size() <= kMaxIdentifierSize && result_.packages.size() < kMaxPackages;
    if (info != kBlockedPackage && isAcceptable) result_.packages.append(identifier);
}

void PackageKitTransaction::noteError(uint code, const QString& details) {
    result_.error = static_cast<Error>(code);
    result_.detail = detailOf(details);
}

void PackageKitTransaction::noteProperties(const QString& /*interface*/, const QVariantMap& changed,
                                           const QStringList& /*invalidated*/) {
    const uint status = changed.value(QStringLiteral("Status")).toUInt();
    if (!isOver_ && (status == kInstalling || status == kUpdating)) Q_EMIT installing();
}

void PackageKitTransaction::handleFinished(uint exit, uint /*runtime*/) {
    result_.hasWorked = exit == kSuccess;
    end(result_);
}

void PackageKitTransaction::endAsItIs() {
    end(result_);
}

void PackageKitTransaction::end(const Result& result) {
    if (isOver_) return;
    isOver_ = true;
    Q_EMIT finished(result);
}

}  // namespace ravlin
