#include "Updater/SingleFileInstaller.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

/// Where the process that these tests fork is killed, if anywhere.
enum class Step { none, written, unnamed, named, replaced };
Step killedAt = Step::none;

/// Whether files can be without a name, which not every file system supports.
bool knowsUnnamedFiles = true;

}  // namespace

// These stand in for the C library's own, which make the file, follow the writing of its bytes, give it a name, and put
// it in the old one's place.
extern "C" int fdatasync(int descriptor) {
    if (killedAt == Step::written) kill(getpid(), SIGKILL);
    return fsync(descriptor);
}

extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    if (killedAt == Step::unnamed) kill(getpid(), SIGKILL);
    const int status = static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
    if (killedAt == Step::named) kill(getpid(), SIGKILL);
    return status;
}

extern "C" int openat(int folder, const char* name, int flags, ...) {
    if (!knowsUnnamedFiles && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return static_cast<int>(syscall(SYS_openat, folder, name, flags, mode));
}

extern "C" int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
    const int status = static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, 0));
    if (killedAt == Step::replaced) kill(getpid(), SIGKILL);
    return status;
}

namespace ravlin {
namespace {

using SingleFileInstaller::Surroundings;
using testing::MatchesRegex;

constexpr int kMegabyte = 1 << 20;
constexpr const char* kRemain = ".ravlin-update-0123456789abcdef0123456789abcdef";

class SingleFileInstallerTest : public testing::Test {
protected:
    SingleFileInstallerTest() {
        QDir(folder.path()).mkpath(QStringLiteral("unpacked/usr/bin"));
        write(path("Ravlin.AppImage"), "old");
        QFile::setPermissions(path("Ravlin.AppImage"), QFile::Permissions(0x7755));
        write(path("unpacked/usr/bin/ravlin"), "program");
    }

    QString path(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }
    static void write(const QString& file, const QByteArray& contents) {
        QFile opened(file);
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        ASSERT_EQ(opened.write(contents), contents.size());
    }
    static std::string read(const QString& file) {
        QFile opened(file);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll().toStdString() : "cannot be read";
    }
    std::string appImage() const { return read(path("Ravlin.AppImage")); }

    /// Everything in the folder, hidden or not.
    std::string names() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            .join(QLatin1Char(' '))
            .toStdString();
    }

    Surroundings usual() const {
        return {.appImage = path("Ravlin.AppImage"),
                .appDir = path("unpacked"),
                .executable = path("unpacked/usr/bin/ravlin")};
    }

    /// The wait status of a separate process that does `work`, and then exits with 0, or with 1 if that fails.
    static int inAnotherProcess(const std::function<bool()>& work) {
        const pid_t child = fork();
        if (child == 0) _exit(work() ? 0 : 1);
        int status = -1;
        waitpid(child, &status, 0);
        return status;
    }

    /// For a separate process: an administrator simply may, and others become the administrator of a namespace of their
    /// own.
    static bool getMountsOfItsOwn() {
        const QByteArray user = QByteArray::number(geteuid());
        const QByteArray group = QByteArray::number(getegid());
        if (unshare(CLONE_NEWNS) == 0) return true;
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
        const auto tell = [](const char* name, const QByteArray& text) {
            QFile file(QStringLiteral("/proc/self/") + QString::fromUtf8(name));
            return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
        };
        return tell("uid_map", "0 " + user + " 1\n") && tell("setgroups", "deny") &&
               tell("gid_map", "0 " + group + " 1\n");
    }

    /// The wait status of a process that is killed at `step` of replacing the file by "new".
    int killedReplacing(Step step) const {
        return inAnotherProcess([&] {
            killedAt = step;
            return !SingleFileInstaller::replace(path("Ravlin.AppImage"), "new");
        });
    }
    static int signalOf(int status) { return WIFSIGNALED(status) ? WTERMSIG(status) : 0; }

    void TearDown() override { knowsUnnamedFiles = true; }

    QTemporaryDir folder;
};

/// The target in words: a file's name, or why there is none.
std::string told(const Surroundings& surroundings) {
    const auto target = SingleFileInstaller::target(surroundings);
    if (const auto* const file = std::get_if<QString>(&target)) return QFileInfo(*file).fileName().toStdString();
    const auto& failure = std::get<UpdateFailure>(target);
    if (failure.error == UpdateError::notFromASingleFile) return "not from a single file";
    if (failure.error == UpdateError::notInstalled)
        return "shared " + failure.detail.section(QChar(0x201C), 1).section(QChar(0x201D), 0, 0).toStdString();
    return "may not replace " + QFileInfo(failure.detail).fileName().toStdString();
}

// What it replaces

TEST_F(SingleFileInstallerTest, ReplacesTheFileThatItWasStartedFrom) {
    EXPECT_EQ(told(usual()), "Ravlin.AppImage");
}

TEST_F(SingleFileInstallerTest, FollowsLinksToTheFile) {
    ASSERT_TRUE(QFile::link(path("Ravlin.AppImage"), path("link")));
    ASSERT_TRUE(QFile::link(path("unpacked"), path("mounted")));
    Surroundings surroundings = usual();
    surroundings.appImage = path("link");
    surroundings.appDir = path("mounted");
    EXPECT_EQ(told(surroundings), "Ravlin.AppImage");
}

TEST_F(SingleFileInstallerTest, LeavesAnotherProgramsFileAlone) {
    // A terminal that is an AppImage passes its own variables on to every program it starts.
    Surroundings surroundings = usual();
    for (const char* const executable : {"", "unpacked-elsewhere/ravlin", "unpacked"}) {
        surroundings.executable = path(executable);
        EXPECT_EQ(told(surroundings), "not from a single file") << executable;
    }
    surroundings.executable = QStringLiteral("/bin/sh");
    EXPECT_EQ(told(surroundings), "not from a single file");
    QDir(folder.path()).mkpath(QStringLiteral("unpacked2"));
    write(path("unpacked2/ravlin"), "program");
    surroundings.executable = path("unpacked2/ravlin");
    EXPECT_EQ(told(surroundings), "not from a single file");
    surroundings.executable = path("unpacked/../unpacked2/ravlin");
    EXPECT_EQ(told(surroundings), "not from a single file");
}

TEST_F(SingleFileInstallerTest, WithoutAFileThereIsNothingToReplace) {
    ASSERT_TRUE(QFile::link(path("nowhere"), path("dangling")));
    for (const char* const name : {"missing", "dangling", "unpacked"}) {
        Surroundings surroundings = usual();
        surroundings.appImage = path(name);
        EXPECT_EQ(told(surroundings), "not from a single file") << name;
    }
    EXPECT_EQ(told({.appImage = {}, .appDir = path("unpacked"), .executable = usual().executable}),
              "not from a single file");
    EXPECT_EQ(told({.appImage = usual().appImage, .appDir = {}, .executable = usual().executable}),
              "not from a single file");
}

TEST_F(SingleFileInstallerTest, OthersFilesAreNotTheUsersToChange) {
    // Only the administrator can give a file away, so that an administrator's file stands in for ordinary users.
    Surroundings surroundings = usual();
    if (geteuid() == 0) {
        ASSERT_EQ(chown(qPrintable(surroundings.appImage), 65534, 65534), 0);
        EXPECT_EQ(told(surroundings), "may not replace Ravlin.AppImage");
    } else {
        surroundings.appImage = QStringLiteral("/etc/passwd");
        EXPECT_EQ(told(surroundings), "may not replace passwd");
    }
}

// How it replaces

TEST_F(SingleFileInstallerTest, PutsTheNewFileInItsPlace) {
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new"), std::nullopt);
    EXPECT_EQ(appImage(), "new");
    EXPECT_EQ(QFile::permissions(path("Ravlin.AppImage")), QFile::Permissions(0x7755));
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, ARunningFileIsReplaced) {
    const int running = open(qPrintable(path("Ravlin.AppImage")), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new"), std::nullopt);
    char bytes[4] = {};
    EXPECT_EQ(::read(running, bytes, 3), 3);
    EXPECT_STREQ(bytes, "old");  // a running program keeps the file that it was started from
    close(running);
}

TEST_F(SingleFileInstallerTest, WhatCannotBeWrittenLeavesTheOldFile) {
    const int status = inAnotherProcess([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {kMegabyte, kMegabyte};
        setrlimit(RLIMIT_FSIZE, &limit);
        return SingleFileInstaller::replace(path("Ravlin.AppImage"), QByteArray(3 * kMegabyte, 'x')) ==
               QStringLiteral("the file could not be written");
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(appImage(), "old");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, AFullDiskLeavesTheOldFile) {
    constexpr int kCannotMount = 2;
    const QByteArray disk = QFile::encodeName(path("unpacked"));
    const int status = inAnotherProcess([&] {
        const bool isMounted = getMountsOfItsOwn() && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                               mount("tmpfs", disk, "tmpfs", 0, "size=64k,mode=700") == 0;
        if (!isMounted) _exit(kCannotMount);
        write(path("unpacked/small"), "old");
        const auto cause = SingleFileInstaller::replace(path("unpacked/small"), QByteArray(kMegabyte, 'x'));
        return cause == QStringLiteral("there is not enough free space") && read(path("unpacked/small")) == "old" &&
               QDir(path("unpacked")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() == 1;
    });
    if (WEXITSTATUS(status) == kCannotMount) GTEST_SKIP() << "no disk can be made here";
    EXPECT_EQ(status, 0);
}

TEST_F(SingleFileInstallerTest, AFolderThatIsGoneIsTold) {
    EXPECT_TRUE(SingleFileInstaller::replace(path("gone/Ravlin.AppImage"), "new").has_value());
}

// The kernel kills a process that writes beyond its limit, right in the middle of writing.
TEST_F(SingleFileInstallerTest, KilledWhileWritingItLeavesTheOldFile) {
    const int status = inAnotherProcess([this] {
        const rlimit noCore = {0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        const rlimit limit = {kMegabyte, kMegabyte};
        setrlimit(RLIMIT_FSIZE, &limit);
        return !SingleFileInstaller::replace(path("Ravlin.AppImage"), QByteArray(3 * kMegabyte, 'x'));
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
    EXPECT_EQ(appImage(), "old");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, KilledAfterWritingItLeavesTheOldFile) {
    for (const Step step : {Step::written, Step::unnamed}) {
        EXPECT_EQ(signalOf(killedReplacing(step)), SIGKILL);
        EXPECT_EQ(appImage(), "old");
        EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
    }
}

TEST_F(SingleFileInstallerTest, KilledBeforeItTakesTheOldOnesPlaceItsRemainsCanBeRemoved) {
    EXPECT_EQ(signalOf(killedReplacing(Step::named)), SIGKILL);
    EXPECT_EQ(appImage(), "old");
    EXPECT_THAT(names(), MatchesRegex("\\.ravlin-update-[0-9a-f]+ Ravlin\\.AppImage unpacked"));
    SingleFileInstaller::removeRemains(path("Ravlin.AppImage"));
    EXPECT_EQ(appImage(), "old");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, KilledAfterItTookTheOldOnesPlaceTheNewFileIsThere) {
    EXPECT_EQ(signalOf(killedReplacing(Step::replaced)), SIGKILL);
    EXPECT_EQ(appImage(), "new");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, WhereFilesNeedANameTheRemainsOfEveryKillCanBeRemoved) {
    knowsUnnamedFiles = false;
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "newer"), std::nullopt);
    EXPECT_EQ(appImage(), "newer");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
    EXPECT_EQ(signalOf(killedReplacing(Step::written)), SIGKILL);
    EXPECT_EQ(appImage(), "newer");
    EXPECT_THAT(names(), MatchesRegex("\\.ravlin-update-[0-9a-f]+ Ravlin\\.AppImage unpacked"));
    SingleFileInstaller::removeRemains(path("Ravlin.AppImage"));
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
    const int status = inAnotherProcess([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {kMegabyte, kMegabyte};
        setrlimit(RLIMIT_FSIZE, &limit);
        return SingleFileInstaller::replace(path("Ravlin.AppImage"), QByteArray(3 * kMegabyte, 'x')).has_value();
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, RemainsOfAnEarlierUpdateAreNotInTheWay) {
    write(path(kRemain), "half");
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new"), std::nullopt);
    EXPECT_EQ(appImage(), "new");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, OnlyItsOwnRemainsAreRemoved) {
    for (const char* const name :
         {"Ravlin.AppImage.backup", ".Ravlin.AppImage.update", ".ravlin-update-", ".ravlin-update-0123456789abcdef",
          ".ravlin-update-0123456789abcdef0123456789abcdeF", ".ravlin-update-0123456789abcdef0123456789abcdef0",
          ".ravlin-update-0123456789abcdef0123456789abcdef.txt", "ravlin-update-0123456789abcdef0123456789abcdef"})
        write(path(name), "kept");
    // Anything with such a name, except a plain file with no other name.
    ASSERT_TRUE(QFile::link(path("unpacked/usr/bin/ravlin"), path(".ravlin-update-00000000000000000000000000000001")));
    ASSERT_EQ(
        link(qPrintable(path("Ravlin.AppImage")), qPrintable(path(".ravlin-update-00000000000000000000000000000002"))),
        0);
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral(".ravlin-update-00000000000000000000000000000003")));
    ASSERT_EQ(mkfifo(qPrintable(path(".ravlin-update-00000000000000000000000000000004")), 0600), 0);
    if (geteuid() == 0) {
        write(path(".ravlin-update-00000000000000000000000000000005"), "another's");
        ASSERT_EQ(chown(qPrintable(path(".ravlin-update-00000000000000000000000000000005")), 65534, 65534), 0);
    }
    const std::string before = names();
    SingleFileInstaller::removeRemains(path("Ravlin.AppImage"));
    EXPECT_EQ(names(), before);
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new"), std::nullopt);
    EXPECT_EQ(names(), before);
    EXPECT_EQ(appImage(), "new");
    EXPECT_EQ(read(path("unpacked/usr/bin/ravlin")), "program");
}

TEST_F(SingleFileInstallerTest, InASharedFolderNothingIsTakenForRemains) {
    write(path(kRemain), "half");
    ASSERT_EQ(chmod(qPrintable(folder.path()), 0777), 0);
    SingleFileInstaller::removeRemains(path("Ravlin.AppImage"));
    EXPECT_TRUE(QFile::exists(path(kRemain)));
}

// Several copies may run, each on its own desktop, and all from one file.
TEST_F(SingleFileInstallerTest, CopiesThatUpdateAtOnceDoNotDisturbEachOther) {
    constexpr int kCopies = 4;
    constexpr int kRounds = 50;
    std::vector<pid_t> copies;
    for (int copy = 0; copy < kCopies; ++copy) {
        const QByteArray contents(kMegabyte / 4, static_cast<char>('a' + copy));
        const pid_t child = fork();
        if (child != 0) {
            copies.push_back(child);
            continue;
        }
        for (int round = 0; round < kRounds; ++round)
            if (SingleFileInstaller::replace(path("Ravlin.AppImage"), contents)) _exit(1);
        _exit(0);
    }
    for (const pid_t child : copies) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const std::string last = appImage();
    EXPECT_EQ(last, std::string(kMegabyte / 4, last[0]));
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

// Who else may write to its folder

TEST_F(SingleFileInstallerTest, ALinkThatSomebodyPlantedLeadsNowhere) {
    if (geteuid() != 0) GTEST_SKIP() << "there is no second user to play";
    // Another user's link, in a folder where users cannot remove each other's files.
    constexpr uid_t kVictim = 65534;
    const QString victim = path("unpacked/profile");
    write(victim, "the user's own");
    for (const QString& own : {victim, path("Ravlin.AppImage")}) ASSERT_EQ(chown(qPrintable(own), kVictim, kVictim), 0);
    ASSERT_TRUE(QFile::link(victim, path(".Ravlin.AppImage.update")));
    ASSERT_EQ(chmod(qPrintable(folder.path()), 01777), 0);
    const int status = inAnotherProcess([this] {
        if (setgroups(0, nullptr) != 0 || setgid(kVictim) != 0 || setuid(kVictim) != 0) return false;
        const auto cause = SingleFileInstaller::replace(path("Ravlin.AppImage"), "new");
        return cause && cause->startsWith(QStringLiteral("other users may write to the folder"));
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(read(victim), "the user's own");
    EXPECT_EQ(appImage(), "old");
}

TEST_F(SingleFileInstallerTest, AFolderOfThatNameIsNotInTheWay) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral(".Ravlin.AppImage.update")));
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new"), std::nullopt);
    EXPECT_EQ(appImage(), "new");
}

TEST_F(SingleFileInstallerTest, AFolderThatEverybodyMayWriteToIsRefused) {
    for (const mode_t mode : {0777U, 01777U, 0702U}) {
        ASSERT_EQ(chmod(qPrintable(folder.path()), mode), 0);
        EXPECT_EQ(told(usual()), "shared " + folder.path().toStdString());
        EXPECT_TRUE(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new").has_value());
        EXPECT_EQ(appImage(), "old");
    }
    for (const mode_t mode : {0700U, 0755U, 02755U, 01755U}) {
        ASSERT_EQ(chmod(qPrintable(folder.path()), mode), 0);
        EXPECT_EQ(told(usual()), "Ravlin.AppImage");
    }
}

/// Whether /etc/passwd and /etc/group show another user in this group, or the group under another name.
bool isListedAsShared(gid_t group, const std::string& user) {
    const auto fieldsOf = [](const std::string& line) {
        std::vector<std::string> fields(1);
        for (const char each : line) each == ':' ? fields.emplace_back() : fields.back() += each, void();
        return fields;
    };
    std::string line;
    for (std::ifstream users("/etc/passwd"); std::getline(users, line);)
        if (const auto fields = fieldsOf(line); fields.at(3) == std::to_string(group) && fields.at(0) != user)
            return true;
    for (std::ifstream groups("/etc/group"); std::getline(groups, line);)
        if (const auto fields = fieldsOf(line); fields.at(2) == std::to_string(group))
            return fields.at(0) != user || (!fields.at(3).empty() && fields.at(3) != user);
    return true;
}

TEST_F(SingleFileInstallerTest, AFolderThatAGroupMayWriteToIsRefusedUnlessTheUserIsAloneInIt) {
    if (geteuid() != 0) GTEST_SKIP() << "only an administrator can put files into every group";
    for (const gid_t group : {0U, 1U, 4U, 65534U}) {
        ASSERT_EQ(chown(qPrintable(folder.path()), geteuid(), group), 0);
        for (const mode_t mode : {0770U, 02775U}) {
            ASSERT_EQ(chmod(qPrintable(folder.path()), mode), 0);
            EXPECT_EQ(told(usual()) != "Ravlin.AppImage", isListedAsShared(group, "root")) << group;
        }
        ASSERT_EQ(chmod(qPrintable(folder.path()), 0750), 0);
        EXPECT_EQ(told(usual()), "Ravlin.AppImage");
    }
}

TEST_F(SingleFileInstallerTest, AFolderWhoseAccessListLetsOthersWriteIsRefused) {
    // Version 2; this user and the group may do everything, and so may user 65534, as far as the mask allows.
    const auto listWithMask = [](char mask) {
        const auto entry = [](char tag, char rights, const QByteArray& id) {
            return QByteArray().append(tag).append('\0').append(rights).append('\0') + id;
        };
        const QByteArray nobody(4, '\xff');
        return QByteArray("\x02\0\0\0", 4) + entry(0x01, 7, nobody) + entry(0x02, 7, QByteArray("\xfe\xff\0\0", 4)) +
               entry(0x04, 7, nobody) + entry(0x10, mask, nobody) + entry(0x20, 0, nobody);
    };
    const auto set = [&](char mask) {
        const QByteArray list = listWithMask(mask);
        return setxattr(qPrintable(folder.path()), "system.posix_acl_access", list.constData(),
                        static_cast<std::size_t>(list.size()), 0) == 0;
    };
    if (!set(7)) GTEST_SKIP() << "no access lists here";
    EXPECT_EQ(told(usual()), "shared " + folder.path().toStdString());
    ASSERT_TRUE(set(5));
    EXPECT_EQ(told(usual()), "Ravlin.AppImage");
}

TEST_F(SingleFileInstallerTest, AFolderOfAnotherUserIsRefused) {
    if (geteuid() != 0) GTEST_SKIP() << "only an administrator can give folders away";
    ASSERT_EQ(chown(qPrintable(folder.path()), 65534, 65534), 0);
    EXPECT_EQ(told(usual()), "shared " + folder.path().toStdString());
}

TEST_F(SingleFileInstallerTest, TheNewFileIsNobodyElsesToWrite) {
    ASSERT_EQ(chmod(qPrintable(path("Ravlin.AppImage")), 06777), 0);
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new"), std::nullopt);
    struct stat status {};
    ASSERT_EQ(stat(qPrintable(path("Ravlin.AppImage")), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755U);
}

TEST_F(SingleFileInstallerTest, ALinkInThePlaceOfTheFileIsNotReplaced) {
    // A caller that asked for the target before got what the link leads to.
    ASSERT_TRUE(QFile::rename(path("Ravlin.AppImage"), path("unpacked/moved")));
    ASSERT_TRUE(QFile::link(path("unpacked/moved"), path("Ravlin.AppImage")));
    EXPECT_TRUE(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new").has_value());
    EXPECT_EQ(read(path("unpacked/moved")), "old");
}

// What comes after

TEST_F(SingleFileInstallerTest, RelaunchedItIsStartedLikeFromTheDesktop) {
    const QByteArray script =
        "#!/bin/sh\n{ echo \"$#|$APPIMAGE|$APPDIR|$ARGV0|$OWD|$LD_LIBRARY_PATH|$KEPT\"; [ -e /dev/fd/" +
        QByteArray("77 ] && echo open; } > \"$0.told\"\n");
    write(path("Ravlin.AppImage"), script);
    const int status = inAnotherProcess([this] {
        for (const char* const name : {"APPIMAGE", "APPDIR", "ARGV0", "OWD", "LD_LIBRARY_PATH", "KEPT"})
            qputenv(name, "value");
        dup2(STDOUT_FILENO, 77);
        SingleFileInstaller::relaunch(path("Ravlin.AppImage"));
        return false;
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(read(path("Ravlin.AppImage.told")), "0||||||value\n");
}

TEST_F(SingleFileInstallerTest, RelaunchReturnsWhereThereIsNothingToStart) {
    EXPECT_EQ(inAnotherProcess([this] {
                  SingleFileInstaller::relaunch(path("missing"));
                  return true;
              }),
              0);
}

}  // namespace
}  // namespace ravlin
