#include "tests/updater/FakePackageKit.h"

#include <stdexcept>

namespace ravlin::tests {
namespace {

QString path() {
    return QStringLiteral("/42_transaction");
}
QString service() {
    return QStringLiteral("org.freedesktop.PackageKit");
}
QString connectionName() {
    return QStringLiteral("packagekit");
}

}  // namespace

FakePackageKit::FakePackageKit() : bus_(QDBusConnection::connectToBus(QDBusConnection::SystemBus, connectionName())) {
    const bool isThere = bus_.registerObject(QStringLiteral("/org/freedesktop/PackageKit"), this,
                                             QDBusConnection::ExportScriptableContents) &&
                         bus_.registerObject(path(), &transaction, QDBusConnection::ExportScriptableContents) &&
                         bus_.registerService(service());
    if (!isThere) throw std::runtime_error("cannot be on the bus");
}

FakePackageKit::~FakePackageKit() {
    QDBusConnection::disconnectFromBus(connectionName());
}

QDBusObjectPath FakePackageKit::CreateTransaction() {
    return QDBusObjectPath(path());
}

void FakePackageKit::package(uint info, const char* identifier) {
    emitSignal("org.freedesktop.PackageKit.Transaction", "Package",
               {info, QString::fromUtf8(identifier), QStringLiteral("a summary")});
}

void FakePackageKit::errorCode(uint code, const char* details) {
    emitSignal("org.freedesktop.PackageKit.Transaction", "ErrorCode", {code, QString::fromUtf8(details)});
}

void FakePackageKit::status(uint status) {
    emitSignal("org.freedesktop.DBus.Properties", "PropertiesChanged",
               {QStringLiteral("org.freedesktop.PackageKit.Transaction"),
                QVariantMap{{QStringLiteral("Status"), status}}, QStringList()});
}

void FakePackageKit::finished(uint exit) {
    emitSignal("org.freedesktop.PackageKit.Transaction", "Finished", {exit, uint{12}});
}

void FakePackageKit::crash() {
    bus_.unregisterService(service());
}

void FakePackageKit::emitSignal(const char* interface, const char* name, const QVariantList& arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(path(), QString::fromUtf8(interface), QString::fromUtf8(name));
    signal.setArguments(arguments);
    bus_.send(signal);
}

}  // namespace ravlin::tests
