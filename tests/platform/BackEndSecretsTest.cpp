// What a password manager has copied stays marked as a secret.

#include "Platform/Clipboard/TextFormats.h"
#include "tests/platform/BackEnd.h"

#include <chrono>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;

const std::string kHint = "x-kde-passwordManagerHint";

class BackEndSecrets : public testing::Test {
protected:
    /// What a transform does with what is on the clipboard.
    void replace(const std::string& result) {
        const std::int64_t count = pasteboard_->changeCount();
        EXPECT_NE(pasteboard_->string(), std::nullopt);
        ASSERT_TRUE(pasteboard_->replaceIfUnchanged(count, result));
    }

    std::optional<std::string> hint() { return pasteElsewhere(kHint, *pasteboard_); }

    std::unique_ptr<SystemPasteboard> pasteboard_ = openBackEnd();
};

TEST_F(BackEndSecrets, ResultIsMarkedLikeItsOrigin) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "password"}, {kHint, "secret"}}});
    replace("PASSWORD");
    EXPECT_EQ(hint(), "secret");
    EXPECT_EQ(pasteElsewhere("UTF8_STRING", *pasteboard_), "PASSWORD");
    EXPECT_EQ(pasteboard_->itemCount(), 1U);
}

TEST_F(BackEndSecrets, SoIsTheResultOfAResult) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "password"}, {kHint, "secret"}}});
    for (const char* const result : {"PASSWORD", "DROWSSAP", ""}) {
        replace(result);
        EXPECT_EQ(hint(), "secret");
    }
}

TEST_F(BackEndSecrets, RichTextIsMarkedAsWell) {
    const auto owner = copyElsewhere({.content = {{"text/html", "<b>p"}, {kHint, "secret"}}});
    const std::int64_t count = pasteboard_->changeCount();
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_EQ(pasteboard_->data(Pasteboard::Type::html), "<b>p");
    ASSERT_TRUE(pasteboard_->replaceIfUnchanged(count, "p"));
    EXPECT_EQ(hint(), "secret");
}

TEST_F(BackEndSecrets, OwnerThatEndsBeforeTheWriteChangesNothingAboutIt) {
    auto owner = copyElsewhere({.content = {{"UTF8_STRING", "password"}, {kHint, "secret"}}});
    const std::int64_t count = pasteboard_->changeCount();
    EXPECT_EQ(pasteboard_->string(), "password");
    owner.reset();
    EXPECT_TRUE(waitForChange(*pasteboard_, count));
    ASSERT_TRUE(pasteboard_->replaceIfUnchanged(count, "PASSWORD"));
    EXPECT_EQ(hint(), "secret");
}

TEST_F(BackEndSecrets, WhatIsNoSecretIsNotMarked) {
    {
        const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "password"}, {kHint, "secret"}}});
        replace("PASSWORD");
    }
    ASSERT_TRUE(pasteboard_->setString("typed into the search field"));
    EXPECT_EQ(hint(), std::nullopt);
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "text"}}});
    replace("TEXT");
    EXPECT_EQ(hint(), std::nullopt);
}

TEST_F(BackEndSecrets, OnlyTheExactNameCounts) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "text"}, {"X-KDE-PasswordManagerHint", "secret"}}});
    replace("TEXT");
    EXPECT_EQ(hint(), std::nullopt);
}

TEST_F(BackEndSecrets, HintOfTheLargestSizeIsCarriedAndOneByteMoreIsNot) {
    const std::string longest(TextFormats::kMaximumPasswordHintSize, 's');
    for (const std::string& value : {longest, longest + "s"}) {
        const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "password"}, {kHint, value}}});
        replace("PASSWORD");
        EXPECT_EQ(hint(), value == longest ? std::optional(value) : std::nullopt);
    }
}

TEST_F(BackEndSecrets, HintThatTricklesIsGivenUpWhenTheTimeOfTheReadingIsOver) {
    pasteboard_ = openBackEnd({.idle = 1s, .total = 3s});
    const std::string text = textOfSize(20);
    const std::string longest(TextFormats::kMaximumPasswordHintSize, 's');
    const auto owner = copyElsewhere(
        {.content = {{"UTF8_STRING", text}, {kHint, longest}}, .incrementSize = 1, .pauseBeforeIncrement = 50ms});
    const std::int64_t count = pasteboard_->changeCount();
    const auto time = durationOf([&] { EXPECT_EQ(pasteboard_->string(), text); });
    EXPECT_LT(time, 3s + 5s);
    ASSERT_TRUE(pasteboard_->replaceIfUnchanged(count, "result"));
    EXPECT_EQ(hint(), std::nullopt);
}

}  // namespace
}  // namespace ravlin::tests
