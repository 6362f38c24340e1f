// What X11Pasteboard reads from other programs.

#include "tests/platform/X11Clients.h"

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;
using testing::Optional;
using Type = Pasteboard::Type;

const std::vector<std::string> kXsel = {"xsel", "--clipboard", "--input", "--nodetach"};

// ---- Content -------------------------------------------------------------------------------------------------------

class X11ReadingOfSize : public testing::TestWithParam<std::size_t> {};

TEST_P(X11ReadingOfSize, IsExactFromXsel) {
    if (GetParam() == 0) return;  // xsel copies no empty text
    const auto pasteboard = openPasteboard();
    const std::string text = textOfSize(GetParam());
    const CopyingProgram owner(*pasteboard, kXsel, text);
    EXPECT_TRUE(pasteboard->string() == text);
}

class X11ReadingInIncrements : public testing::TestWithParam<std::size_t> {};

TEST_P(X11ReadingInIncrements, IsExact) {
    const auto pasteboard = openPasteboard();
    const std::string text = textOfSize(GetParam());
    const ForeignOwner owner({.content = {{"UTF8_STRING", text}}, .incrementSize = 65536});
    EXPECT_TRUE(pasteboard->string() == text);
}

INSTANTIATE_TEST_SUITE_P(X11Reading, X11ReadingOfSize,
                         testing::Values(0, 1, 65535, 65536, 65537, 262143, 262144, 262145, 1000000, 52428800));
INSTANTIATE_TEST_SUITE_P(X11Reading, X11ReadingInIncrements,
                         testing::Values(0, 1, 65535, 65536, 65537, 131072, 1000000, 10485760));

struct PlainCase {
    const char* name;
    OwnerPlan plan;
    std::optional<std::string> expected;
};
std::ostream& operator<<(std::ostream& stream, const PlainCase& each) {
    return stream << each.name;
}

const PlainCase kPlainCases[] = {
    {"UTF8StringIsPreferred",
     {.content = {{"STRING", "caf?"}, {"UTF8_STRING", "caf\u00e9"}, {"TEXT", "t", "STRING"}}},
     "caf\u00e9"},
    {"TextPlainWithCharsetOnly", {.content = {{"text/plain;charset=utf-8", "\u20ac"}}}, "\u20ac"},
    {"TextPlainOnlyIsUTF8", {.content = {{"text/plain", "\u20ac"}}}, "\u20ac"},
    {"TextPlainTypedAsStringIsLatin1", {.content = {{"text/plain", "caf\xE9", "STRING"}}}, "caf\u00e9"},
    {"StringOnlyIsLatin1", {.content = {{"STRING", "caf\xE9 \xA3"}}}, "caf\u00e9 \u00a3"},
    {"TextTypedAsUTF8", {.content = {{"TEXT", "\u20ac", "UTF8_STRING"}}}, "\u20ac"},
    {"TextTypedAsString", {.content = {{"TEXT", "\xE9", "STRING"}}}, "\u00e9"},
    {"TextOfUnknownTypeIsAbsent", {.content = {{"TEXT", "x", "COMPOUND_TEXT"}}}, std::nullopt},
    {"TextInUnitsOf16BitsIsAbsent", {.content = {{"UTF8_STRING", "abcd", "", 16}}}, std::nullopt},
    {"TextInUnitsOf32BitsIsAbsentAndTheNextIsTaken",
     {.content = {{"UTF8_STRING", "abcd", "", 32}, {"STRING", "text"}}},
     "text"},
    {"OwnerWithAnEmptyListHasNothing", {.content = {{"UTF8_STRING", "x"}}, .listsNothing = true}, std::nullopt},
    {"TrailingNULIsDropped", {.content = {{"UTF8_STRING", "a\0"s}}}, "a"},
    {"OneTrailingNULIsDroppedOnly", {.content = {{"UTF8_STRING", "a\0b\0\0"s}}}, "a\0b\0"s},
    {"EmptyIsPresent", {.content = {{"UTF8_STRING", ""}}}, ""},
    {"InvalidUTF8IsAbsent", {.content = {{"UTF8_STRING", "ab\xFF\xFE"}}}, std::nullopt},
    {"InvalidUTF8IsNotReadAsLatin1Either",
     {.content = {{"UTF8_STRING", "ab\xFF"}, {"STRING", "ab\xFF"}}},
     std::nullopt},
    {"OwnerThatListsNoTargetsIsAskedDirectly", {.content = {{"UTF8_STRING", "old"}}, .listsTargets = false}, "old"},
    {"OwnerThatListsNoTargetsAndHasStringOnly", {.content = {{"STRING", "\xFC"}}, .listsTargets = false}, "\u00fc"},
    {"ImageOnlyIsAbsent", {.content = {{"image/png", "\x89PNG"}}}, std::nullopt}};

class X11ReadingPlainText : public testing::TestWithParam<PlainCase> {};

TEST_P(X11ReadingPlainText, IsAsTabled) {
    const auto pasteboard = openPasteboard();
    const ForeignOwner owner(GetParam().plan);
    EXPECT_EQ(pasteboard->string(), GetParam().expected);
    EXPECT_EQ(pasteboard->data(Type::string), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(X11Reading, X11ReadingPlainText, testing::ValuesIn(kPlainCases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(X11Reading, RTFAloneComesAsBytes) {
    const auto pasteboard = openPasteboard();
    std::vector<std::string> command = kCopyingProgram;
    command.insert(command.end(), {"-target", "text/rtf"});
    const CopyingProgram owner(*pasteboard, command, R"({\rtf1 caf\'e9})");
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_THAT(pasteboard->data(Type::rtf), Optional(R"({\rtf1 caf\'e9})"s));
    EXPECT_EQ(pasteboard->data(Type::html), std::nullopt);
}

TEST(X11Reading, HTMLAloneComesAsBytes) {
    const auto pasteboard = openPasteboard();
    std::vector<std::string> command = kCopyingProgram;
    command.insert(command.end(), {"-target", "text/html"});
    const CopyingProgram owner(*pasteboard, command, "<b>caf\u00e9</b>");
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_EQ(pasteboard->data(Type::rtf), std::nullopt);
    EXPECT_THAT(pasteboard->data(Type::html), Optional("<b>caf\u00e9</b>"s));
}

TEST(X11Reading, RichTextThatDoesNotComeInBytesIsAbsent) {
    const auto pasteboard = openPasteboard();
    for (const int format : {16, 32}) {
        const ForeignOwner owner({.content = {{"text/rtf", R"({\rtf1 notbytes})", "", format},
                                              {"application/rtf", R"({\rtf1 bytes})"},
                                              {"text/html", "<p>notbytes", "", format}}});
        EXPECT_EQ(pasteboard->data(Type::rtf), R"({\rtf1 bytes})") << "under its other name";
        EXPECT_EQ(pasteboard->data(Type::html), std::nullopt);
    }
}

TEST(X11Reading, EveryRepresentationOfOneOwnerCanBeReadInAnyOrder) {
    const auto pasteboard = openPasteboard();
    const ForeignOwner owner(
        {.content = {{"UTF8_STRING", "plain"}, {"text/rtf", R"({\rtf1 r})"}, {"text/html", "<i>h"}}});
    EXPECT_THAT(pasteboard->data(Type::html), Optional("<i>h"s));
    EXPECT_THAT(pasteboard->string(), Optional("plain"s));
    EXPECT_THAT(pasteboard->data(Type::rtf), Optional(R"({\rtf1 r})"s));
}

TEST(X11Reading, TheNextOwnerIsAskedAnew) {
    const auto pasteboard = openPasteboard();
    const ForeignOwner first("first");
    EXPECT_EQ(pasteboard->string(), "first");
    const ForeignOwner second({.content = {{"text/html", "<p>"}}});
    EXPECT_EQ(pasteboard->data(Type::html), "<p>");
    EXPECT_EQ(pasteboard->string(), std::nullopt);
}

// ---- Owners in trouble ---------------------------------------------------------------------------------------------

constexpr ReadLimits kImpatient = {.idle = 200ms, .total = 1500ms, .byteSize = 100000};

TEST(X11ReadingFromTrouble, HungOwnerIsReadAgainOnceItAnswers) {
    const auto pasteboard = openPasteboard(kImpatient);
    const std::string text = textOfSize(50000);
    ForeignOwner owner({.content = {{"UTF8_STRING", text}}, .incrementSize = 20000});
    for (int i = 0; i < 3; ++i) {
        owner.process().stop();
        EXPECT_EQ(pasteboard->string(), std::nullopt);
        owner.process().resume();
        EXPECT_TRUE(pasteboard->string() == text) << "its late answers must not be mistaken for new ones";
    }
}

TEST(X11ReadingFromTrouble, OwnerThatWasGivenUpComesToItsEndOnceItGoesOn) {
    const auto pasteboard = openPasteboard(kImpatient);
    ForeignOwner owner(
        {.content = {{"UTF8_STRING", textOfSize(50000)}}, .incrementSize = 20000, .stopsAfterIncrements = 1});
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    ASSERT_TRUE(owner.process().waitForStop());
    owner.process().resume();
    EXPECT_TRUE(serveUntil(*pasteboard, [&] { return owner.hasEndedTransfer(); }));
}

/// Whether the pasteboard eventually leaves nothing on its window; it owns the clipboard afterwards.
bool leavesNothingBehind(X11Pasteboard& pasteboard) {
    pasteboard.setString("");
    X11Client client;
    return serveUntil(pasteboard, [&] {
        std::vector<std::string> names = client.propertiesOf(client.owner());
        std::erase(names, "RAVLIN_CLOCK");  // may be there, to ask for the time
        return names.empty();
    });
}

TEST(X11ReadingFromTrouble, NothingStaysInTheServerOfAnAnswerThatCameTooLateOrIsTooLarge) {
    const auto pasteboard = openPasteboard(kImpatient);
    ForeignOwner late({.content = {{"UTF8_STRING", "late"}}});
    late.process().stop();
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    late.process().resume();
    late.copyAgain();  // it does so after it has answered
    EXPECT_TRUE(leavesNothingBehind(*pasteboard));

    const ForeignOwner large({.content = {{"UTF8_STRING", textOfSize(kImpatient.byteSize + 10)}}});
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_TRUE(leavesNothingBehind(*pasteboard));
}

TEST(X11ReadingFromTrouble, OwnerThatDiesBetweenIncrementsIsNoticedAtOnce) {
    const auto pasteboard = openPasteboard();
    const ForeignOwner owner(
        {.content = {{"UTF8_STRING", textOfSize(90000)}}, .incrementSize = 10000, .diesAfterIncrements = 5});
    const auto time = durationOf([&] { EXPECT_EQ(pasteboard->string(), std::nullopt); });
    EXPECT_LT(time, 1s);
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
}

TEST(X11ReadingFromTrouble, OwnerKilledBeforeTheReadingLeavesAnEmptyClipboard) {
    const auto pasteboard = openPasteboard();
    ForeignOwner owner("text");
    const std::int64_t count = pasteboard->changeCount();
    owner.process().kill();
    waitForChange(*pasteboard, count);
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    EXPECT_THAT(pasteboard->itemCount(), Optional(0U));
}

TEST(X11ReadingFromTrouble, OwnerThatOnlyListsItsTargetsCostsTheIdleLimitOnceForTheWholeReading) {
    const auto pasteboard = openPasteboard({.idle = 500ms});
    const ForeignOwner owner(
        {.content = {{"UTF8_STRING", "x"}, {"text/rtf", "x"}, {"text/html", "x"}}, .answers = false});
    const auto time = durationOf([&] {
        EXPECT_EQ(pasteboard->string(), std::nullopt);
        EXPECT_EQ(pasteboard->data(Type::rtf), std::nullopt);
        EXPECT_EQ(pasteboard->data(Type::html), std::nullopt);
    });
    EXPECT_GE(time, 500ms);
    EXPECT_LT(time, 1s);
}

TEST(X11ReadingFromTrouble, OwnerThatListsAMillionTargetsCostsLittle) {
    const auto pasteboard = openPasteboard();
    const ForeignOwner owner({.content = {{"text/plain;charset=UTF-8", "u"}, {"text/plain", "p"}, {"text/html", "h"}},
                              .unknownTargetCount = 1'000'000});
    const auto time = durationOf([&] {
        EXPECT_EQ(pasteboard->string(), "p")
            << "what is looked at by its name is bounded, usual names are always found";
        EXPECT_EQ(pasteboard->data(Type::rtf), std::nullopt);
        EXPECT_EQ(pasteboard->data(Type::html), "h");
    });
    EXPECT_LT(time, 1s);
}

TEST(X11ReadingFromTrouble, SoManyTargetsAreLookedAtByTheirNamesAndNotOneMore) {
    const auto pasteboard = openPasteboard();
    OwnerPlan plan = {.content = {{"text/plain;charset=UTF-8", "u"}, {"text/plain", "p"}},
                      .unknownTargetCount = X11SelectionReader::kMaximumNames - 3};  // and TARGETS, TIMESTAMP, the text
    {
        const ForeignOwner owner(plan);
        EXPECT_EQ(pasteboard->string(), "u") << "though none of those before is an atom";
    }
    ++plan.unknownTargetCount;
    const ForeignOwner owner(plan);
    EXPECT_EQ(pasteboard->string(), "p");
}

TEST(X11ReadingFromTrouble, LateAnswerIsNotMistakenForTheNextOwners) {
    const auto pasteboard = openPasteboard({.idle = 500ms});
    ForeignOwner late({.content = {{"image/png", "picture"}}});
    late.process().stop();
    EXPECT_EQ(pasteboard->string(), std::nullopt);
    const ForeignOwner next({.content = {{"UTF8_STRING", "text"}}, .pauseBeforeAnswer = 100ms});
    late.process().resume();
    EXPECT_EQ(pasteboard->string(), "text");
}

TEST(X11ReadingFromTrouble, TextOfTheLargestSizeIsReadAndOneByteMoreIsNot) {
    for (const std::size_t incrementSize : {std::size_t{0}, std::size_t{30000}}) {
        const auto pasteboard = openPasteboard({.byteSize = 100000});
        const std::string text = textOfSize(100000);
        {
            const ForeignOwner owner({.content = {{"UTF8_STRING", text}}, .incrementSize = incrementSize});
            EXPECT_TRUE(pasteboard->string() == text);
        }
        const ForeignOwner owner({.content = {{"UTF8_STRING", text + "x"}}, .incrementSize = incrementSize});
        EXPECT_EQ(pasteboard->string(), std::nullopt);
        const ForeignOwner next("next");
        EXPECT_EQ(pasteboard->string(), "next");
    }
}

}  // namespace
}  // namespace ravlin::tests
