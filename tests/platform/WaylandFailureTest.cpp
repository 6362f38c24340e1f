// WaylandPasteboard when the compositor fails.

#include "tests/platform/WaylandClients.h"

#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;

constexpr auto kServerLimit = WaylandConnection::kServerLimit;

void expectNothing(SystemPasteboard& pasteboard) {
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_EQ(pasteboard.data(Pasteboard::Type::rtf), std::nullopt);
    EXPECT_EQ(pasteboard.data(Pasteboard::Type::html), std::nullopt);
    EXPECT_EQ(pasteboard.itemCount(), std::nullopt);
    EXPECT_FALSE(pasteboard.setString("text"));
}

std::string reasonAgainst(const char* displayName) {
    std::string whyNot;
    EXPECT_EQ(WaylandPasteboard::open(displayName, whyNot), nullptr);
    return whyNot;
}

TEST(WaylandFailure, WithoutACompositorThereIsAReason) {
    EXPECT_EQ(reasonAgainst("/nowhere/wayland-0"), "no compositor answers");
    const std::string display = getenv("WAYLAND_DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(reasonAgainst(nullptr), "WAYLAND_DISPLAY is not set");
    setenv("WAYLAND_DISPLAY", display.c_str(), 1);
}

TEST(WaylandFailure, CompositorThatNeverAnswersCostsItsLimit) {
    // Accepts connections, since the kernel does that for it, and says nothing.
    const std::string path = std::string(getenv("XDG_RUNTIME_DIR")) + "/silent";
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(listen(socket.get(), 1), 0);
    const auto time =
        durationOf([&] { EXPECT_EQ(reasonAgainst(path.c_str()), "the compositor does not answer in time"); });
    EXPECT_LT(time, kServerLimit + 500ms);
}

TEST(WaylandFailure, EndOfTheCompositorEndsTheConnectionOnly) {
    PrivateCompositor compositor;
    const auto pasteboard = openPasteboard({}, compositor.display().c_str());
    ASSERT_TRUE(pasteboard->setString("ours"));
    const std::int64_t count = pasteboard->changeCount();
    compositor.kill();
    EXPECT_TRUE(serveUntil(*pasteboard, [&] { return pasteboard->fileDescriptor() < 0; }));
    const auto time = durationOf([&] {
        EXPECT_NE(pasteboard->changeCount(), count);
        expectNothing(*pasteboard);
        pasteboard->clearContents();
        pasteboard->processEvents();
        pasteboard->lingerIfOwner();
    });
    EXPECT_LT(time, 500ms);
}

TEST(WaylandFailure, HungCompositorCostsEachOperationItsLimitAndIsBelievedAgainAfterwards) {
    PrivateCompositor compositor;
    const auto pasteboard = openPasteboard({}, compositor.display().c_str());
    ASSERT_TRUE(pasteboard->setString("ours"));
    const std::int64_t count = pasteboard->changeCount();
    compositor.stop();
    const auto time = durationOf([&] { EXPECT_NE(pasteboard->changeCount(), count) << "it may have changed"; });
    EXPECT_GE(time, kServerLimit - 10ms);
    EXPECT_LT(time, kServerLimit + 500ms);
    EXPECT_FALSE(pasteboard->setString("lost"));
    compositor.resume();
    EXPECT_TRUE(pasteboard->setString("ours again"));
    EXPECT_EQ(pasteboard->string(), "ours again");
}

}  // namespace
}  // namespace ravlin::tests
