#include "Platform/Clipboard/TransferQueue.h"

#include <chrono>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using namespace std::literals;
using testing::ElementsAre;
using Key = std::pair<int, int>;
using Queue = TransferQueue<Key, int>;

TEST(TransferQueue, EachIsFoundByItsKeyUntilItIsRemoved) {
    Queue queue(1h);
    EXPECT_EQ(queue.find({1, 1}), nullptr);
    queue.add({1, 1}, 11);
    queue.add({1, 2}, 12);
    EXPECT_EQ(*queue.find({1, 1}), 11);
    queue.add({1, 1}, 13);
    EXPECT_EQ(*queue.find({1, 1}), 13) << "in place of the one before";
    EXPECT_THAT(queue.keys(), ElementsAre(Key(1, 1), Key(1, 2)));
    queue.remove({1, 1});
    queue.remove({7, 7});
    EXPECT_THAT(queue.keys(), ElementsAre(Key(1, 2)));
    queue.clear();
    EXPECT_EQ(queue.find({1, 2}), nullptr);
}

TEST(TransferQueue, ARangeOfKeysIsRemovedAtOnce) {
    Queue queue(1h);
    for (const Key& key : {Key(1, 9), Key(2, 0), Key(2, 5), Key(2, 9), Key(3, 0)}) queue.add(key, 0);
    queue.remove({2, 0}, {2, 9});
    EXPECT_THAT(queue.keys(), ElementsAre(Key(1, 9), Key(3, 0)));
    queue.remove({2, 0}, {2, 9});
    EXPECT_THAT(queue.keys(), ElementsAre(Key(1, 9), Key(3, 0)));
}

TEST(TransferQueue, TheOneThatHasWaitedLongestMakesRoom) {
    Queue queue(1h);
    constexpr int kCount = static_cast<int>(Queue::kMaximumCount);
    for (int i = 0; i < kCount; ++i) queue.add({i, 0}, i);
    queue.noteStep({0, 0});
    EXPECT_NE(queue.find({1, 0}), nullptr) << "there is room for all of them";
    queue.add({kCount, 0}, kCount);
    EXPECT_EQ(queue.keys().size(), Queue::kMaximumCount);
    EXPECT_EQ(queue.find({1, 0}), nullptr);
    EXPECT_NE(queue.find({0, 0}), nullptr) << "its reader has just taken something";
}

TEST(TransferQueue, StalledOnesAreRemovedAtTheDeadline) {
    Queue patient(1h);
    EXPECT_EQ(patient.nextDeadline(), std::nullopt);
    patient.add({1, 1}, 0);
    EXPECT_GT(patient.nextDeadline(), Queue::Clock::now() + 50min);
    patient.removeStalled();
    EXPECT_NE(patient.find({1, 1}), nullptr);

    Queue impatient(0ms);
    impatient.add({1, 1}, 0);
    impatient.add({2, 2}, 0);
    EXPECT_LE(impatient.nextDeadline(), Queue::Clock::now());
    impatient.removeStalled();
    EXPECT_EQ(impatient.nextDeadline(), std::nullopt);
    EXPECT_THAT(impatient.keys(), ElementsAre());
}

TEST(TransferQueue, AStepMovesTheDeadline) {
    Queue queue(1h);
    queue.add({1, 1}, 0);
    queue.add({2, 2}, 0);
    const auto before = queue.nextDeadline();
    queue.noteStep({1, 1});
    EXPECT_GE(queue.nextDeadline(), before);
    const auto ofSecond = queue.nextDeadline();
    queue.noteStep({2, 2});
    EXPECT_GE(queue.nextDeadline(), ofSecond);
}

}  // namespace
}  // namespace ravlin
