// FocusPasteboard: what it can do while its window has the keyboard focus, and that it does no harm while it has not.

#include "Engine/Support/NonCopyable.h"
#include "tests/platform/FakeCompositor.h"
#include "tests/platform/WaylandClients.h"
#include "tests/platform/WaylandWindow.h"

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;
using testing::Optional;
using Type = Pasteboard::Type;

class WaylandFocus : public testing::Test {
protected:
    /// What another program, which needs no focus for that, finds on the clipboard.
    std::optional<std::string> pasteElsewhere() {
        Process reader({CLIPBOARD_PROGRAM, "paste"});
        EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return !reader.readOutput(); }));
        return reader.waitForEnd() == 0 ? std::optional(reader.output()) : std::nullopt;
    }

    std::int64_t changesBy(const std::function<void()>& action) {
        const std::int64_t before = pasteboard_->changeCount();
        action();
        return pasteboard_->changeCount() - before;
    }

    void expectNothingIsKnown() {
        EXPECT_EQ(pasteboard_->string(), std::nullopt);
        EXPECT_EQ(pasteboard_->data(Type::rtf), std::nullopt);
        EXPECT_EQ(pasteboard_->data(Type::html), std::nullopt);
        EXPECT_EQ(pasteboard_->itemCount(), std::nullopt);
        EXPECT_GT(changesBy([] {}), 0) << "for all that is known";
    }

    void SetUp() override { setenv("WAYLAND_DISPLAY", compositor_.display().c_str(), 1); }

    FakeCompositor compositor_{{}};
    WaylandWindow window_{compositor_.display()};
    std::unique_ptr<FocusPasteboard> pasteboard_ = openPasteboardOf(window_);
};

TEST_F(WaylandFocus, WithItTheClipboardIsReadAndWritten) {
    compositor_.giveFocus();
    EXPECT_EQ(pasteboard_->string(), "text");
    EXPECT_THAT(pasteboard_->itemCount(), Optional(1U));
    EXPECT_EQ(changesBy([] {}), 0);
    EXPECT_EQ(changesBy([&] { EXPECT_TRUE(pasteboard_->setString("ours")); }), 1);
    EXPECT_EQ(pasteboard_->string(), "ours");
    EXPECT_EQ(pasteElsewhere(), "ours");
}

TEST_F(WaylandFocus, WithoutItNothingIsKnownAndNothingIsWritten) {
    expectNothingIsKnown();
    EXPECT_FALSE(pasteboard_->setString("blindly"));
    pasteboard_->clearContents();
    EXPECT_FALSE(pasteboard_->setString("blindly"));
    pasteboard_->clearContents();
    expectNothingIsKnown();
    EXPECT_EQ(pasteElsewhere(), "text");
}

TEST_F(WaylandFocus, WithItsLossKnowledgeIsLostAndComesBackWithIt) {
    compositor_.giveFocus();
    EXPECT_EQ(pasteboard_->string(), "text");
    compositor_.takeFocus();
    expectNothingIsKnown();
    const ForeignSource source("copied meanwhile");
    expectNothingIsKnown();
    EXPECT_FALSE(pasteboard_->setString("blindly"));
    EXPECT_GT(changesBy([&] { compositor_.giveFocus(); }), 0);
    EXPECT_EQ(pasteboard_->string(), "copied meanwhile");
}

TEST_F(WaylandFocus, LossBetweenTwoLooksIsAChange) {
    compositor_.giveFocus();
    EXPECT_GT(changesBy([&] { compositor_.takeFocus(); }), 0);
    compositor_.giveFocus();
    EXPECT_GT(changesBy([&] {
                  compositor_.takeFocus();
                  compositor_.giveFocus();
              }),
              0)
        << "somebody may have copied in between";
}

TEST_F(WaylandFocus, OurOwnTextIsKnownAndServedWithoutItUntilSomebodyCopies) {
    compositor_.giveFocus();
    ASSERT_TRUE(pasteboard_->setString("ours"));
    compositor_.takeFocus();
    EXPECT_EQ(pasteboard_->string(), "ours");
    EXPECT_THAT(pasteboard_->itemCount(), Optional(1U));
    EXPECT_EQ(changesBy([] {}), 0);
    EXPECT_EQ(pasteElsewhere(), "ours");
    EXPECT_FALSE(pasteboard_->setString("more"));
    EXPECT_EQ(pasteElsewhere(), "ours");
    const ForeignSource source("theirs");
    expectNothingIsKnown();
    compositor_.giveFocus();
    EXPECT_EQ(pasteboard_->string(), "theirs");
}

TEST_F(WaylandFocus, OurOwnTextCanBeTakenAwayWithoutIt) {
    compositor_.giveFocus();
    ASSERT_TRUE(pasteboard_->setString("ours"));
    compositor_.takeFocus();
    pasteboard_->clearContents();
    EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return pasteElsewhere() == std::nullopt; }));
    compositor_.giveFocus();
    EXPECT_THAT(pasteboard_->itemCount(), Optional(0U));
}

TEST_F(WaylandFocus, CopyThatAnswersNoInputIsRefusedAndHarmsNothing) {
    compositor_.giveFocus();
    const ForeignSource source("theirs");
    EXPECT_FALSE(pasteboard_->setString("late")) << "later than our last input";
    EXPECT_EQ(pasteboard_->string(), "theirs");
    compositor_.pressKey();
    ASSERT_TRUE(pasteboard_->setString("ours"));
    EXPECT_FALSE(pasteboard_->setString("again")) << "one copy for each input";
    EXPECT_EQ(pasteboard_->string(), "ours") << "that of before";
    EXPECT_EQ(pasteElsewhere(), "ours");
    compositor_.pressKey();
    EXPECT_TRUE(pasteboard_->setString("again"));
    EXPECT_EQ(pasteElsewhere(), "again");
}

TEST_F(WaylandFocus, KeyboardMayComeAndGo) {
    compositor_.giveFocus();
    EXPECT_EQ(pasteboard_->string(), "text");
    compositor_.removeKeyboard();
    expectNothingIsKnown();
    EXPECT_FALSE(pasteboard_->setString("blindly"));
    compositor_.addKeyboard();
    EXPECT_EQ(pasteboard_->string(), "text");
    EXPECT_TRUE(pasteboard_->setString("ours"));
}

TEST_F(WaylandFocus, SeatThatGoesTakesItsClipboardWithItAndTheNextOneTakesOver) {
    compositor_.addSeat();
    compositor_.giveFocus();
    ASSERT_TRUE(pasteboard_->setString("on the first"));
    const std::int64_t count = pasteboard_->changeCount();
    compositor_.removeSeat();
    EXPECT_NE(pasteboard_->changeCount(), count);
    expectNothingIsKnown();
    compositor_.giveFocus();
    EXPECT_EQ(pasteboard_->string(), "text");
    EXPECT_TRUE(pasteboard_->setString("on the second"));
    compositor_.removeSeat();
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_FALSE(pasteboard_->setString("nowhere"));
}

TEST_F(WaylandFocus, OpenedWithItEverythingIsThereAtOnce) {
    compositor_.giveFocus();
    const auto later = openPasteboardOf(window_);
    EXPECT_EQ(later->string(), "text");
    EXPECT_TRUE(later->setString("ours"));
}

TEST_F(WaylandFocus, NothingLingers) {
    compositor_.giveFocus();
    ASSERT_TRUE(pasteboard_->setString("ours"));
    const pid_t before = getpid();
    pasteboard_->lingerIfOwner();
    EXPECT_EQ(getpid(), before);
    EXPECT_EQ(pasteboard_->string(), "ours");
}

TEST_F(WaylandFocus, WhatHasBeenAskedForIsServedToItsEndBeforeTheEnd) {
    compositor_.giveFocus();
    const std::string text = textOfSize(3000000);
    ASSERT_TRUE(pasteboard_->setString(text));
    Process reader({CLIPBOARD_PROGRAM, "paste"});
    std::optional<bool> isAtItsEnd;
    std::thread taking([&] {
        while (reader.readOutput()) isReadable(reader.outputDescriptor(), 100ms);
        isAtItsEnd = true;
    });
    // Nothing has been requested yet.
    EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return isReadable(pasteboard_->fileDescriptor(), 10s); }));
    pasteboard_->finishTransfers(Clock::now() + kGenerously);
    pasteboard_.reset();
    taking.join();
    EXPECT_EQ(isAtItsEnd, true);
    EXPECT_TRUE(reader.output() == text);
}

TEST_F(WaylandFocus, ReaderThatTakesNothingHoldsTheEndUpUntilTheDeadlineOnly) {
    compositor_.giveFocus();
    ASSERT_TRUE(pasteboard_->setString(textOfSize(3000000)));
    Paster stuck;
    const Descriptor pipe = stuck.begin("UTF8_STRING");
    const auto time = durationOf([&] { pasteboard_->finishTransfers(Clock::now() + 100ms); });
    EXPECT_GE(time, 99ms);
    EXPECT_LT(time, 1900ms);
}

/// Reads from a connection in its own thread, as toolkits do, and dispatches nothing.
class OtherReader : NonCopyable {
public:
    explicit OtherReader(wl_display* display) : display_(display) {}
    ~OtherReader() {
        isEnding_ = true;
        thread_.join();
    }

private:
    void read() {
        while (!isEnding_) {
            if (wl_display_prepare_read(display_) != 0) {
                wl_display_dispatch_pending(display_);
            } else if (isReadable(wl_display_get_fd(display_), 20ms)) {
                wl_display_read_events(display_);
            } else {
                wl_display_cancel_read(display_);
            }
        }
    }

    wl_display* display_;
    std::atomic<bool> isEnding_ = false;
    std::thread thread_{[this] { read(); }};
};

TEST_F(WaylandFocus, ThatSomebodyElseReadsFromTheConnectionDisturbsNothing) {
    const OtherReader reader(window_.display());
    compositor_.giveFocus();
    const ForeignSource source("theirs");
    const auto time = durationOf([&] {
        for (int i = 0; i < 500; ++i) {
            EXPECT_EQ(pasteboard_->string(), "theirs");
            EXPECT_EQ(changesBy([] {}), 0);
            compositor_.pressKey();
            EXPECT_TRUE(pasteboard_->setString("ours"));
            EXPECT_EQ(changesBy([&] { const_cast<ForeignSource&>(source).copyAgain(); }), 1);
        }
    });
    EXPECT_LT(time, 15s) << "which is less than a single wait in every twentieth round";
}

TEST_F(WaylandFocus, ItsEndInTheMiddleOfOthersCopiesLeavesTheConnectionIntact) {
    const OtherReader reader(window_.display());
    compositor_.giveFocus();
    ForeignSource source("theirs");
    std::atomic<bool> isCopying = true;
    std::atomic<int> openingCount = 0;
    std::thread copying([&] {
        for (int i = 0; i < 200; ++i) {
            // So few that the compositor has not to drop us if we are slow to read.
            const int seen = openingCount;
            for (int each = 0; each < 20; ++each) source.copyAgain();
            openingCount.wait(seen);
        }
        isCopying = false;
    });
    while (isCopying) {
        pasteboard_ = openPasteboardOf(window_);
        ++openingCount;
        openingCount.notify_one();
    }
    copying.join();
    EXPECT_EQ(pasteboard_->string(), "theirs");
}

TEST_F(WaylandFocus, HungCompositorCostsEachOperationItsLimit) {
    compositor_.giveFocus();
    ASSERT_TRUE(pasteboard_->setString("ours"));
    const std::int64_t count = pasteboard_->changeCount();
    compositor_.stop();
    const auto time = durationOf([&] { EXPECT_NE(pasteboard_->changeCount(), count); });
    EXPECT_GE(time, WaylandConnection::kServerLimit - 10ms);
    EXPECT_LT(time, WaylandConnection::kServerLimit + 500ms);
    compositor_.resume();
    EXPECT_EQ(pasteboard_->string(), "ours");
}

TEST(WaylandFocusMissing, WithoutTheCoreClipboardThereIsAReason) {
    const FakeCompositor compositor({.hasCoreClipboard = false});
    const WaylandWindow window(compositor.display());
    std::string whyNot;
    EXPECT_EQ(FocusPasteboard::open(window.display(), whyNot), nullptr);
    EXPECT_EQ(whyNot, "the compositor offers no clipboard");
}

TEST(WaylandFocusMissing, WithoutASeatThereIsNothingUntilOneComes) {
    FakeCompositor compositor({.hasSeat = false});
    const WaylandWindow window(compositor.display());
    const auto pasteboard = openPasteboardOf(window);
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_FALSE(pasteboard->setString("nowhere"));
    compositor.addSeat();
    compositor.giveFocus();
    EXPECT_EQ(pasteboard->string(), "text");
}

}  // namespace
}  // namespace ravlin::tests
