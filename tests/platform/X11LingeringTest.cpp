// The process that keeps the text on the clipboard after the program's end.

#include "tests/platform/X11Clients.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>

namespace ravlin::tests {
namespace {

/// Processes whose parents have ended become children of the test, so that their ends can be waited for.
class X11Lingering : public testing::Test {
protected:
    X11Lingering() { prctl(PR_SET_CHILD_SUBREAPER, 1); }
    X11Lingering(const X11Lingering&) = delete;
    X11Lingering& operator=(const X11Lingering&) = delete;
    X11Lingering(X11Lingering&&) = delete;
    X11Lingering& operator=(X11Lingering&&) = delete;
    ~X11Lingering() override {
        if (const pid_t left = child(); left != 0) {
            kill(left, SIGKILL);
            waitpid(left, nullptr, 0);
        }
    }

    /// Runs the program that copies `text` and ends. False where it does not end well.
    static bool copyAndQuit(const std::string& text) {
        Process program({LINGERING_OWNER}, text);
        // The output is at its end when nobody holds it any more, the lingering child included.
        while (program.readOutput()) {
            if (!isReadable(program.outputDescriptor(), kGenerously)) return false;
        }
        EXPECT_EQ(program.output(), "descriptor -1\n");
        return program.waitForEnd() == 0;
    }

    /// The one child of this process, or 0.
    static pid_t child() {
        std::ifstream file("/proc/thread-self/children");
        pid_t id = 0;
        file >> id;
        return id;
    }

    /// Waits for the end of a child; its exit status, or nothing where it does not end or ends by a signal.
    static std::optional<int> exitStatusOf(pid_t id) {
        const auto deadline = Clock::now() + kGenerously;
        int status = 0;
        while (waitpid(id, &status, WNOHANG) == 0) {
            if (Clock::now() > deadline) return std::nullopt;
            isReadable(-1, std::chrono::milliseconds(2));
        }
        return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
    }

    static std::string paste() {
        Process program({"xclip", "-selection", "clipboard", "-out"});
        while (program.readOutput()) {
            if (!isReadable(program.outputDescriptor(), kGenerously)) return "nothing comes";
        }
        return program.output();
    }
};

TEST_F(X11Lingering, LargeTextIsThereAfterTheEndUntilTheNextCopy) {
    const std::string text = textOfSize(10485760);
    ASSERT_TRUE(copyAndQuit(text));
    const pid_t lingering = child();
    ASSERT_NE(lingering, 0);
    EXPECT_TRUE(paste() == text);
    EXPECT_TRUE(paste() == text) << "as often as it is wanted";
    const ForeignOwner next("next");
    EXPECT_EQ(exitStatusOf(lingering), 0);
    EXPECT_EQ(paste(), "next");
}

TEST_F(X11Lingering, ChildHoldsNothingButTheConnection) {
    ASSERT_TRUE(copyAndQuit("text"));
    const std::string process = "/proc/" + std::to_string(child());
    int otherCount = 0;
    for (const auto& each : std::filesystem::directory_iterator(process + "/fd")) {
        if (std::filesystem::read_symlink(each) != "/dev/null") ++otherCount;
    }
    EXPECT_EQ(otherCount, 1);
    EXPECT_EQ(std::filesystem::read_symlink(process + "/cwd"), "/");
    EXPECT_NE(getsid(child()), getsid(0));
}

TEST_F(X11Lingering, ChildWaitsForAReaderToFinishAndForNoDeadOne) {
    const std::string text = textOfSize(3000000);
    ASSERT_TRUE(copyAndQuit(text));
    const pid_t lingering = child();
    const auto idle = openPasteboard();
    Requestor reader(*idle);
    auto dying = std::make_unique<Requestor>(*idle);
    reader.begin("UTF8_STRING");
    dying->begin("UTF8_STRING");
    const ForeignOwner next("next");
    dying.reset();
    EXPECT_TRUE(reader.takeIncrements().bytes == text);
    EXPECT_EQ(exitStatusOf(lingering), 0);
}

TEST_F(X11Lingering, EndOfTheSessionEndsTheChild) {
    ASSERT_TRUE(copyAndQuit("text"));
    const pid_t lingering = child();
    kill(lingering, SIGTERM);
    int status = 0;
    EXPECT_EQ(waitpid(lingering, &status, 0), lingering);
    EXPECT_TRUE(WIFSIGNALED(status));
}

TEST_F(X11Lingering, EndOfTheServerEndsTheChild) {
    const std::string display = getenv("DISPLAY");
    auto server = std::make_unique<PrivateServer>();
    setenv("DISPLAY", server->display().c_str(), 1);
    EXPECT_TRUE(copyAndQuit("text"));
    setenv("DISPLAY", display.c_str(), 1);
    std::optional<int> status;
    const pid_t serverId = server->process().id();
    std::ifstream children("/proc/thread-self/children");
    pid_t lingering = serverId;
    while (lingering == serverId) children >> lingering;
    server.reset();
    EXPECT_EQ(exitStatusOf(lingering), 0);
}

TEST_F(X11Lingering, WithoutAnythingToServeThereIsNoChild) {
    const ForeignOwner owner("foreign");
    const auto pasteboard = openPasteboard();
    pasteboard->setString("ours");
    const ForeignOwner other("foreign again");
    pasteboard->lingerIfOwner();
    EXPECT_NE(pasteboard->fileDescriptor(), -1) << "it would be given away to the child";
}

}  // namespace
}  // namespace ravlin::tests
