#include "Updater/Updater.h"
#include "tests/updater/RecordingUser.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::RecordingUser;
using State = Updater::State;

/// Only remembers what it was asked for; the test supplies the results.
class FakeSource final : public UpdateSource {
public:
    void check(bool isAskedForByUser) override { asked.emplace_back(isAskedForByUser ? "check" : "check quietly"); }
    void install() override { asked.emplace_back("install"); }
    void skip() override { asked.emplace_back("skip"); }
    void cancel() override { asked.emplace_back("cancel"); }

    std::vector<std::string> asked;
};

class UpdaterTest : public testing::Test {
protected:
    UpdaterTest() { makeUpdater({}); }

    void makeUpdater(const UpdateSchedule::Rules& rules) {
        updater.reset();
        schedule = std::make_unique<UpdateSchedule>(state, rules, [this] { return now; });
        updater = std::make_unique<Updater>(source, user, schedule.get(), QStringLiteral("1.0.0"));
        QObject::connect(updater.get(), &Updater::canCheckForUpdatesChanged,
                         [this] { changes.push_back(updater->canCheckForUpdates()); });
        QObject::connect(updater.get(), &Updater::relaunchRequested,
                         [this](const QString& file) { relaunched.push_back(file.toStdString()); });
    }
    void launch() {
        updater->start();
        QCoreApplication::processEvents();
    }
    void find() {
        Q_EMIT source.checked(
            FoundUpdate{.version = QStringLiteral("1.1.0"), .currentVersion = {}, .notes = {}, .link = {}});
    }
    void checkAndFind() {
        updater->checkForUpdates();
        find();
    }
    void checkFindAndInstall() {
        checkAndFind();
        user.answer(UpdateAnswer::install);
    }

    QTemporaryDir folder;
    UpdateState state{folder.filePath(QStringLiteral("state.ini"))};
    QDateTime now = QDateTime(QDate(2026, 5, 1), QTime(12, 0), Qt::UTC);
    FakeSource source;
    RecordingUser user;
    std::unique_ptr<UpdateSchedule> schedule;
    std::unique_ptr<Updater> updater;
    std::vector<bool> changes;
    std::vector<std::string> relaunched;
};

// What the user asks for

TEST_F(UpdaterTest, EveryResultIsToldToTheUserWhoAsked) {
    const struct {
        CheckResult result;
        const char* told;
    } cases[] = {
        {UpToDate{}, "up to date 1.0.0"},
        {SystemTooOld{QStringLiteral("1.1")}, "too old for 1.1"},
        {ComesWithSystem{QStringLiteral("Debian")}, "comes with Debian"},
        {UpdateFailure{.error = UpdateError::notGenuine, .detail = {}}, "not genuine"},
    };
    for (const auto& each : cases) {
        user.told.clear();
        updater->checkForUpdates();
        EXPECT_EQ(updater->state(), State::checking);
        Q_EMIT source.checked(each.result);
        EXPECT_THAT(user.told, ElementsAre("checking", each.told));
        EXPECT_EQ(updater->state(), State::idle);
    }
}

TEST_F(UpdaterTest, AnUpdateIsOfferedInstalledAndStarted) {
    checkAndFind();
    EXPECT_EQ(updater->state(), State::found);
    user.answer(UpdateAnswer::install);
    EXPECT_EQ(updater->state(), State::downloading);
    Q_EMIT source.progressed(10, 20);
    EXPECT_EQ(user.progress, std::pair(qint64{10}, qint64{20}));
    Q_EMIT source.installing();
    EXPECT_EQ(updater->state(), State::installing);
    Q_EMIT source.installed(QStringLiteral("/home/user/Ravlin.AppImage"));
    EXPECT_THAT(user.told, ElementsAre("checking", "found 1.1.0", "downloading", "installing", "dismissed"));
    EXPECT_THAT(source.asked, ElementsAre("check", "install"));
    EXPECT_THAT(relaunched, ElementsAre("/home/user/Ravlin.AppImage"));
}

TEST_F(UpdaterTest, AnUpdateCanBeSkippedOrPutOff) {
    checkAndFind();
    user.answer(UpdateAnswer::skip);
    EXPECT_EQ(updater->state(), State::idle);
    checkAndFind();
    user.answer(UpdateAnswer::later);
    EXPECT_EQ(updater->state(), State::idle);
    EXPECT_THAT(source.asked, ElementsAre("check", "skip", "check"));
}

TEST_F(UpdaterTest, AFailedInstallationIsTold) {
    checkFindAndInstall();
    Q_EMIT source.failed({.error = UpdateError::notInstalled, .detail = QStringLiteral("no space")});
    EXPECT_EQ(user.last(), "not installed: no space");
    EXPECT_EQ(updater->state(), State::idle);
    EXPECT_THAT(relaunched, IsEmpty());
}

TEST_F(UpdaterTest, AChecksAndADownloadCanBeCancelled) {
    updater->checkForUpdates();
    user.cancel();
    EXPECT_EQ(updater->state(), State::idle);
    EXPECT_EQ(user.last(), "dismissed");
    checkFindAndInstall();
    user.cancel();
    EXPECT_EQ(updater->state(), State::idle);
    EXPECT_THAT(source.asked, ElementsAre("check", "cancel", "check", "install", "cancel"));
}

TEST_F(UpdaterTest, InstallingCannotBeCancelled) {
    checkFindAndInstall();
    Q_EMIT source.installing();
    user.cancel();
    EXPECT_EQ(updater->state(), State::installing);
    EXPECT_THAT(source.asked, ElementsAre("check", "install"));
}

TEST_F(UpdaterTest, NobodyMayCheckWhileItIsBusy) {
    EXPECT_TRUE(updater->canCheckForUpdates());
    updater->checkForUpdates();
    EXPECT_FALSE(updater->canCheckForUpdates());
    updater->checkForUpdates();
    find();
    EXPECT_TRUE(updater->canCheckForUpdates());
    user.answer(UpdateAnswer::install);
    EXPECT_FALSE(updater->canCheckForUpdates());
    updater->checkForUpdates();
    Q_EMIT source.installing();
    EXPECT_FALSE(updater->canCheckForUpdates());
    updater->checkForUpdates();
    Q_EMIT source.failed({});
    EXPECT_TRUE(updater->canCheckForUpdates());
    EXPECT_THAT(changes, ElementsAre(false, true, false, true));
    EXPECT_THAT(source.asked, ElementsAre("check", "install"));
}

TEST_F(UpdaterTest, AskedAgainAnOfferComesToTheFront) {
    checkAndFind();
    updater->checkForUpdates();
    EXPECT_EQ(user.last(), "to the front");
    EXPECT_EQ(updater->state(), State::found);
    EXPECT_THAT(source.asked, ElementsAre("check"));
}

TEST_F(UpdaterTest, AnAnswerToAnOldWindowIsIgnored) {
    checkAndFind();
    const auto oldAnswer = user.answer;
    oldAnswer(UpdateAnswer::later);
    oldAnswer(UpdateAnswer::install);
    EXPECT_EQ(updater->state(), State::idle);
    EXPECT_THAT(source.asked, ElementsAre("check"));
}

// What the schedule asks for

TEST_F(UpdaterTest, TheFirstLaunchAsksNothingAndTheSecondDoes) {
    launch();
    EXPECT_THAT(user.told, IsEmpty());
    makeUpdater({});
    launch();
    EXPECT_THAT(user.told, ElementsAre("may it check by itself?"));
    EXPECT_EQ(updater->state(), State::asking);
    EXPECT_TRUE(updater->canCheckForUpdates());
    updater->checkForUpdates();
    EXPECT_EQ(user.last(), "to the front");
    EXPECT_THAT(source.asked, IsEmpty());
}

TEST_F(UpdaterTest, PermissionStartsACheckAndIsRemembered) {
    state.setLaunchedBefore();
    launch();
    user.answerPermission(true);
    EXPECT_THAT(source.asked, ElementsAre("check quietly"));
    Q_EMIT source.checked(UpToDate{});
    makeUpdater({});
    launch();
    EXPECT_THAT(user.told, ElementsAre("may it check by itself?"));
    EXPECT_THAT(source.asked, ElementsAre("check quietly"));  // not due again
}

TEST_F(UpdaterTest, RefusalIsRemembered) {
    state.setLaunchedBefore();
    launch();
    user.answerPermission(false);
    makeUpdater({});
    launch();
    EXPECT_THAT(user.told, ElementsAre("may it check by itself?"));
    EXPECT_THAT(source.asked, IsEmpty());
}

TEST_F(UpdaterTest, WithoutAnAnswerItAsksAtTheNextLaunch) {
    state.setLaunchedBefore();
    launch();
    user.answerPermission(std::nullopt);
    EXPECT_EQ(updater->state(), State::idle);
    makeUpdater({});
    launch();
    EXPECT_THAT(user.told, ElementsAre("may it check by itself?", "may it check by itself?"));
}

TEST_F(UpdaterTest, SettledByThePackagerItIsNeverAsked) {
    state.setLaunchedBefore();
    makeUpdater({.automaticChecks = true});
    launch();
    EXPECT_THAT(source.asked, ElementsAre("check quietly"));
    Q_EMIT source.checked(UpToDate{});
    state.setAutomaticChecks(true);
    state.setLastCheck({});
    makeUpdater({.automaticChecks = false});
    launch();
    EXPECT_THAT(source.asked, ElementsAre("check quietly"));
    EXPECT_THAT(user.told, IsEmpty());
}

TEST_F(UpdaterTest, AScheduledCheckShowsOnlyWhatItFinds) {
    state.setAutomaticChecks(true);
    launch();
    for (const CheckResult& result :
         {CheckResult(UpToDate{}), CheckResult(SystemTooOld{QStringLiteral("2")}), CheckResult(UpdateFailure{})}) {
        Q_EMIT source.checked(result);
        EXPECT_THAT(user.told, IsEmpty());
        EXPECT_EQ(updater->state(), State::idle);
        now = now.addDays(1);
        Q_EMIT schedule->due();
        EXPECT_FALSE(updater->canCheckForUpdates());
    }
    find();
    EXPECT_THAT(user.told, ElementsAre("found by itself 1.1.0"));
}

TEST_F(UpdaterTest, TheUserMayBeFasterThanTheStart) {
    state.setLaunchedBefore();
    updater->start();
    updater->checkForUpdates();
    QCoreApplication::processEvents();
    EXPECT_EQ(updater->state(), State::checking);
    EXPECT_THAT(user.told, ElementsAre("checking"));
    EXPECT_THAT(source.asked, ElementsAre("check"));
}

TEST_F(UpdaterTest, NothingIsDoneBySchedulesWhileAWindowIsOpen) {
    state.setAutomaticChecks(true);
    checkAndFind();
    launch();
    Q_EMIT schedule->due();
    EXPECT_THAT(source.asked, ElementsAre("check"));
    EXPECT_EQ(updater->state(), State::found);
}

TEST_F(UpdaterTest, WithoutAScheduleItNeverDoesAnythingByItself) {
    Updater quiet(source, user, nullptr, QStringLiteral("1.0.0"));
    quiet.start();
    QCoreApplication::processEvents();
    EXPECT_THAT(source.asked, IsEmpty());
    EXPECT_THAT(user.told, IsEmpty());
}

// When a check is due

TEST_F(UpdaterTest, ACheckIsDueWhenTheIntervalHasPassed) {
    const auto isDueAfter = [this](qint64 seconds) {
        state.setLastCheck(now.addSecs(-seconds));
        return schedule->isDue();
    };
    EXPECT_FALSE(schedule->isDue());  // not permitted
    state.setAutomaticChecks(true);
    EXPECT_TRUE(schedule->isDue());  // never done before
    EXPECT_FALSE(isDueAfter(0));
    EXPECT_FALSE(isDueAfter(86'399));
    EXPECT_TRUE(isDueAfter(86'400));
    EXPECT_TRUE(isDueAfter(-1));  // in the future
}

TEST_F(UpdaterTest, EveryCheckCountsForTheSchedule) {
    state.setAutomaticChecks(true);
    updater->checkForUpdates();
    EXPECT_EQ(state.lastCheck(), now);
    EXPECT_FALSE(schedule->isDue());
}

}  // namespace
}  // namespace ravlin
