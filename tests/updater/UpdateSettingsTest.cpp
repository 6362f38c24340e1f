#include "Updater/UpdateSettings.h"
#include "Updater/UpdateState.h"
#include "tests/updater/SigningKey.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using tests::SigningKey;

class UpdateSettingsTest : public testing::Test {
protected:
    /// Each text is a separate file, since Qt remembers those that it has read.
    UpdateSettings read(const QByteArray& text) {
        QFile file(folder.filePath(QStringLiteral("%1.ini").arg(++files)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        return UpdateSettings::read(file.fileName());
    }
    UpdateSettings readFeed(const QByteArray& lines) { return read("[Update]\nInstallKind=appimage\n" + lines); }
    static QByteArray usual() {
        return "FeedURL=https://ravlin.example/appcast.xml\nPublicEDKey=" + SigningKey(1).publicKeyText() + "\n";
    }

    QTemporaryDir folder;
    int files = 0;
};

TEST_F(UpdateSettingsTest, WithoutThemTheCopyIsTheSystems) {
    for (const UpdateSettings& settings :
         {UpdateSettings::read(folder.filePath(QStringLiteral("missing.ini"))), read(""), read("[Update]\n"),
          read("[Update]\nInstallKind=system\nFeedURL=https://ravlin.example/\n")}) {
        EXPECT_EQ(settings.kind, InstallKind::system);
        EXPECT_TRUE(settings.problem.isEmpty());
    }
    EXPECT_EQ(read("[Update]\nProvider=Debian\n").provider.toStdString(), "Debian");
}

TEST_F(UpdateSettingsTest, ASingleFileHasAFeedAndItsKeys) {
    const UpdateSettings settings = readFeed(usual());
    EXPECT_EQ(settings.kind, InstallKind::appimage);
    EXPECT_EQ(settings.feed.toString().toStdString(), "https://ravlin.example/appcast.xml");
    EXPECT_EQ(settings.keys, std::vector{SigningKey(1).publicKey()});
    EXPECT_EQ(settings.interval, std::chrono::hours(24));
    EXPECT_EQ(settings.automaticChecks, std::nullopt);
    EXPECT_TRUE(settings.problem.isEmpty());
}

TEST_F(UpdateSettingsTest, SeveralKeysMaySign) {
    const UpdateSettings settings =
        readFeed("FeedURL=https://ravlin.example/\nPublicEDKey=" + SigningKey(1).publicKeyText() + ", " +
                 SigningKey(2).publicKeyText() + " ; old and new\n");
    EXPECT_EQ(settings.keys, (std::vector{SigningKey(1).publicKey(), SigningKey(2).publicKey()}));
}

TEST_F(UpdateSettingsTest, AddressesMayHaveCommasAndQuotedSemicolons) {
    EXPECT_EQ(readFeed("FeedURL=https://ravlin.example/a,b\nPublicEDKey=" + SigningKey(1).publicKeyText())
                  .feed.toString()
                  .toStdString(),
              "https://ravlin.example/a,b");
    EXPECT_EQ(readFeed("FeedURL=\"https://ravlin.example/a;b\"\nPublicEDKey=" + SigningKey(1).publicKeyText())
                  .feed.toString()
                  .toStdString(),
              "https://ravlin.example/a;b");
}

TEST_F(UpdateSettingsTest, TheIntervalIsAtLeastAnHour) {
    const auto interval = [this](const char* text) {
        return readFeed(usual() + "ScheduledCheckInterval=" + text + "\n").interval.count();
    };
    EXPECT_EQ(interval("7200"), 7200);
    EXPECT_EQ(interval("3600"), 3600);
    EXPECT_EQ(interval("3599"), 3600);
    EXPECT_EQ(interval("-1"), 3600);
    EXPECT_EQ(interval("daily"), 86'400);
}

TEST_F(UpdateSettingsTest, ThePackagerMaySettleAutomaticChecks) {
    EXPECT_EQ(readFeed(usual() + "EnableAutomaticChecks=true\n").automaticChecks, true);
    EXPECT_EQ(readFeed(usual() + "EnableAutomaticChecks=false\n").automaticChecks, false);
    EXPECT_EQ(readFeed(usual() + "EnableAutomaticChecks=maybe\n").automaticChecks, std::nullopt);
}

TEST_F(UpdateSettingsTest, WhatCannotBeUsedIsAProblem) {
    const QByteArray key = "PublicEDKey=" + SigningKey(1).publicKeyText() + "\n";
    const QByteArray bad[] = {
        "[Update]\nInstallKind=flatpak\n",
        "[Update]\nInstallKind=appimage\n",
        "[Update]\nInstallKind=appimage\nFeedURL=https://ravlin.example/\n",
        "[Update]\nInstallKind=appimage\n" + key,
        "[Update]\nInstallKind=appimage\nFeedURL=http://ravlin.example/\n" + key,
        "[Update]\nInstallKind=appimage\nFeedURL=file:///tmp/feed\n" + key,
        "[Update]\nInstallKind=appimage\nFeedURL=https://a:b@ravlin.example/\n" + key,
        "[Update]\nInstallKind=appimage\nFeedURL=https://ravlin.example/\nPublicEDKey=AAAA\n",
        "[Update]\nInstallKind=appimage\nFeedURL=https://ravlin.example/\nPublicEDKey=" +
            SigningKey(1).publicKeyText() + ",AAAA\n",
        // A key that anyone can "sign" with.
        "[Update]\nInstallKind=appimage\nFeedURL=https://ravlin.example/\nPublicEDKey=" +
            SigningKey(1).publicKeyText() + "," + QByteArray(32, '\0').toBase64() + "\n",
    };
    for (const QByteArray& text : bad) EXPECT_FALSE(read(text).problem.isEmpty()) << text.toStdString();
}

TEST_F(UpdateSettingsTest, TheyAreInstalledBesideTheProgram) {
    for (const char* const name : {"bin", "share/ravlin"}) QDir(folder.path()).mkpath(QString::fromUtf8(name));
    QFile file(folder.filePath(QStringLiteral("share/ravlin/update.ini")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Update]\nInstallKind=appimage\n" + usual());
    file.close();
    const QString program = folder.filePath(QStringLiteral("bin/ravlin"));
    EXPECT_EQ(UpdateSettings::forProgram(program).kind, InstallKind::appimage);
    qputenv("SNAP", "/snap/ravlin/1");
    EXPECT_EQ(UpdateSettings::forProgram(program).kind, InstallKind::system);
    qunsetenv("SNAP");
}

TEST(UpdateState, IsRememberedInItsFile) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("config/updater.ini"));
    const QDateTime time(QDate(2026, 5, 1), QTime(12, 0), Qt::UTC);
    {
        UpdateState state(file);
        EXPECT_FALSE(state.hasLaunchedBefore());
        EXPECT_EQ(state.automaticChecks(), std::nullopt);
        EXPECT_FALSE(state.lastCheck().isValid());
        EXPECT_FALSE(state.newestFeed().isValid());
        state.setLaunchedBefore();
        state.setAutomaticChecks(false);
        state.setLastCheck(time);
        state.setSkippedVersion(QStringLiteral("1.1.0"));
        state.setNewestFeed(time.addDays(1));
    }
    const UpdateState state(file);
    EXPECT_TRUE(state.hasLaunchedBefore());
    EXPECT_EQ(state.automaticChecks(), false);
    EXPECT_EQ(state.lastCheck(), time);
    EXPECT_EQ(state.skippedVersion().toStdString(), "1.1.0");
    EXPECT_EQ(state.newestFeed(), time.addDays(1));
}

}  // namespace
}  // namespace ravlin
