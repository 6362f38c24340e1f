#include "App/SingleInstance.h"

#include "Platform/Desktop/DBusLimits.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace ravlin {
namespace {

constexpr QLatin1String kName("org.ravlin.ravlin");
constexpr QLatin1String kPath("/org/ravlin/ravlin");
constexpr QLatin1String kActivationToken("activation-token");
constexpr QLatin1String kStartupId("desktop-startup-id");

/// The first instance answers at once unless it is waiting for a hung clipboard, and such a wait stays within this
/// limit.
constexpr int kAnswerLimit = 2500;  // ms

/// The text of this name; "" if there is none, or something else.
QString textIn(const QVariantMap& platformData, QLatin1String name) {
    const QVariant value = platformData.value(name);
    return value.userType() == QMetaType::QString ? DBusLimits::accept(value.toString()) : QString();
}

}  // namespace

SingleInstance::SingleInstance() : bus_(QDBusConnection::sessionBus()) {}

SingleInstance::~SingleInstance() {
    bus_.unregisterService(kName);
    bus_.unregisterObject(kPath);
}

SingleInstance::Role SingleInstance::claim(const Launch& launch) {
    if (!bus_.isConnected()) return Role::first;
    // Before the name: programs that wait for the name call as soon as it is taken.
    bus_.registerObject(kPath, this, QDBusConnection::ExportScriptableContents);
    if (takeName()) return Role::first;
    if (activateOther(launch)) return Role::second;
    // The other process may have ended meanwhile.
    return takeName() ? Role::first : Role::silent;
}

bool SingleInstance::takeName() {
    return bus_.interface()->registerService(kName) == QDBusConnectionInterface::ServiceRegistered;
}

bool SingleInstance::activateOther(const Launch& launch) {
    QVariantMap platformData;
    if (!launch.activationToken.isEmpty()) platformData.insert(kActivationToken, launch.activationToken);
    if (!launch.startupId.isEmpty()) platformData.insert(kStartupId, QString::fromLatin1(launch.startupId));
    QDBusMessage call = QDBusMessage::createMethodCall(kName, kPath, QStringLiteral("org.freedesktop.Application"),
                                                       QStringLiteral("Activate"));
    call.setAutoStartService(false);
    call << platformData;
    return bus_.call(call, QDBus::Block, kAnswerLimit).type() == QDBusMessage::ReplyMessage;
}

void SingleInstance::Activate(const QVariantMap& platformData) {
    Q_EMIT activated(Launch::of(textIn(platformData, kActivationToken), textIn(platformData, kStartupId).toLatin1()));
}

void SingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void SingleInstance::ActivateAction(const QString& /*name*/, const QVariantList& /*parameter*/,
                                    const QVariantMap& /*platformData*/) {}  // the desktop file names no actions

}  // namespace ravlin
