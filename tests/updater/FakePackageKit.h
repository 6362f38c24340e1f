#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <string>
#include <vector>

namespace ravlin::tests {

/// The part of a PackageKit transaction that Ravlin uses. Its methods record how they were called, and then do what the
/// test wants.
class FakeTransaction final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.PackageKit.Transaction")

public:
    Q_SLOT Q_SCRIPTABLE void GetUpdates(qulonglong filter) { note("GetUpdates", filter, {}, onGetUpdates); }
    Q_SLOT Q_SCRIPTABLE void Resolve(qulonglong filter, const QStringList& packages) {
        note("Resolve", filter, packages, onResolve);
    }
    Q_SLOT Q_SCRIPTABLE void UpdatePackages(qulonglong flags, const QStringList& packages) {
        note("UpdatePackages", flags, packages, onUpdate);
    }
    Q_SLOT Q_SCRIPTABLE void Cancel() { note("Cancel", 0, {}, {}); }

    std::vector<std::string> calls;
    std::function<void()> onGetUpdates;
    std::function<void()> onResolve;
    std::function<void()> onUpdate;

private:
    void note(const std::string& method, qulonglong bits, const QStringList& packages,
              const std::function<void()>& answer) {
        calls.push_back(method + " " + std::to_string(bits) + " " + packages.join(QLatin1Char(',')).toStdString());
        if (answer) answer();
    }
};

/// PackageKit on the tests' own system bus.
class FakePackageKit final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.PackageKit")

public:
    FakePackageKit();
    ~FakePackageKit() override;

    Q_SLOT Q_SCRIPTABLE QDBusObjectPath CreateTransaction();

    // What it sends to those who listen to the transaction.
    void package(uint info, const char* identifier);
    void errorCode(uint code, const char* details);
    void status(uint status);
    void finished(uint exit);

    /// Disappears in the middle of everything.
    void crash();

    FakeTransaction transaction;

private:
    void emitSignal(const char* interface, const char* name, const QVariantList& arguments);

    QDBusConnection bus_;
};

}  // namespace ravlin::tests
