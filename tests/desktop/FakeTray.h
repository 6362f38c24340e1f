#pragma once

#include "Engine/Support/NonCopyable.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QStringList>
#include <QTest>

#include <functional>

namespace ravlin::tests {

/// Lets events happen until `condition` holds; false after a generous deadline.
inline bool eventually(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 10'000);
}

/// A separate connection to the session bus: another program, as far as the bus can tell.
class BusConnection : NonCopyable {
public:
    BusConnection() : name_(QStringLiteral("fake%1").arg(++count_)) {
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, name_);
    }
    ~BusConnection() { QDBusConnection::disconnectFromBus(name_); }

    QDBusConnection operator*() const { return QDBusConnection(name_); }

private:
    static inline int count_ = 0;
    QString name_;
};

/// The desktop's list of tray icons, together with one host that asks the registered item questions as hosts do.
class FakeTray final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost_ SCRIPTABLE true)

public:
    explicit FakeTray(bool hasHost = true) : hasHost_(hasHost) {
        bus().registerObject(QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportScriptableContents);
        bus().registerService(serviceName());
    }
    /// Nothing that the bus reports to the program under test after this is about this tray any more.
    ~FakeTray() override {
        bus().unregisterService(serviceName());
        QDBusConnection::sessionBus().interface()->isServiceRegistered(serviceName());
    }

    QDBusConnection bus() const { return *connection_; }

    /// The registrations so far, in order.
    const QStringList& registrations() const { return registrations_; }

    void addHost() {
        hasHost_ = true;
        Q_EMIT StatusNotifierHostRegistered();
    }

    /// What the item that registered last answers.
    QDBusMessage ask(const QString& path, const QString& interface, const QString& method,
                     const QVariantList& arguments = {}) const {
        QDBusMessage call = QDBusMessage::createMethodCall(registrations_.last(), path, interface, method);
        call.setArguments(arguments);
        const QDBusPendingCall answer = bus().asyncCall(call);
        return eventually([&] { return answer.isFinished(); }) ? answer.reply() : QDBusMessage();
    }

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& service) { registrations_.append(service); }

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierHostRegistered();

private:
    static QString serviceName() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }

    BusConnection connection_;
    bool hasHost_;
    QStringList registrations_;
};

}  // namespace ravlin::tests
