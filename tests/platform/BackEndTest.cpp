// What holds for the clipboard of every desktop.

#include "tests/platform/BackEnd.h"

#include <chrono>
#include <future>
#include <optional>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;
using testing::Optional;
using Type = Pasteboard::Type;

const std::string kRTF = R"({\rtf1 caf\'e9})";
const std::string kHTML = "<b>caf\u00e9</b>";
const std::string kUTF16 = "\xFF\xFE<\0b\0>\0"s;

// ---- Content -------------------------------------------------------------------------------------------------------

struct Row {
    const char* name;
    std::vector<OwnerPlan::Representation> content;
    std::optional<std::string> string;
    std::optional<std::string> rtf;
    std::optional<std::string> html;
};
std::ostream& operator<<(std::ostream& stream, const Row& row) {
    return stream << row.name;
}

const Row kRows[] = {
    {"PlainText", {{"UTF8_STRING", "caf\u00e9"}}, "caf\u00e9", {}, {}},
    {"PlainTextByItsMIMEType", {{"text/plain;charset=utf-8", "caf\u00e9"}}, "caf\u00e9", {}, {}},
    {"PlainTextWithoutACharacterSet", {{"text/plain", "caf\u00e9"}}, "caf\u00e9", {}, {}},
    {"PlainTextInOtherLetters", {{"text/plain;charset=UTF-8", "\u20ac"}}, "\u20ac", {}, {}},
    {"PlainTextWithBlanks", {{"STRING", "?"}, {"Text/Plain; Charset=UTF-8", "\u20ac"}}, "\u20ac", {}, {}},
    {"PlainTextInLatin1", {{"STRING", "caf\xE9"}}, "caf\u00e9", {}, {}},
    {"EmptyPlainText", {{"UTF8_STRING", ""}}, "", {}, {}},
    {"TrailingNULIsDropped", {{"UTF8_STRING", "a\0b\0"s}}, "a\0b"s, {}, {}},
    {"PlainTextThatIsNoUTF8", {{"UTF8_STRING", "ab\xFF\xFE"}}, {}, {}, {}},
    {"PlainTextThatIsNoUTF8AndHTML", {{"UTF8_STRING", "ab\xFF"}, {"text/html", kHTML}}, {}, {}, kHTML},
    {"RTFOnly", {{"text/rtf", kRTF}}, {}, kRTF, {}},
    {"RTFByItsOtherName", {{"application/rtf", kRTF}}, {}, kRTF, {}},
    {"RTFByItsOldName", {{"text/richtext", kRTF}}, {}, kRTF, {}},
    {"HTMLOnly", {{"text/html", kHTML}}, {}, {}, kHTML},
    {"RTFAndHTMLInOtherLetters", {{"TEXT/HTML", kHTML}, {"Text/RTF", kRTF}}, {}, kRTF, kHTML},
    {"HTMLThatIsNoUTF8", {{"text/html", kUTF16}}, {}, {}, kUTF16},
    {"All", {{"text/html", kHTML}, {"text/rtf", kRTF}, {"UTF8_STRING", "plain"}}, "plain", kRTF, kHTML},
    {"OtherCharacterSetOnly", {{"text/plain;charset=utf-16", "u"}}, {}, {}, {}},
    {"ImageOnly", {{"image/png", "\x89PNG"}}, {}, {}, {}},
    {"FileListOnly", {{"text/uri-list", "file:///tmp/a\r\n"}}, {}, {}, {}}};

class BackEndContent : public testing::TestWithParam<Row> {};

TEST_P(BackEndContent, IsReadAsTabled) {
    const auto pasteboard = openBackEnd();
    const auto owner = copyElsewhere({.content = GetParam().content});
    EXPECT_EQ(pasteboard->string(), GetParam().string);
    EXPECT_EQ(pasteboard->data(Type::rtf), GetParam().rtf);
    EXPECT_EQ(pasteboard->data(Type::html), GetParam().html);
    EXPECT_EQ(pasteboard->data(Type::string), GetParam().string);
    EXPECT_THAT(pasteboard->itemCount(), Optional(1U));
}

INSTANTIATE_TEST_SUITE_P(BackEnd, BackEndContent, testing::ValuesIn(kRows),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(BackEnd, NothingIsThere) {
    const auto pasteboard = openBackEnd();
    copyElsewhere({.content = {{"UTF8_STRING", "text"}}})->clear();
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_EQ(pasteboard->data(Type::rtf), std::nullopt);
    EXPECT_EQ(pasteboard->data(Type::html), std::nullopt);
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
}

class BackEndSize : public testing::TestWithParam<std::size_t> {};

TEST_P(BackEndSize, IsExactFromAnotherProgram) {
    const auto pasteboard = openBackEnd();
    const std::string text = textOfSize(GetParam());
    const CopyingProgram owner(*pasteboard, kCopyingProgram, text);
    EXPECT_TRUE(pasteboard->string() == text);
}

TEST_P(BackEndSize, IsExactToAnotherProgram) {
    const auto pasteboard = openBackEnd();
    const std::string text = textOfSize(GetParam());
    ASSERT_TRUE(pasteboard->setString(text));
    EXPECT_TRUE(outputOf(kPastingProgram, *pasteboard) == text);
    EXPECT_TRUE(outputOf(kPastingProgram, *pasteboard) == text) << "as often as it is wanted";
    EXPECT_TRUE(pasteboard->string() == text) << "and to ourselves";
}

TEST_P(BackEndSize, IsExactInPieces) {
    const auto pasteboard = openBackEnd();
    const std::string text = textOfSize(GetParam());
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", text}}, .incrementSize = 65000});
    EXPECT_TRUE(pasteboard->string() == text);
}

INSTANTIATE_TEST_SUITE_P(BackEnd, BackEndSize,
                         testing::Values(0, 1, 65535, 65536, 65537, 262143, 262144, 262145, 524288, 1000000, 52428800));

// ---- Programs in trouble -------------------------------------------------------------------------------------------

constexpr ReadLimits kImpatient = {.idle = 300ms, .total = 3s, .byteSize = 100000};

TEST(BackEndTrouble, HungProgramCostsTheIdleLimitOnce) {
    const auto pasteboard = openBackEnd();
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "x"}, {"text/rtf", kRTF}, {"text/html", kHTML}}});
    owner->process().stop();
    const auto time = durationOf([&] {
        EXPECT_EQ(pasteboard->string(), std::nullopt);
        EXPECT_EQ(pasteboard->data(Type::rtf), std::nullopt);
        EXPECT_EQ(pasteboard->data(Type::html), std::nullopt);
        EXPECT_THAT(pasteboard->itemCount(), Optional(1U));
    });
    EXPECT_GE(time, 1990ms);
    EXPECT_LT(time, 3900ms) << "which would be twice";
}

TEST(BackEndTrouble, HungProgramIsReadAgainOnceItAnswers) {
    const auto pasteboard = openBackEnd(kImpatient);
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", textOfSize(50000)}}});
    for (int i = 0; i < 3; ++i) {
        owner->process().stop();
        EXPECT_EQ(pasteboard->string(), std::nullopt);
        owner->process().resume();
        EXPECT_TRUE(pasteboard->string() == textOfSize(50000));
    }
}

TEST(BackEndTrouble, ProgramThatStopsInTheMiddleCostsTheIdleLimit) {
    const auto pasteboard = openBackEnd(kImpatient);
    const auto owner = copyElsewhere(
        {.content = {{"UTF8_STRING", textOfSize(90000)}}, .incrementSize = 10000, .stopsAfterIncrements = 5});
    const auto time = durationOf([&] { EXPECT_EQ(pasteboard->string(), std::nullopt); });
    EXPECT_GE(time, kImpatient.idle);
    EXPECT_LT(time, kImpatient.total);
}

TEST(BackEndTrouble, ProgramThatDiesInTheMiddleIsNoticedAtOnceAndCounts) {
    const auto pasteboard = openBackEnd();
    const auto owner = copyElsewhere(
        {.content = {{"UTF8_STRING", textOfSize(90000)}}, .incrementSize = 10000, .diesAfterIncrements = 5});
    const std::int64_t count = pasteboard->changeCount();
    const auto time = durationOf([&] { EXPECT_NE(pasteboard->string(), textOfSize(90000)); });
    EXPECT_LT(time, 1900ms);
    EXPECT_TRUE(waitForChange(*pasteboard, count));
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
}

TEST(BackEndTrouble, CopyInTheMiddleOfAReadingCountsAndDisturbsNothing) {
    const auto pasteboard = openBackEnd();
    const auto owner = copyElsewhere({.content = {{"STRING", std::string(60, '\xE9')}},
                                      .incrementSize = 10,
                                      .copiesAgainAfterIncrements = 3,
                                      .pauseBeforeIncrement = 20ms});
    const std::int64_t count = pasteboard->changeCount();
    std::string text;
    for (int i = 0; i < 60; ++i) text += "\u00e9";
    EXPECT_EQ(pasteboard->string(), text);
    EXPECT_NE(pasteboard->changeCount(), count);
}

TEST(BackEndTrouble, SlowProgramIsReadAsLongAsBytesCome) {
    const auto pasteboard = openBackEnd({.idle = 1s, .total = 20s, .byteSize = 100000});
    const std::string text = textOfSize(60);
    const auto owner =
        copyElsewhere({.content = {{"UTF8_STRING", text}}, .incrementSize = 10, .pauseBeforeIncrement = 200ms});
    EXPECT_EQ(pasteboard->string(), text);  // takes 1.2 s, more than the idle limit
}

TEST(BackEndTrouble, TricklingProgramIsGivenUpAtTheTotalLimit) {
    const auto pasteboard = openBackEnd(kImpatient);
    const auto owner = copyElsewhere(
        {.content = {{"UTF8_STRING", textOfSize(1000)}}, .incrementSize = 1, .pauseBeforeIncrement = 20ms});
    const auto time = durationOf([&] { EXPECT_EQ(pasteboard->string(), std::nullopt); });
    EXPECT_GE(time, kImpatient.total);
    EXPECT_LT(time, kImpatient.total + 5s) << "to its end it would take twenty";
}

TEST(BackEndTrouble, TricklingProgramHasOneTotalLimitForAllThatItOffers) {
    const auto pasteboard = openBackEnd({.idle = 1s, .total = 3s, .byteSize = 100000});
    const std::string useless = "\xFF" + textOfSize(50);
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", useless}, {"text/rtf", useless}, {"text/html", "h"}},
                                      .incrementSize = 1,
                                      .pauseBeforeIncrement = 40ms});
    const auto time = durationOf([&] {
        EXPECT_EQ(pasteboard->string(), std::nullopt) << "which takes two seconds to learn";
        EXPECT_EQ(pasteboard->data(Type::rtf), std::nullopt) << "and there is one second left";
        EXPECT_EQ(pasteboard->data(Type::html), std::nullopt);
    });
    EXPECT_LT(time, 3s + 5s);
    const auto next = copyElsewhere({.content = {{"text/html", kHTML}}});
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_EQ(pasteboard->data(Type::html), kHTML) << "the next click has all of the time";
}

TEST(BackEndTrouble, TimeBetweenTwoReadingsDoesNotCount) {
    const auto pasteboard = openBackEnd({.total = 1s});
    const auto owner = copyElsewhere({.content = {{"text/rtf", kRTF}, {"text/html", kHTML}}});
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    const auto start = Clock::now();
    while (Clock::now() < start + 1s) isReadable(-1, 10ms);
    EXPECT_EQ(pasteboard->data(Type::rtf), kRTF);
    EXPECT_EQ(pasteboard->data(Type::html), kHTML);
}

TEST(BackEndTrouble, TextOfTheLargestSizeIsReadAndOneByteMoreIsNot) {
    const auto pasteboard = openBackEnd(kImpatient);
    const std::string text = textOfSize(kImpatient.byteSize);
    {
        const auto owner = copyElsewhere({.content = {{"UTF8_STRING", text}}});
        EXPECT_TRUE(pasteboard->string() == text);
    }
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", text + "x"}}});
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    const auto next = copyElsewhere({.content = {{"UTF8_STRING", "next"}}});
    EXPECT_EQ(pasteboard->string(), "next");
}

TEST(BackEndTrouble, ReaderThatStopsReadingHoldsNobodyUp) {
    const auto pasteboard = openBackEnd();
    const std::string text = textOfSize(3000000);
    ASSERT_TRUE(pasteboard->setString(text));
    Process stuck(kPastingProgram);  // its output is not read, so it stops reading as well
    EXPECT_TRUE(serveUntil(*pasteboard, [&] { return isReadable(stuck.outputDescriptor(), 0ms); }));
    EXPECT_TRUE(outputOf(kPastingProgram, *pasteboard) == text);
    EXPECT_LT(durationOf([&] { pasteboard->changeCount(); }), 1900ms);
    EXPECT_TRUE(pasteboard->setString("next"));
    EXPECT_EQ(outputOf(kPastingProgram, *pasteboard), "next");
    EXPECT_TRUE(serveUntil(*pasteboard, [&] { return !stuck.readOutput(); }));
    EXPECT_TRUE(stuck.output() == text) << "what has begun comes to its end";
}

// ---- The counter ---------------------------------------------------------------------------------------------------

class BackEndChangeCount : public testing::Test {
protected:
    /// How far `action` moves the counter, with only the action between the two looks at it.
    std::int64_t changesBy(const std::function<void()>& action) {
        const std::int64_t before = pasteboard_->changeCount();
        action();
        return pasteboard_->changeCount() - before;
    }

    std::unique_ptr<SystemPasteboard> pasteboard_ = openBackEnd();
};

TEST_F(BackEndChangeCount, EveryForeignChangeCountsOnce) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "text"}}});
    EXPECT_EQ(changesBy([] {}), 0);
    EXPECT_EQ(changesBy([&] { owner->copyAgain(); }), 1);
    EXPECT_EQ(changesBy([&] { pasteboard_->string(); }), 0);
    EXPECT_EQ(changesBy([&] { owner->clear(); }), 1);
    EXPECT_EQ(changesBy([&] { owner->copyAgain(); }), 1);
    const std::int64_t before = pasteboard_->changeCount();
    owner->process().kill();
    EXPECT_TRUE(waitForChange(*pasteboard_, before));
    EXPECT_EQ(pasteboard_->changeCount(), before + 1) << "its end empties the clipboard";
}

TEST_F(BackEndChangeCount, OwnChangesCountOnceAndAtOnce) {
    EXPECT_EQ(changesBy([&] { EXPECT_TRUE(pasteboard_->setString("a")); }), 1);
    EXPECT_EQ(changesBy([&] { EXPECT_TRUE(pasteboard_->setString("a")); }), 1) << "the same text again";
    EXPECT_EQ(changesBy([&] {
                  pasteboard_->clearContents();
                  EXPECT_TRUE(pasteboard_->setString("b"));
              }),
              1);
    EXPECT_EQ(changesBy([&] { pasteboard_->clearContents(); }), 1);
    EXPECT_EQ(changesBy([&] { pasteboard_->processEvents(); }), 0);
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_THAT(pasteboard_->itemCount(), Optional(0U));
}

TEST_F(BackEndChangeCount, ClearingAloneTakesEffectFromTheEventLoop) {
    ASSERT_TRUE(pasteboard_->setString("ours"));
    const auto watcher = openBackEnd();
    pasteboard_->clearContents();
    EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return watcher->itemCount() == 0U; }));
}

TEST_F(BackEndChangeCount, NoneOfManyCopiesIsMissed) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "text"}}});
    int missedCount = 0;
    for (int i = 0; i < 2000; ++i) {
        if (changesBy([&] { owner->copyAgain(); }) != 1) ++missedCount;
    }
    EXPECT_EQ(missedCount, 0);
}

TEST_F(BackEndChangeCount, NoneOfManyCopiesInARowIsMissed) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "text"}}});
    EXPECT_EQ(
        changesBy([&] {
            // Meanwhile the program handles events: no compositor keeps them forever.
            auto copying = std::async(std::launch::async, [&] { owner->copyManyTimes(); });
            EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return copying.wait_for(0s) == std::future_status::ready; }));
        }),
        ForeignProgram::kManyTimes);
}

TEST_F(BackEndChangeCount, CopyBetweenALookAndTheWriteIsKept) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "theirs"}}});
    for (const bool isOursBefore : {false, true}) {
        if (isOursBefore) {
            EXPECT_TRUE(pasteboard_->setString("ours"));
        }
        const std::int64_t count = pasteboard_->changeCount();
        letServerTimePass();
        owner->copyAgain();
        EXPECT_FALSE(pasteboard_->replaceIfUnchanged(count, "too late"));
        EXPECT_EQ(pasteboard_->string(), "theirs");
        EXPECT_EQ(outputOf(kPastingProgram, *pasteboard_), "theirs");
    }
}

TEST_F(BackEndChangeCount, WriteThatNamesNoCountReplacesWhateverIsThere) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "theirs"}}});
    pasteboard_->changeCount();
    letServerTimePass();
    owner->copyAgain();
    pasteboard_->clearContents();
    EXPECT_TRUE(pasteboard_->setString("ours"));
    EXPECT_EQ(outputOf(kPastingProgram, *pasteboard_), "ours");
}

TEST_F(BackEndChangeCount, ReplacingIsOneChange) {
    const auto owner = copyElsewhere({.content = {{"text/html", kHTML}, {"UTF8_STRING", "theirs"}}});
    const std::int64_t count = pasteboard_->changeCount();
    EXPECT_TRUE(pasteboard_->replaceIfUnchanged(count, "ours"));
    EXPECT_EQ(pasteboard_->changeCount(), count + 1);
    EXPECT_EQ(pasteboard_->string(), "ours");
    EXPECT_EQ(outputOf(kPastingProgram, *pasteboard_), "ours");
    EXPECT_EQ(pasteElsewhere("text/html", *pasteboard_), std::nullopt);
}

TEST_F(BackEndChangeCount, OurOwnWriteSinceALookIsKept) {
    const std::int64_t count = pasteboard_->changeCount();
    EXPECT_TRUE(pasteboard_->setString("ours"));
    EXPECT_FALSE(pasteboard_->replaceIfUnchanged(count, "too late"));
    EXPECT_EQ(outputOf(kPastingProgram, *pasteboard_), "ours");
}

TEST_F(BackEndChangeCount, WriteTakesThePlaceOfAPendingClearing) {
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "theirs"}}});
    const std::int64_t count = pasteboard_->changeCount();
    pasteboard_->clearContents();
    EXPECT_TRUE(pasteboard_->replaceIfUnchanged(count, "ours"));
    EXPECT_EQ(pasteboard_->changeCount(), count + 1);
    letServerTimePass();
    owner->copyAgain();
    pasteboard_->clearContents();
    EXPECT_FALSE(pasteboard_->replaceIfUnchanged(count + 1, "too late"));
    EXPECT_EQ(pasteboard_->string(), "theirs") << "as if it had come after the clearing";
}

TEST_F(BackEndChangeCount, EndOfTheOwnerBetweenALookAndTheWriteLosesNothing) {
    auto owner = copyElsewhere({.content = {{"UTF8_STRING", "theirs"}}});
    const std::int64_t count = pasteboard_->changeCount();
    owner.reset();
    EXPECT_TRUE(pasteboard_->replaceIfUnchanged(count, "ours"));
    EXPECT_EQ(outputOf(kPastingProgram, *pasteboard_), "ours");
}

TEST_F(BackEndChangeCount, CopyOverOurTextIsReadAndOursIsNoLonger) {
    ASSERT_TRUE(pasteboard_->setString("ours"));
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "theirs"}}});
    EXPECT_EQ(pasteboard_->string(), "theirs");
    ASSERT_TRUE(pasteboard_->setString("ours again"));
    EXPECT_EQ(pasteboard_->string(), "ours again");
    EXPECT_EQ(outputOf(kPastingProgram, *pasteboard_), "ours again");
}

}  // namespace
}  // namespace ravlin::tests
