#include "Updater/PackageKitSource.h"
#include "Updater/Updater.h"
#include "tests/updater/FakePackageKit.h"
#include "tests/updater/RecordingUser.h"

#include <QTest>

#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using tests::FakePackageKit;
using tests::RecordingUser;
using State = Updater::State;

constexpr int kDeadline = 30'000;  // ms

// PackageKit's numbers.
constexpr uint kNormal = 5;
constexpr uint kBlocked = 9;
constexpr uint kInstalled = 1;
constexpr uint kSuccess = 1;
constexpr uint kFailed = 2;
constexpr uint kDownloading = 8;
constexpr uint kUpdating = 10;

/// A copy of Ravlin 1.0.0 that the system's package manager has installed.
class PackageKitSourceTest : public testing::Test {
protected:
    PackageKitSourceTest() {
        QObject::connect(&updater, &Updater::relaunchRequested,
                         [this](const QString& file) { relaunched = file.toStdString(); });
    }

    FakePackageKit& packageKit() {
        if (service == nullptr) service = std::make_unique<FakePackageKit>();
        return *service;
    }
    void offer(const char* identifier, uint info = kNormal) {
        packageKit().transaction.onGetUpdates = [=, this] {
            service->package(kNormal, "other;9.9;amd64;stable");
            service->package(info, identifier);
            service->finished(kSuccess);
        };
    }
    std::string check() {
        updater.checkForUpdates();
        if (!QTest::qWaitFor([this] { return updater.state() != State::checking; }, kDeadline)) return "never answered";
        return user.last();
    }
    std::string install() {
        user.answer(UpdateAnswer::install);
        const auto isOver = [this] { return updater.state() == State::idle || !relaunched.empty(); };
        if (!QTest::qWaitFor(isOver, kDeadline)) return "never answered";
        return relaunched.empty() ? user.last() : "relaunched";
    }

    std::unique_ptr<FakePackageKit> service;
    PackageKitSource source{{.package = QStringLiteral("ravlin"),
                             .version = QStringLiteral("1.0.0"),
                             .executable = QStringLiteral("/usr/bin/ravlin"),
                             .provider = QStringLiteral("Debian")}};
    RecordingUser user;
    Updater updater{source, user, nullptr, QStringLiteral("1.0.0")};
    std::string relaunched;
};

TEST_F(PackageKitSourceTest, AnUpdateIsOfferedInstalledAndStarted) {
    offer("ravlin;1.1.0-1;amd64;stable");
    EXPECT_EQ(check(), "found 1.1.0-1");
    EXPECT_EQ(user.found.currentVersion.toStdString(), "1.0.0");
    EXPECT_FALSE(user.found.canBeSkipped);
    packageKit().transaction.onUpdate = [this] {
        service->status(kDownloading);
        service->status(kUpdating);
        service->finished(kSuccess);
    };
    EXPECT_EQ(install(), "relaunched");
    EXPECT_EQ(relaunched, "/usr/bin/ravlin");
    EXPECT_THAT(user.told, ElementsAre("checking", "found 1.1.0-1", "downloading", "installing", "dismissed"));
    // No filter, and only packages that a repository has signed.
    EXPECT_THAT(packageKit().transaction.calls,
                ElementsAre("GetUpdates 2 ", "UpdatePackages 2 ravlin;1.1.0-1;amd64;stable"));
}

TEST_F(PackageKitSourceTest, ACopyWithoutAnUpdateIsUpToDate) {
    offer("ravlin-extras;1.1.0;amd64;stable");
    packageKit().transaction.onResolve = [this] {
        service->package(kInstalled, "ravlin;1.0.0-1;amd64;installed:stable");
        service->finished(kSuccess);
    };
    EXPECT_EQ(check(), "up to date 1.0.0");
    EXPECT_THAT(packageKit().transaction.calls, ElementsAre("GetUpdates 2 ", "Resolve 4 ravlin"));
}

TEST_F(PackageKitSourceTest, AnUpdateThatIsHeldBackIsNone) {
    offer("ravlin;1.1.0-1;amd64;stable", kBlocked);
    packageKit().transaction.onResolve = [this] {
        service->package(kInstalled, "ravlin;1.0.0-1;amd64;installed:stable");
        service->finished(kSuccess);
    };
    EXPECT_EQ(check(), "up to date 1.0.0");
}

TEST_F(PackageKitSourceTest, WhereThePackageIsUnknownTheUserIsToldWhoUpdatesThisCopy) {
    offer("other;1;amd64;stable");
    packageKit().transaction.onResolve = [this] { service->finished(kSuccess); };
    EXPECT_EQ(check(), "comes with Debian");
}

TEST_F(PackageKitSourceTest, WithoutPackageKitTheUserIsToldWhoUpdatesThisCopy) {
    EXPECT_EQ(check(), "comes with Debian");
    EXPECT_EQ(check(), "comes with Debian");
}

TEST_F(PackageKitSourceTest, WhatABackEndCannotDoIsNotCalledAnError) {
    packageKit().transaction.onGetUpdates = [this] {
        service->errorCode(3, "not supported by this backend");
        service->finished(kFailed);
    };
    EXPECT_EQ(check(), "comes with Debian");
}

TEST_F(PackageKitSourceTest, AFailedCheckIsAnError) {
    packageKit().transaction.onGetUpdates = [this] {
        service->errorCode(2, "no network");
        service->finished(kFailed);
    };
    EXPECT_EQ(check(), "not fetched");
    packageKit().transaction.onGetUpdates = [this] { service->crash(); };
    EXPECT_EQ(check(), "not fetched");
}

TEST_F(PackageKitSourceTest, ASilentCheckIsGivenUp) {
    source.setPatience(std::chrono::milliseconds(200));
    packageKit().transaction.onGetUpdates = {};
    EXPECT_EQ(check(), "not fetched");
    EXPECT_TRUE(QTest::qWaitFor([this] { return packageKit().transaction.calls.back() == "Cancel 0 "; }, kDeadline));
}

TEST_F(PackageKitSourceTest, WhyAnInstallationFailedIsTold) {
    const struct {
        uint code;
        const char* details;
        const char* told;
    } cases[] = {
        {48, "Failed to obtain authentication.", "not installed: it was not authorized"},
        {2, "Cannot download packages whilst offline", "not downloaded"},
        {10, "404", "not downloaded"},
        {46, "No space\nleft on device", "not installed: No space left on device"},
    };
    offer("ravlin;1.1.0-1;amd64;stable");
    for (const auto& each : cases) {
        packageKit().transaction.onUpdate = [this, each] {
            service->errorCode(each.code, each.details);
            service->finished(kFailed);
        };
        EXPECT_EQ(check(), "found 1.1.0-1");
        EXPECT_EQ(install(), each.told);
    }
    packageKit().transaction.onUpdate = [this] { service->crash(); };
    EXPECT_EQ(check(), "found 1.1.0-1");
    EXPECT_EQ(install(), "not installed");
}

TEST_F(PackageKitSourceTest, CancellingIsPassedOn) {
    offer("ravlin;1.1.0-1;amd64;stable");
    EXPECT_EQ(check(), "found 1.1.0-1");
    user.answer(UpdateAnswer::install);
    ASSERT_TRUE(QTest::qWaitFor([this] { return packageKit().transaction.calls.size() == 2; }, kDeadline));
    user.cancel();
    EXPECT_EQ(updater.state(), State::idle);
    ASSERT_TRUE(QTest::qWaitFor([this] { return packageKit().transaction.calls.size() == 3; }, kDeadline));
    EXPECT_EQ(packageKit().transaction.calls.back(), "Cancel 0 ");
}

TEST_F(PackageKitSourceTest, WhatIsTooLongToBeTrueIsNotTaken) {
    offer(("ravlin;" + std::string(1024, '9') + ";amd64;stable").c_str());
    packageKit().transaction.onResolve = [this] {
        service->package(kInstalled, "ravlin;1.0.0-1;amd64;installed");
        service->finished(kSuccess);
    };
    EXPECT_EQ(check(), "up to date 1.0.0");
    offer("ravlin;1.1.0-1;amd64;stable");
    EXPECT_EQ(check(), "found 1.1.0-1");
    packageKit().transaction.onUpdate = [this] {
        service->errorCode(8, std::string(1 << 20, 'x').c_str());
        service->finished(kFailed);
    };
    EXPECT_EQ(install(), "not installed: " + std::string(199, 'x') + "\u2026");
}

}  // namespace
}  // namespace ravlin
