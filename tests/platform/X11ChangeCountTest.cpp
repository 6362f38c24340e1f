// The change counter of X11Pasteboard: every change, once, at once.

#include "tests/platform/X11Clients.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

class X11ChangeCount : public testing::Test {
protected:
    /// How far `action` moves the counter, with only the action between the two looks at it.
    std::int64_t changesBy(const std::function<void()>& action) {
        const std::int64_t before = pasteboard_->changeCount();
        action();
        return pasteboard_->changeCount() - before;
    }

    std::unique_ptr<X11Pasteboard> pasteboard_ = openPasteboard();
};

TEST_F(X11ChangeCount, EveryKindOfForeignChangeCountsOnce) {
    ForeignOwner owner("text");
    EXPECT_EQ(changesBy([] {}), 0);
    EXPECT_EQ(changesBy([&] { owner.copyAgain(); }), 1);
    EXPECT_EQ(changesBy([&] { owner.select(); }), 0) << "PRIMARY is not the clipboard";
    EXPECT_EQ(changesBy([&] { owner.clear(); }), 1);
    EXPECT_EQ(changesBy([&] { ForeignOwner("other"); }), 1 + 1) << "a copy, and the end of the program that made it";
}

TEST_F(X11ChangeCount, ReadingChangesNothing) {
    const ForeignOwner owner("text");
    EXPECT_EQ(changesBy([&] {
                  EXPECT_EQ(pasteboard_->string(), "text");
                  EXPECT_EQ(pasteboard_->itemCount(), 1U);
              }),
              0);
}

TEST_F(X11ChangeCount, OwnChangesCountOnceAndAtOnce) {
    EXPECT_EQ(changesBy([&] { EXPECT_TRUE(pasteboard_->setString("a")); }), 1);
    EXPECT_EQ(changesBy([&] { EXPECT_TRUE(pasteboard_->setString("a")); }), 1) << "the same text again";
    EXPECT_EQ(changesBy([&] { pasteboard_->clearContents(); }), 1);
    EXPECT_EQ(changesBy([&] { pasteboard_->clearContents(); }), 1) << "though it was empty";
    EXPECT_EQ(changesBy([&] {
                  pasteboard_->clearContents();
                  pasteboard_->setString("b");
              }),
              1);
    EXPECT_EQ(changesBy([&] { pasteboard_->processEvents(); }), 0);
}

TEST_F(X11ChangeCount, CopyOverOurTextCounts) {
    pasteboard_->setString("ours");
    EXPECT_EQ(changesBy([] { X11Client().own(); }), 1 + 1);
    EXPECT_EQ(pasteboard_->itemCount(), 0U) << "its owner has ended";
}

TEST_F(X11ChangeCount, NoneOfManyCopiesIsMissedOneByOne) {
    ForeignOwner owner("text");
    int missedCount = 0;
    for (int i = 0; i < ForeignOwner::kManyTimes; ++i) {
        if (changesBy([&] { owner.copyAgain(); }) != 1) ++missedCount;
    }
    EXPECT_EQ(missedCount, 0);
}

TEST_F(X11ChangeCount, NoneOfManyCopiesIsMissedInARow) {
    ForeignOwner owner("text");
    EXPECT_EQ(changesBy([&] { owner.copyManyTimes(); }), ForeignOwner::kManyTimes);
}

TEST_F(X11ChangeCount, NoneOfManyCopiesIsMissedWhileWeReadAndWrite) {
    ForeignOwner owner("text");
    EXPECT_EQ(changesBy([&] {
                  for (int i = 0; i < 100; ++i) {
                      owner.copyAgain();
                      EXPECT_EQ(pasteboard_->string(), "text");
                      owner.copyAgain();
                      EXPECT_TRUE(pasteboard_->setString("ours"));
                  }
              }),
              100 * 3);
}

TEST_F(X11ChangeCount, EventsThatOtherProgramsMakeUpAreNotBelieved) {
    pasteboard_->setString("ours");
    X11Client forger;
    const xcb_window_t window = forger.owner();
    EXPECT_EQ(changesBy([&] {
                  for (int type = 2; type < 128; ++type) {  // every event there is, those of XFixes included
                      if (type == XCB_SELECTION_NOTIFY) continue;
                      char event[32] = {static_cast<char>(type)};
                      xcb_send_event(forger.get(), 0, window, 0, event);
                  }
                  forger.synchronise();
              }),
              0);
    EXPECT_EQ(pasteboard_->string(), "ours");
}

}  // namespace
}  // namespace ravlin::tests
