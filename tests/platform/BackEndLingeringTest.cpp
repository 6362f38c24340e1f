// What the program leaves behind when it quits, on every desktop.

#include "tests/platform/Lingering.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <sys/wait.h>

namespace ravlin::tests {
namespace {

using BackEndLingering = Lingering;
using testing::ContainsRegex;
using testing::HasSubstr;

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

TEST_F(BackEndLingering, LargeTextIsThereAfterTheEndUntilTheNextCopy) {
    const std::string text = textOfSize(10485760);
    ASSERT_TRUE(copyAndQuit(text));
    const pid_t lingering = child();
    ASSERT_NE(lingering, 0);
    EXPECT_TRUE(paste() == text);
    EXPECT_TRUE(paste() == text) << "as often as it is wanted";
    const auto next = copyElsewhere({.content = {{"UTF8_STRING", "next"}}});
    EXPECT_EQ(exitStatusOf(lingering), 0);
    EXPECT_EQ(paste(), "next");
}

TEST_F(BackEndLingering, EmptyTextStaysAnEmptyText) {
    ASSERT_TRUE(copyAndQuit(""));
    const auto pasteboard = openBackEnd();
    EXPECT_EQ(pasteboard->string(), "");
}

TEST_F(BackEndLingering, ProgramThatIsStartedAgainTakesOver) {
    ASSERT_TRUE(copyAndQuit("first"));
    const pid_t first = child();
    ASSERT_TRUE(copyAndQuit("second"));
    EXPECT_EQ(exitStatusOf(first), 0);
    EXPECT_EQ(paste(), "second");
}

TEST_F(BackEndLingering, ChildHoldsNothingButTheConnection) {
    ASSERT_TRUE(copyAndQuit("text"));
    const std::string process = "/proc/" + std::to_string(child());
    int socketCount = 0;
    for (const auto& each : std::filesystem::directory_iterator(process + "/fd")) {
        const std::string target = std::filesystem::read_symlink(each);
        if (target == "/dev/null" || target == "anon_inode:[eventpoll]") continue;
        EXPECT_TRUE(target.starts_with("socket:")) << target;
        ++socketCount;
    }
    EXPECT_EQ(socketCount, 1);
    EXPECT_EQ(std::filesystem::read_symlink(process + "/cwd"), "/");
    EXPECT_NE(getsid(child()), getsid(0));
}

TEST_F(BackEndLingering, ChildHasGivenUpWhatItDoesNotNeed) {
    ASSERT_TRUE(copyAndQuit("text"));
    const std::string process = "/proc/" + std::to_string(child());
    EXPECT_THAT(contentOf(process + "/status"), HasSubstr("NoNewPrivs:\t1"));
    const std::string limits = contentOf(process + "/limits");
    for (const char* const limit : {"Max processes", "Max file size", "Max core file size"})
        EXPECT_THAT(limits, ContainsRegex(std::string(limit) + " +0 +0 "));
    EXPECT_EQ(paste(), "text");
}

TEST_F(BackEndLingering, ChildFinishesWhatAReaderHasBegunAfterTheNextCopy) {
    const std::string text = textOfSize(3000000);
    ASSERT_TRUE(copyAndQuit(text));
    const pid_t lingering = child();
    Process reader(kPastingProgram);  // gets stuck until its output is taken
    ASSERT_TRUE(isReadable(reader.outputDescriptor(), kGenerously));
    const auto next = copyElsewhere({.content = {{"UTF8_STRING", "next"}}});
    while (reader.readOutput()) ASSERT_TRUE(isReadable(reader.outputDescriptor(), kGenerously));
    EXPECT_TRUE(reader.output() == text);
    EXPECT_EQ(exitStatusOf(lingering), 0);
}

TEST_F(BackEndLingering, EndOfTheSessionEndsTheChild) {
    ASSERT_TRUE(copyAndQuit("text"));
    const pid_t lingering = child();
    kill(lingering, SIGTERM);
    int status = 0;
    EXPECT_EQ(waitpid(lingering, &status, 0), lingering);
    EXPECT_TRUE(WIFSIGNALED(status));
}

}  // namespace
}  // namespace ravlin::tests
