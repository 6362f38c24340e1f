#include "Updater/PackageKitSource.h"

#include <QDBusConnection>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace ravlin {
namespace {

using Error = PackageKitTransaction::Error;

// PackageKit's flags.
constexpr qulonglong kNoFilter = 1U << 1U;
constexpr qulonglong kInstalledOnly = 1U << 2U;
constexpr qulonglong kTrustedOnly = 1U << 1U;  // of what may be installed

constexpr std::chrono::seconds kPatience{60};

constexpr QLatin1Char kSeparator(';');  // in identifiers

UpdateFailure failureOf(const PackageKitTransaction::Result& result) {
    if (result.error == Error::noNetwork || result.error == Error::downloadFailed)
        return {.error = UpdateError::notDownloaded, .detail = {}};
    const bool isRefused = result.error == Error::notAuthorized;
    return {.error = UpdateError::notInstalled,
            .detail = isRefused ? QStringLiteral("it was not authorized") : result.detail};
}

}  // namespace

PackageKitSource::PackageKitSource(Copy copy) : copy_(std::move(copy)) {
    checkDeadline_.setSingleShot(true);
    checkDeadline_.setInterval(kPatience);
    connect(&checkDeadline_, &QTimer::timeout, this, [this] {
        cancel();
        conclude(UpdateFailure{.error = UpdateError::notFetched, .detail = {}});
    });
}

bool PackageKitSource::isOwn(const QString& identifier) const {
    return identifier.section(kSeparator, 0, 0) == copy_.package;
}

void PackageKitSource::run(const char* method, const QVariantList& arguments, Handler handler) {
    // The previous transaction may be the one that just ended.
    if (transaction_ != nullptr) transaction_.release()->deleteLater();
    transaction_ = std::make_unique<PackageKitTransaction>(QDBusConnection::systemBus());
    connect(transaction_.get(), &PackageKitTransaction::finished, this, handler);
    connect(transaction_.get(), &PackageKitTransaction::installing, this, &UpdateSource::installing);
    transaction_->run(QString::fromLatin1(method), arguments);
}

void PackageKitSource::check(bool /*isAskedForByUser*/) {
    update_.clear();
    checkDeadline_.start();
    run("GetUpdates", {kNoFilter}, &PackageKitSource::handleUpdates);
}

void PackageKitSource::conclude(const CheckResult& result) {
    checkDeadline_.stop();
    Q_EMIT checked(result);
}

void PackageKitSource::handleUpdates(const Result& result) {
    const auto own = std::ranges::find_if(result.packages, [this](const QString& each) { return isOwn(each); });
    if (!result.hasWorked) {
        conclude(resultWithoutPackage(result));
    } else if (own == result.packages.end()) {
        run("Resolve", {kInstalledOnly, QStringList(copy_.package)}, &PackageKitSource::handleInstalled);
    } else {
        update_ = *own;
        conclude(FoundUpdate{.version = own->section(kSeparator, 1, 1),
                             .currentVersion = copy_.version,
                             .notes = {},
                             .canBeSkipped = false,
                             .link = {}});
    }
}

/// A copy that is not a package has no update, but is not up to date either.
void PackageKitSource::handleInstalled(const Result& result) {
    const bool isPackage =
        result.hasWorked && std::ranges::any_of(result.packages, [this](const QString& each) { return isOwn(each); });
    conclude(isPackage ? CheckResult(UpToDate{}) : CheckResult(ComesWithSystem{copy_.provider}));
}

CheckResult PackageKitSource::resultWithoutPackage(const Result& result) const {
    if (!result.isPresent || result.error == Error::notSupported) return ComesWithSystem{copy_.provider};
    return UpdateFailure{.error = UpdateError::notFetched, .detail = {}};
}

void PackageKitSource::install() {
    run("UpdatePackages", {kTrustedOnly, QStringList(update_)}, &PackageKitSource::handleUpdated);
}

void PackageKitSource::handleUpdated(const Result& result) {
    if (result.hasWorked) {
        Q_EMIT installed(copy_.executable);
    } else {
        Q_EMIT failed(failureOf(result));
    }
}

void PackageKitSource::cancel() {
    checkDeadline_.stop();
    if (transaction_ == nullptr) return;
    transaction_->disconnect(this);
    transaction_->cancel();
}

}  // namespace ravlin
