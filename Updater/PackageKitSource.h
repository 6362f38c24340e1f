#pragma once

#include "Updater/PackageKitTransaction.h"
#include "Updater/UpdateSource.h"

#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>

namespace ravlin {

/// Updates of a copy that the system's package manager has installed. PackageKit is asked if it is present and knows
/// the package; it verifies, asks for the right to install, and installs. There is no other way: without it the user
/// only learns who updates this copy.
class PackageKitSource final : public UpdateSource {
    Q_OBJECT

public:
    struct Copy {
        QString package;     // "ravlin"
        QString version;     // the running one
        QString executable;  // restarted after an update
        QString provider;    // "Debian", or empty
    };

    explicit PackageKitSource(Copy copy);

    /// How long a check may take, since PackageKit may be busy with something else.
    void setPatience(std::chrono::milliseconds patience) { checkDeadline_.setInterval(patience); }

    void check(bool isAskedForByUser) override;
    void install() override;
    void skip() override {}  // only the user ever checks
    void cancel() override;

private:
    using Result = PackageKitTransaction::Result;
    using Handler = void (PackageKitSource::*)(const Result&);

    bool isOwn(const QString& identifier) const;
    void run(const char* method, const QVariantList& arguments, Handler handler);
    void conclude(const CheckResult& result);
    void handleUpdates(const Result& result);
    void handleInstalled(const Result& result);
    void handleUpdated(const Result& result);
    CheckResult resultWithoutPackage(const Result& result) const;

    Copy copy_;
    QString update_;  // identifier of the package found
    std::unique_ptr<PackageKitTransaction> transaction_;
    QTimer checkDeadline_;
};

}  // namespace ravlin
