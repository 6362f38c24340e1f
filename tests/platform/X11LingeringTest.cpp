// The process that keeps the text on the clipboard after the program has quit: what is specific to X11.

#include "tests/platform/Lingering.h"
#include "tests/platform/X11Clients.h"

#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using X11Lingering = Lingering;

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
