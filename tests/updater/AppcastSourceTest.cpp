#include "Updater/AppcastSource.h"
#include "Updater/Updater.h"
#include "tests/updater/Certificates.h"
#include "tests/updater/FeedText.h"
#include "tests/updater/RecordingUser.h"
#include "tests/updater/Server.h"
#include "tests/updater/SigningKey.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using tests::Authority;
using tests::EnclosureText;
using tests::FeedText;
using tests::itemText;
using tests::RecordingUser;
using tests::Server;
using tests::SigningKey;
using tests::TrustIn;
using namespace std::chrono_literals;

constexpr int kDeadline = 30'000;  // ms

/// A copy of Ravlin 1.0.0 that is a single file, its makers' server, and a user: everything but windows.
class AppcastSourceTest : public testing::Test {
protected:
    AppcastSourceTest() {
        QDir(folder.path()).mkpath(QStringLiteral("unpacked"));
        write("unpacked/ravlin", "program");
        write("Ravlin.AppImage", "old");
        QObject::connect(&updater, &Updater::relaunchRequested,
                         [this](const QString& path) { relaunched = path.toStdString(); });
        source.setSurroundings(
            {.appImage = path("Ravlin.AppImage"), .appDir = path("unpacked"), .executable = path("unpacked/ravlin")});
    }

    QString path(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }
    void write(const char* name, const QByteArray& contents) const {
        QFile opened(path(name));
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(contents);
    }
    std::string appImage() const {
        QFile opened(path("Ravlin.AppImage"));
        return opened.open(QIODevice::ReadOnly) ? opened.readAll().toStdString() : "cannot be read";
    }
    std::string names() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            .join(QLatin1Char(' '))
            .toStdString();
    }

    UpdateSettings settings() const {
        UpdateSettings result;
        result.kind = InstallKind::appimage;
        result.feed = server.url("/appcast.xml");
        result.keys = {key.publicKey()};
        return result;
    }

    /// Dates count to the second.
    static QByteArray daysFromNow(int days) {
        return FeedText::dateText(QDateTime::currentDateTimeUtc().addDays(days));
    }
    void serveFeed(const QByteArray& document) { server.serve("/appcast.xml", Server::page(document)); }
    void serveItems(const QByteArray& items) {
        serveFeed(key.signFeed(FeedText{.date = daysFromNow(-1), .expires = {}, .items = items}.text()));
    }
    QByteArray enclosureOf(const QByteArray& file) const {
        return EnclosureText{.url = server.url("/file").toEncoded(), .size = file.size(), .signature = key.sign(file)}
            .text();
    }

    /// What the user learns in the end, having asked for a check.
    std::string check() {
        user.told.clear();
        updater.checkForUpdates();
        if (!QTest::qWaitFor([this] { return updater.state() != Updater::State::checking; }, kDeadline))
            return "never answered";
        return user.last();
    }

    /// ... and having agreed to install what was found.
    std::string install() {
        const std::string found = check();
        if (found != "found 1.1.0") return found;
        user.answer(UpdateAnswer::install);
        const auto isOver = [this] { return updater.state() == Updater::State::idle || !relaunched.empty(); };
        if (!QTest::qWaitFor(isOver, kDeadline)) return "never answered";
        return relaunched.empty() ? user.last() : "relaunched";
    }

    QTemporaryDir folder;
    SigningKey key;
    Server server;
    UpdateState state{folder.filePath(QStringLiteral("unpacked/state.ini"))};
    AppcastSource source{settings(), state, Version::parse(u"1.0.0").value()};
    RecordingUser user;
    Updater updater{source, user, nullptr, QStringLiteral("1.0.0")};
    std::string relaunched;
};

// What it does for the user

TEST_F(AppcastSourceTest, ReplacesItselfAndIsStartedAnew) {
    const QByteArray file(3'000'000, 'n');
    server.serve("/file", Server::page(file));
    serveItems(itemText("1.1.0", enclosureOf(file) + "<description>New</description>"));
    EXPECT_EQ(install(), "relaunched");
    EXPECT_EQ(user.found.notes.toStdString(), "New");
    EXPECT_EQ(user.found.currentVersion.toStdString(), "1.0.0");
    EXPECT_EQ(user.progress, std::pair(file.size(), file.size()));
    EXPECT_THAT(user.told, ElementsAre("checking", "found 1.1.0", "downloading", "installing", "dismissed"));
    EXPECT_EQ(appImage(), file.toStdString());
    EXPECT_EQ(relaunched, path("Ravlin.AppImage").toStdString());
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(AppcastSourceTest, TellsWhatElseThereIs) {
    serveItems(itemText("1.0.0"));
    EXPECT_EQ(check(), "up to date 1.0.0");
    serveItems(
        itemText("1.1.0", enclosureOf("new") + "<sparkle:minimumSystemVersion>99</sparkle:minimumSystemVersion>"));
    EXPECT_EQ(check(), "too old for 1.1.0");
    serveItems(itemText("1.1.0", "<link>https://ravlin.example/</link>"));
    EXPECT_EQ(check(), "found 1.1.0");
    EXPECT_FALSE(user.found.canBeInstalled);
}

TEST_F(AppcastSourceTest, ASkippedVersionIsFoundAgainOnlyWhenAskedFor) {
    serveItems(itemText("1.1.0", enclosureOf("new")));
    EXPECT_EQ(check(), "found 1.1.0");
    EXPECT_TRUE(user.found.canBeSkipped);
    user.answer(UpdateAnswer::skip);
    EXPECT_EQ(check(), "found 1.1.0");
    user.answer(UpdateAnswer::later);
    std::optional<CheckResult> result;
    QObject::connect(&source, &UpdateSource::checked, [&](const CheckResult& checked) { result = checked; });
    source.check(/*isAskedForByUser=*/false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, kDeadline));
    EXPECT_TRUE(std::holds_alternative<UpToDate>(*result));
}

TEST_F(AppcastSourceTest, ASkippedVersionIsRememberedAsItIsComparedAndNotAsItIsShown) {
    const QByteArray shownAs = "<sparkle:shortVersionString>Spring</sparkle:shortVersionString>";
    serveItems(itemText("1.1.0", enclosureOf("new") + shownAs));
    EXPECT_EQ(check(), "found Spring");
    user.answer(UpdateAnswer::skip);
    EXPECT_EQ(state.skippedVersion().toStdString(), "1.1.0");
    std::optional<CheckResult> result;
    QObject::connect(&source, &UpdateSource::checked, [&](const CheckResult& checked) { result = checked; });
    source.check(/*isAskedForByUser=*/false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, kDeadline));
    EXPECT_TRUE(std::holds_alternative<UpToDate>(*result));
}

TEST_F(AppcastSourceTest, AnImportantVersionCannotBeSkipped) {
    serveItems(itemText("1.1.0", enclosureOf("new") + "<sparkle:criticalUpdate/>"));
    EXPECT_EQ(check(), "found 1.1.0");
    EXPECT_TRUE(user.found.isCritical);
    EXPECT_FALSE(user.found.canBeSkipped);
}

TEST_F(AppcastSourceTest, ADownloadCanBeCancelled) {
    serveItems(itemText("1.1.0", enclosureOf("new")));
    server.serve("/file", Server::silence());
    EXPECT_EQ(check(), "found 1.1.0");
    user.answer(UpdateAnswer::install);
    ASSERT_TRUE(QTest::qWaitFor([this] { return server.requests().size() == 2; }, kDeadline));
    user.cancel();
    EXPECT_EQ(updater.state(), Updater::State::idle);
    server.serve("/file", Server::page("new"));
    EXPECT_EQ(install(), "relaunched");
    EXPECT_EQ(appImage(), "new");
}

TEST_F(AppcastSourceTest, WhereItMayNotReplaceItselfItSaysSoBeforeAnyDownload) {
    serveItems(itemText("1.1.0", enclosureOf("new")));
    source.setSurroundings(
        {.appImage = path("Ravlin.AppImage"), .appDir = path("unpacked"), .executable = QStringLiteral("/bin/sh")});
    EXPECT_EQ(install(), "not from a single file");
    EXPECT_EQ(server.requests().size(), 1U);
}

// What attackers do to the feed

TEST_F(AppcastSourceTest, AFeedOfAnotherIsNotUsed) {
    const QByteArray items = itemText("1.1.0", enclosureOf("new"));
    const QByteArray text = FeedText{.date = daysFromNow(-1), .expires = {}, .items = items}.text();
    for (const QByteArray& document : {text, SigningKey(2).signFeed(text), QByteArray("<html>Log in</html>"),
                                       QByteArray(), QByteArray(key.signFeed(text)).replace("1.1.0", "1.2.0"),
                                       key.signFeed("<!DOCTYPE rss [<!ENTITY a \"b\">]>" + text)}) {
        serveFeed(document);
        EXPECT_EQ(check(), "not genuine");
    }
    EXPECT_FALSE(state.newestFeed().isValid());
}

TEST_F(AppcastSourceTest, AnOlderVersionOrTheSameIsNoUpdate) {
    for (const char* const version : {"0.9", "1.0.0", "1.0"}) {
        serveItems(itemText(version, enclosureOf("old")));
        EXPECT_EQ(check(), "up to date 1.0.0") << version;
    }
}

TEST_F(AppcastSourceTest, AnOlderFeedThanBeforeIsNotUsed) {
    const auto feedOf = [this](int days) {
        return key.signFeed(
            FeedText{.date = daysFromNow(days), .expires = {}, .items = itemText("1.1.0", enclosureOf("new"))}.text());
    };
    const QByteArray old = feedOf(-2);
    const QByteArray fresh = feedOf(-1);
    for (const QByteArray& document : {old, fresh, fresh}) {
        serveFeed(document);
        EXPECT_EQ(check(), "found 1.1.0");
        user.answer(UpdateAnswer::later);
    }
    serveFeed(old);
    EXPECT_EQ(check(), "older than before");
}

TEST_F(AppcastSourceTest, AFrozenFeedIsNoticed) {
    serveFeed(
        key.signFeed(FeedText{.date = daysFromNow(-9), .expires = daysFromNow(-1), .items = itemText("1.0.0")}.text()));
    EXPECT_EQ(check(), "out of date");
    EXPECT_FALSE(state.newestFeed().isValid());
}

TEST_F(AppcastSourceTest, AFeedFromTheFutureDoesNotLockLaterOnesOut) {
    serveFeed(key.signFeed(FeedText{.date = daysFromNow(2), .expires = {}, .items = itemText("1.0.0")}.text()));
    EXPECT_EQ(check(), "not genuine");
    serveItems(itemText("1.0.0"));
    EXPECT_EQ(check(), "up to date 1.0.0");
}

TEST_F(AppcastSourceTest, AServerThatDoesNotServeIsGivenUp) {
    source.setPatience({.idle = 300ms, .feed = 1s});
    qint64 sentBytes = 0;
    const std::pair<const char*, Server::Answer> answers[] = {
        {"silence", Server::silence()},
        {"headers that drip", Server::drip("HTTP/1.1 200 OK\r\nX: ")},
        {"a body that drips", Server::drip("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n")},
        {"an endless body", Server::endless("", sentBytes)},
        {"an error", Server::page("", "500 Internal Server Error")},
        {"no feed", Server::page("", "404 Not Found")},
        {"a way out of the web", Server::redirect("file:///etc/passwd")},
        {"a loop", Server::redirect("/appcast.xml")},
    };
    for (const auto& [what, answer] : answers) {
        server.serve("/appcast.xml", answer);
        EXPECT_EQ(check(), "not fetched") << what;
    }
    EXPECT_LT(sentBytes, 20 << 20);  // 1 MiB is the limit; the rest was already under way
}

// What attackers do to the file

TEST_F(AppcastSourceTest, AFileThatIsNotTheOneSignedIsThrownAway) {
    const QByteArray file(100'000, 'n');
    QByteArray flipped = file;
    flipped[50'000] = 'm';
    qint64 sentBytes = 0;
    const struct {
        const char* what;
        Server::Answer answer;
        const char* told;
    } attacks[] = {
        {"a flipped bit", Server::page(flipped), "signature is wrong"},
        {"cut off", Server::page(file.first(99'999)), "signature is wrong"},
        {"cut off, with a header that lies",
         Server::bytes("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n" + file.first(99'999)), "not downloaded"},
        {"longer", Server::page(file + "n"), "not downloaded"},
        {"endless", Server::endless("", sentBytes), "not downloaded"},
        {"missing", Server::page("", "404 Not Found"), "not downloaded"},
        {"elsewhere", Server::redirect("file:///bin/sh"), "not downloaded"},
        {"empty", Server::page(""), "signature is wrong"},
        {"an older genuine one", Server::page(QByteArray(100'000, 'o')), "signature is wrong"},
    };
    serveItems(itemText("1.1.0", enclosureOf(file)));
    for (const auto& each : attacks) {
        server.serve("/file", each.answer);
        EXPECT_EQ(install(), each.told) << each.what;
        EXPECT_EQ(appImage(), "old") << each.what;
        EXPECT_EQ(names(), "Ravlin.AppImage unpacked") << each.what;
    }
}

TEST_F(AppcastSourceTest, AFileThatDripsIsGivenUp) {
    source.setPatience({.file = 500ms});
    serveItems(itemText("1.1.0", enclosureOf(QByteArray(100'000, 'n'))));
    server.serve("/file", Server::drip("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n186a0\r\n"));
    EXPECT_EQ(install(), "not downloaded");
    EXPECT_GT(user.progress.first, 0);
    EXPECT_EQ(appImage(), "old");
}

TEST_F(AppcastSourceTest, AFileSignedByAnotherIsThrownAway) {
    server.serve("/file", Server::page("new"));
    serveItems(itemText(
        "1.1.0",
        EnclosureText{.url = server.url("/file").toEncoded(), .size = 3, .signature = SigningKey(2).sign("new")}
            .text()));
    EXPECT_EQ(install(), "signature is wrong");
    EXPECT_EQ(appImage(), "old");
}

TEST_F(AppcastSourceTest, ADiskThatTakesNothingLeavesTheOldFile) {
    // The folder goes away while the file is fetched.
    const QString elsewhere = folder.path() + QStringLiteral(".moved");
    server.serve("/file", [&](QTcpSocket& socket) {
        EXPECT_TRUE(QDir().rename(folder.path(), elsewhere));
        Server::page("new")(socket);
    });
    serveItems(itemText("1.1.0", enclosureOf("new")));
    EXPECT_EQ(install(), "not installed: the file could not be written");
    ASSERT_TRUE(QDir().rename(elsewhere, folder.path()));
    EXPECT_EQ(appImage(), "old");
}

// Over https, as users have it

TEST_F(AppcastSourceTest, OverHttpsItWorksTheSameAndTrustsKnownAuthoritiesOnly) {
    const Authority authority;
    const TrustIn trust(authority);
    Server secure(authority.serverFor("IP:127.0.0.1"));
    Server stranger(Authority().serverFor("IP:127.0.0.1"));
    const QByteArray feed = key.signFeed(FeedText{
        .date = daysFromNow(-1),
        .expires = {},
        .items = itemText(
            "1.1.0",
            EnclosureText{.url = secure.url("/file").toEncoded(), .size = 3, .signature = key.sign("new")}.text())}
                                             .text());
    for (Server* const each : {&secure, &stranger}) each->serve("/appcast.xml", Server::page(feed));
    secure.serve("/file", Server::page("new"));
    const auto checkAt = [&](const Server& at) {
        UpdateSettings there = settings();
        there.feed = at.url("/appcast.xml");
        AppcastSource secureSource(there, state, Version::parse(u"1.0.0").value());
        secureSource.setSurroundings(
            {.appImage = path("Ravlin.AppImage"), .appDir = path("unpacked"), .executable = path("unpacked/ravlin")});
        Updater secureUpdater(secureSource, user, nullptr, QStringLiteral("1.0.0"));
        bool isInstalled = false;
        QObject::connect(&secureUpdater, &Updater::relaunchRequested, [&] { isInstalled = true; });
        secureUpdater.checkForUpdates();
        EXPECT_TRUE(QTest::qWaitFor([&] { return secureUpdater.state() != Updater::State::checking; }, kDeadline));
        const std::string told = user.last();
        if (secureUpdater.state() != Updater::State::found) return told;
        user.answer(UpdateAnswer::install);
        EXPECT_TRUE(QTest::qWaitFor([&] { return isInstalled; }, kDeadline));
        return told;
    };
    EXPECT_EQ(checkAt(stranger), "not fetched");
    EXPECT_TRUE(stranger.requests().empty());
    EXPECT_EQ(appImage(), "old");
    EXPECT_EQ(checkAt(secure), "found 1.1.0");
    EXPECT_EQ(appImage(), "new");
}

}  // namespace
}  // namespace ravlin
