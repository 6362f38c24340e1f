// WaylandPasteboard on compositors that are not available: with the protocol's newer name, with seats that come and go.

#include "tests/platform/FakeCompositor.h"
#include "tests/platform/WaylandClients.h"

#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using testing::Optional;

std::unique_ptr<WaylandPasteboard> openOn(const FakeCompositor& compositor) {
    return openPasteboard({}, compositor.display().c_str());
}

TEST(WaylandSeats, ProtocolByItsNewerNameDoesTheSame) {
    const FakeCompositor compositor({});
    const auto pasteboard = openOn(compositor);
    EXPECT_EQ(pasteboard->changeCount(), 0);
    EXPECT_EQ(pasteboard->string(), "text");
    EXPECT_THAT(pasteboard->itemCount(), Optional(1U));
    ASSERT_TRUE(pasteboard->setString("ours"));
    EXPECT_EQ(pasteboard->changeCount(), 1);
    Process reader([&] { _exit(openOn(compositor)->string() == "ours" ? 0 : 1); });
    EXPECT_TRUE(serveUntil(*pasteboard, [&] { return reader.hasEnded(); }));
    EXPECT_EQ(reader.waitForEnd(), 0);
    const auto writer = openOn(compositor);
    ASSERT_TRUE(writer->setString("theirs"));
    EXPECT_EQ(pasteboard->changeCount(), 2);
    pasteboard->clearContents();
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
}

TEST(WaylandSeats, SelectingIsNotCopying) {
    FakeCompositor compositor({});
    const auto pasteboard = openOn(compositor);
    compositor.select();
    EXPECT_EQ(pasteboard->changeCount(), 0);
    EXPECT_EQ(pasteboard->string(), "text");
}

TEST(WaylandSeats, SeatThatGoesTakesItsClipboardWithItAndTheNextOneTakesOver) {
    FakeCompositor compositor({});
    const auto pasteboard = openOn(compositor);
    ASSERT_TRUE(pasteboard->setString("ours"));
    const std::int64_t count = pasteboard->changeCount();
    compositor.removeSeat();
    EXPECT_NE(pasteboard->changeCount(), count);
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
    EXPECT_FALSE(pasteboard->setString("nowhere"));
    pasteboard->clearContents();
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
    const std::int64_t countWithoutSeat = pasteboard->changeCount();
    compositor.addSeat();
    EXPECT_NE(pasteboard->changeCount(), countWithoutSeat);
    EXPECT_EQ(pasteboard->string(), "text");
    EXPECT_TRUE(pasteboard->setString("ours again"));
    EXPECT_EQ(pasteboard->string(), "ours again");
}

TEST(WaylandSeats, SecondSeatHasAClipboardOfItsOwn) {
    FakeCompositor compositor({});
    compositor.addSeat();
    const auto pasteboard = openOn(compositor);
    ASSERT_TRUE(pasteboard->setString("on the first"));
    compositor.removeSeat();
    EXPECT_EQ(pasteboard->string(), "text");
}

TEST(WaylandSeats, FirstSeatMayComeLater) {
    FakeCompositor compositor({.hasSeat = false});
    const auto pasteboard = openOn(compositor);
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
    compositor.addSeat();
    EXPECT_EQ(pasteboard->string(), "text");
}

TEST(WaylandSeats, WithoutDataControlThereIsAReason) {
    const FakeCompositor compositor({.hasDataControl = false});
    std::string whyNot;
    EXPECT_EQ(WaylandPasteboard::open(compositor.display().c_str(), whyNot), nullptr);
    EXPECT_EQ(whyNot, "the compositor offers no data control");
}

}  // namespace
}  // namespace ravlin::tests
