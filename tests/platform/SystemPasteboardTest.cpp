// What SystemPasteboard does for every back end: counting, a pending clearing, leaving nothing behind.

#include "Platform/Clipboard/SystemPasteboard.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// A back end that records its steps.
class Stepping final : public SystemPasteboard {
public:
    int fileDescriptor() const override { return -1; }

    // What the desktop is like.
    bool answers = true;
    bool tells = true;
    Text own;
    std::optional<std::string> foreign;
    OfferedText::Bytes hint;
    std::function<void()> beforeAnswer = [] {};

    void copyElsewhere(const std::string& text) {
        foreign = text;
        own = nullptr;
        noteChange();
    }

    /// The steps since the last call.
    std::vector<std::string> takeSteps() { return std::exchange(steps_, {}); }

private:
    bool awaitAnswer() override {
        steps_.emplace_back("awaitAnswer");
        std::exchange(beforeAnswer, [] {})();
        return answers;
    }
    bool hasAccess() const override { return tells; }
    bool isEmpty() const override { return own == nullptr && !foreign; }
    Text ownText() const override { return own; }
    std::optional<std::string> read(Type /*type*/) override {
        steps_.emplace_back("read");
        return foreign;
    }
    OfferedText::Bytes readPasswordHint() override { return hint; }
    bool write(const Text& text, std::int64_t count) override {
        steps_.push_back("write " + text->text());
        if (isOvertaken(count)) return false;
        own = text;
        foreign.reset();
        noteChange();
        return true;
    }
    void clear() override {
        steps_.emplace_back("clear");
        own = nullptr;
        foreign.reset();
        noteChange();
    }
    void wakeUp() override { steps_.emplace_back("wakeUp"); }
    void handleEvents() override { steps_.emplace_back("handleEvents"); }
    void settle() override { steps_.emplace_back("settle"); }

    std::vector<std::string> steps_;
};

TEST(SystemPasteboard, EveryOperationEndsWithNothingLeftBehind) {
    for (const bool answers : {true, false}) {
        Stepping pasteboard;
        pasteboard.answers = answers;
        const std::vector<std::function<void()>> operations = {
            [&] { pasteboard.changeCount(); },
            [&] { pasteboard.string(); },
            [&] { pasteboard.data(Pasteboard::Type::rtf); },
            [&] { pasteboard.itemCount(); },
            [&] { pasteboard.clearContents(); },
            [&] { pasteboard.setString("text"); },
            [&] { pasteboard.replaceIfUnchanged(0, "text"); },
            [&] { pasteboard.processEvents(); },
            [&] { pasteboard.lingerIfOwner(); },
        };
        for (std::size_t i = 0; i < operations.size(); ++i) {
            operations[i]();
            const std::vector<std::string> steps = pasteboard.takeSteps();
            ASSERT_FALSE(steps.empty()) << i;
            EXPECT_EQ(steps.back(), "settle") << i;
            EXPECT_EQ(std::ranges::count(steps, "settle"), 1) << i;
        }
    }
}

TEST(SystemPasteboard, WhatCannotBeKnownCountsAsAChangeAndIsNotTold) {
    for (const bool answers : {true, false}) {
        Stepping pasteboard;
        pasteboard.copyElsewhere("theirs");
        const std::int64_t count = pasteboard.changeCount();
        EXPECT_EQ(pasteboard.changeCount(), count);
        pasteboard.answers = answers;
        pasteboard.tells = !answers;
        EXPECT_EQ(pasteboard.changeCount(), count + 1);
        EXPECT_EQ(pasteboard.string(), std::nullopt);
        EXPECT_EQ(pasteboard.itemCount(), std::nullopt);
        EXPECT_FALSE(pasteboard.replaceIfUnchanged(count, "ours"));
    }
}

TEST(SystemPasteboard, ClearingTakesEffectWithTheNextOperationThatLooks) {
    Stepping pasteboard;
    pasteboard.copyElsewhere("theirs");
    pasteboard.clearContents();
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("wakeUp", "settle"));
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("clear", "awaitAnswer", "read", "settle"));
    EXPECT_THAT(pasteboard.itemCount(), Optional(0U));
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("awaitAnswer", "settle")) << "once";
    pasteboard.clearContents();
    pasteboard.takeSteps();
    pasteboard.processEvents();
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("handleEvents", "clear", "settle"));
    pasteboard.processEvents();
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("handleEvents", "settle"));
}

TEST(SystemPasteboard, WriteTakesThePlaceOfAPendingClearing) {
    Stepping pasteboard;
    pasteboard.clearContents();
    EXPECT_TRUE(pasteboard.setString("a"));
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("wakeUp", "settle", "awaitAnswer", "write a", "settle"));
    pasteboard.clearContents();
    EXPECT_TRUE(pasteboard.replaceIfUnchanged(pasteboard.changeCount(), "b"));
    pasteboard.takeSteps();
    pasteboard.processEvents();
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("handleEvents", "settle"));
    EXPECT_EQ(pasteboard.string(), "b");
}

TEST(SystemPasteboard, ReplacingStandsBackWhereTheCountIsOld) {
    Stepping pasteboard;
    pasteboard.copyElsewhere("theirs");
    const std::int64_t count = pasteboard.changeCount();
    pasteboard.copyElsewhere("newer");
    pasteboard.takeSteps();
    EXPECT_FALSE(pasteboard.replaceIfUnchanged(count, "ours"));
    EXPECT_THAT(pasteboard.takeSteps(), ElementsAre("settle"));
    EXPECT_TRUE(pasteboard.replaceIfUnchanged(pasteboard.changeCount(), "ours"));
    EXPECT_EQ(pasteboard.string(), "ours");
}

TEST(SystemPasteboard, ReplacingGoesOnWhereTheOwnerHasEnded) {
    Stepping pasteboard;
    pasteboard.copyElsewhere("theirs");
    const std::int64_t count = pasteboard.changeCount();
    pasteboard.copyElsewhere("");
    pasteboard.foreign.reset();
    EXPECT_TRUE(pasteboard.replaceIfUnchanged(count, "ours"));
}

TEST(SystemPasteboard, SettingReplacesWhateverHasComeUntilItsOwnLook) {
    Stepping pasteboard;
    pasteboard.changeCount();
    pasteboard.beforeAnswer = [&] { pasteboard.copyElsewhere("theirs"); };
    EXPECT_TRUE(pasteboard.setString("ours"));
    EXPECT_EQ(pasteboard.string(), "ours");
}

TEST(SystemPasteboard, HintGoesOnFromWhatWasReadToWhatReplacesItAndNoFurther) {
    Stepping pasteboard;
    pasteboard.copyElsewhere("password");
    pasteboard.hint = std::make_shared<const std::string>("secret");
    EXPECT_TRUE(pasteboard.replaceIfUnchanged(pasteboard.changeCount(), "not read"));
    EXPECT_EQ(pasteboard.own->passwordHint(), nullptr);
    pasteboard.copyElsewhere("password");
    pasteboard.string();
    pasteboard.copyElsewhere("next");
    EXPECT_TRUE(pasteboard.replaceIfUnchanged(pasteboard.changeCount(), "not read either"));
    EXPECT_EQ(pasteboard.own->passwordHint(), nullptr);
    pasteboard.copyElsewhere("password");
    pasteboard.string();
    EXPECT_TRUE(pasteboard.replaceIfUnchanged(pasteboard.changeCount(), "PASSWORD"));
    EXPECT_EQ(pasteboard.own->passwordHint(), pasteboard.hint);
    pasteboard.hint = nullptr;
    pasteboard.string();
    EXPECT_TRUE(pasteboard.replaceIfUnchanged(pasteboard.changeCount(), "again"));
    EXPECT_EQ(*pasteboard.own->passwordHint(), "secret");
    EXPECT_TRUE(pasteboard.setString("copied"));
    EXPECT_EQ(pasteboard.own->passwordHint(), nullptr);
}

TEST(SystemPasteboard, OurOwnTextIsReadWithoutAskingForIt) {
    Stepping pasteboard;
    pasteboard.setString("ours");
    pasteboard.takeSteps();
    EXPECT_EQ(pasteboard.string(), "ours");
    EXPECT_EQ(pasteboard.data(Pasteboard::Type::string), "ours");
    EXPECT_EQ(pasteboard.data(Pasteboard::Type::rtf), std::nullopt);
    EXPECT_EQ(std::ranges::count(pasteboard.takeSteps(), "read"), 0);
    EXPECT_THAT(pasteboard.itemCount(), Optional(1U));
}

}  // namespace
}  // namespace ravlin
