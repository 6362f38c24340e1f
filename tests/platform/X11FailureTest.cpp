// X11Pasteboard without its server, and the service on top of it with an owner that does not answer.

#include "Engine/PasteboardService.h"
#include "tests/platform/X11Clients.h"

#include <chrono>
#include <string>
#include <variant>

#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;

/// Every operation, in the order in which a transform and the end of the program perform them.
void expectNothingWorks(X11Pasteboard& pasteboard) {
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_EQ(pasteboard.data(Pasteboard::Type::rtf), std::nullopt);
    EXPECT_EQ(pasteboard.itemCount(), std::nullopt);
    pasteboard.clearContents();
    EXPECT_FALSE(pasteboard.setString("text"));
    pasteboard.processEvents();
    pasteboard.lingerIfOwner();
}

TEST(X11Failure, NoDisplayIsTold) {
    std::string whyNot;
    EXPECT_EQ(X11Pasteboard::open(":32767", whyNot), nullptr);
    EXPECT_EQ(whyNot, "no display answers");
}

TEST(X11Failure, WithoutItsServerNothingWorksAndNothingWaits) {
    PrivateServer server;
    const auto pasteboard = openPasteboard({}, server.display().c_str());
    ASSERT_TRUE(pasteboard->setString("ours"));
    const std::int64_t count = pasteboard->changeCount();
    EXPECT_NE(pasteboard->fileDescriptor(), -1);
    server.process().kill();
    const auto start = Clock::now();
    EXPECT_NE(pasteboard->changeCount(), count) << "whatever was read before must not be written over the unknown";
    expectNothingWorks(*pasteboard);
    EXPECT_EQ(pasteboard->fileDescriptor(), -1);
    EXPECT_LT(Clock::now() - start, 1s);
}

TEST(X11Failure, ServerThatEndsDuringAnIdlePeriodIsNoticedByItsEvent) {
    PrivateServer server;
    const auto pasteboard = openPasteboard({}, server.display().c_str());
    server.process().kill();
    EXPECT_TRUE(serveUntil(*pasteboard, [&] { return pasteboard->fileDescriptor() == -1; }));
}

TEST(X11Failure, ServerThatHangsIsGivenUp) {
    PrivateServer server;
    const auto pasteboard = openPasteboard({}, server.display().c_str());
    const std::int64_t count = pasteboard->changeCount();
    server.process().stop();
    const auto start = Clock::now();
    EXPECT_FALSE(pasteboard->setString("text"));
    EXPECT_LT(Clock::now() - start, X11Connection::kServerLimit + 500ms);
    EXPECT_NE(pasteboard->changeCount(), count);
    server.process().resume();
    EXPECT_TRUE(pasteboard->setString("text"));
}

TEST(X11Failure, TransformOfAHungOwnersTextLeavesTheClipboardAlone) {
    const auto pasteboard = openPasteboard();
    Pasteboard::setGeneral(pasteboard.get());
    ForeignOwner owner("precious");
    const std::int64_t count = pasteboard->changeCount();
    owner.process().stop();
    const auto start = Clock::now();
    const PasteOutcome outcome = PasteboardService::transformClipboard(TextTransform::upperCase);
    EXPECT_LT(Clock::now() - start, 2500ms);
    EXPECT_TRUE(std::holds_alternative<NoText>(outcome));
    owner.process().resume();
    EXPECT_EQ(pasteboard->changeCount(), count);
    EXPECT_EQ(pasteboard->string(), "precious");
    EXPECT_TRUE(std::holds_alternative<Success>(PasteboardService::transformClipboard(TextTransform::upperCase)));
    Pasteboard::setGeneral(nullptr);
}

}  // namespace
}  // namespace ravlin::tests
