#include "Updater/SingleFileInstaller.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <functional>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Where the process that these tests fork off is killed, if anywhere.
enum class Step { none, written, unnamed, named };
Step killedAt = Step::none;

}  // namespace

// These stand in for the C library's own, which come after the bytes have been written and when they are given a name.
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

namespace ravlin {
namespace {

using SingleFileInstaller::Surroundings;

constexpr int kMegabyte = 1 << 20;

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

    /// The wait status of a process of its own that does `work`, and then exits with 0, or with 1 where that fails.
    static int inAnotherProcess(const std::function<bool()>& work) {
        const pid_t child = fork();
        if (child == 0) _exit(work() ? 0 : 1);
        int status = -1;
        waitpid(child, &status, 0);
        return status;
    }

    /// For a process of its own: an administrator simply may, and others become one of their own little world.
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

    QTemporaryDir folder;
};

/// The target in words: a file's name, or why there is none.
std::string told(const Surroundings& surroundings) {
    const auto target = SingleFileInstaller::target(surroundings);
    if (const auto* const file = std::get_if<QString>(&target)) return QFileInfo(*file).fileName().toStdString();
    const auto& failure = std::get<UpdateFailure>(target);
    if (failure.error == UpdateError::notFromASingleFile) return "not from a single file";
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
    // A terminal that is an AppImage hands its own variables down to every program it starts.
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
    EXPECT_STREQ(bytes, "old");  // what runs goes on with what it was started from
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
                               mount("tmpfs", disk, "tmpfs", 0, "size=64k") == 0;
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

// The kernel kills a process that writes beyond its limit: in the very middle of its writing.
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
        const int status = inAnotherProcess([&] {
            killedAt = step;
            return !SingleFileInstaller::replace(path("Ravlin.AppImage"), QByteArray(3 * kMegabyte, 'x'));
        });
        ASSERT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), SIGKILL);
        EXPECT_EQ(appImage(), "old");
        EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
    }
}

TEST_F(SingleFileInstallerTest, KilledBeforeItTakesTheOldOnesPlaceItsRemainsCanBeRemoved) {
    const int status = inAnotherProcess([this] {
        killedAt = Step::named;
        return !SingleFileInstaller::replace(path("Ravlin.AppImage"), "new");
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(appImage(), "old");
    EXPECT_EQ(names(), ".Ravlin.AppImage.update Ravlin.AppImage unpacked");
    SingleFileInstaller::removeRemains(path("Ravlin.AppImage"));
    EXPECT_EQ(appImage(), "old");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, RemainsOfAnEarlierUpdateAreNotInTheWay) {
    write(path(".Ravlin.AppImage.update"), "half");
    write(path(".Ravlin.AppImage.update.aBcDeF"), "half");
    EXPECT_EQ(SingleFileInstaller::replace(path("Ravlin.AppImage"), "new"), std::nullopt);
    EXPECT_EQ(appImage(), "new");
    EXPECT_EQ(names(), "Ravlin.AppImage unpacked");
}

TEST_F(SingleFileInstallerTest, OnlyItsOwnRemainsAreRemoved) {
    for (const char* const name : {"Ravlin.AppImage.backup", "Ravlin.AppImage.update", ".Ravlin.AppImage.updates",
                                   ".Ravlin.AppImage.update.old", ".ravlin.appimage.update", ".Other.AppImage.update"})
        write(path(name), "kept");
    const std::string before = names();
    SingleFileInstaller::removeRemains(path("Ravlin.AppImage"));
    EXPECT_EQ(names(), before);
    SingleFileInstaller::removeRemains(path("*.AppImage"));
    EXPECT_EQ(names(), before);
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
