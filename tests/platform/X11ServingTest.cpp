// What other programs get from X11Pasteboard.

#include "tests/platform/X11Clients.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using testing::ElementsAre;

class X11Serving : public testing::Test {
protected:
    xcb_window_t pasteboardWindow() { return observer_.owner(); }

    std::unique_ptr<X11Pasteboard> pasteboard_ = openPasteboard();
    Observer observer_;
};

// ---- Content -------------------------------------------------------------------------------------------------------

class X11ServingOfSize : public X11Serving, public testing::WithParamInterface<std::size_t> {};

TEST_P(X11ServingOfSize, IsExactToXsel) {
    const std::string text = textOfSize(GetParam());
    ASSERT_TRUE(pasteboard_->setString(text));
    EXPECT_TRUE(outputOf({"xsel", "--clipboard", "--output"}, *pasteboard_) == text);
}

class X11ServingToOurselves : public X11Serving, public testing::WithParamInterface<std::size_t> {};

TEST_P(X11ServingToOurselves, IsExactToAnotherPasteboard) {
    const std::string text = textOfSize(GetParam());
    ASSERT_TRUE(pasteboard_->setString(text));
    // One process cannot both wait as the reader and serve as the owner.
    Process reader([&] {
        std::string whyNot;
        const auto other = X11Pasteboard::open(nullptr, whyNot);
        _exit(other && other->string() == text ? 0 : 1);
    });
    bool isEnded = false;
    EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return isEnded = isEnded || reader.hasEnded(); }));
    EXPECT_EQ(reader.waitForEnd(), 0);
}

TEST_P(X11ServingToOurselves, IsReadBackWithoutTheServer) {
    const std::string text = textOfSize(GetParam());
    ASSERT_TRUE(pasteboard_->setString(text));
    EXPECT_TRUE(pasteboard_->string() == text);
    EXPECT_EQ(pasteboard_->itemCount(), 1U);
    EXPECT_EQ(pasteboard_->data(Pasteboard::Type::rtf), std::nullopt);
    EXPECT_EQ(pasteboard_->data(Pasteboard::Type::html), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(X11Serving, X11ServingOfSize,
                         testing::Values(0, 1, 65535, 65536, 65537, 262143, 262144, 262145, 524288, 1000000, 52428800));
INSTANTIATE_TEST_SUITE_P(X11Serving, X11ServingToOurselves,
                         testing::Values(0, 1, 65536, 262144, 262145, 524288, 10485760));

TEST_F(X11Serving, EveryTargetHasItsTypeAndEncoding) {
    struct Row {
        const char* target;
        const char* type;
        const char* bytes;
    };
    Requestor requestor(*pasteboard_);
    pasteboard_->setString("caf\u00e9");
    for (const Row& row : {Row{"UTF8_STRING", "UTF8_STRING", "caf\u00e9"},
                           Row{"text/plain;charset=utf-8", "text/plain;charset=utf-8", "caf\u00e9"},
                           Row{"text/plain", "text/plain", "caf\u00e9"}, Row{"STRING", "STRING", "caf\xE9"},
                           Row{"TEXT", "UTF8_STRING", "caf\u00e9"}}) {
        const auto answer = requestor.read(row.target);
        ASSERT_TRUE(answer) << row.target;
        EXPECT_EQ(answer->type, row.type);
        EXPECT_EQ(answer->bytes, row.bytes);
        EXPECT_EQ(answer->format, 8);
    }
    EXPECT_THAT(requestor.targets(), ElementsAre("MULTIPLE", "STRING", "TARGETS", "TEXT", "TIMESTAMP", "UTF8_STRING",
                                                 "text/plain", "text/plain;charset=utf-8"));
}

TEST_F(X11Serving, TextBeyondLatin1IsNotOfferedAsString) {
    Requestor requestor(*pasteboard_);
    pasteboard_->setString("5 \u20ac");
    EXPECT_THAT(requestor.targets(), ElementsAre("MULTIPLE", "TARGETS", "TEXT", "TIMESTAMP", "UTF8_STRING",
                                                 "text/plain", "text/plain;charset=utf-8"));
    EXPECT_EQ(requestor.read("STRING"), std::nullopt);
    const auto text = requestor.read("TEXT");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->type, "UTF8_STRING");
    EXPECT_EQ(text->bytes, "5 \u20ac");
}

TEST_F(X11Serving, UnknownTargetsAreRefused) {
    Requestor requestor(*pasteboard_);
    pasteboard_->setString("text");
    for (const char* target : {"image/png", "text/html", "COMPOUND_TEXT", "DELETE", "SAVE_TARGETS"}) {
        EXPECT_EQ(requestor.read(target), std::nullopt) << target;
    }
}

// ---- The rules of ICCCM --------------------------------------------------------------------------------------------

TEST_F(X11Serving, TimestampIsTheBeginningOfOurOwnership) {
    Requestor requestor(*pasteboard_);
    pasteboard_->setString("text");
    const auto timestamp = requestor.read("TIMESTAMP");
    ASSERT_TRUE(timestamp);
    EXPECT_EQ(timestamp->type, "INTEGER");
    EXPECT_EQ(timestamp->format, 32);
    ASSERT_EQ(timestamp->values().size(), 1U);
    EXPECT_EQ(timestamp->values().front(), observer_.ownedSince());
}

TEST_F(X11Serving, RequestsFromBeforeOurOwnershipAreRefused) {
    Requestor requestor(*pasteboard_);
    pasteboard_->setString("text");
    observer_.newOwners();
    const xcb_timestamp_t since = observer_.ownedSince();
    EXPECT_EQ(requestor.ask("UTF8_STRING", "ANSWER", since - 1)->property, XCB_ATOM_NONE);
    EXPECT_NE(requestor.ask("UTF8_STRING", "ANSWER", since)->property, XCB_ATOM_NONE);
    EXPECT_NE(requestor.ask("UTF8_STRING", "ANSWER", since + 1)->property, XCB_ATOM_NONE);
    const auto answer = requestor.ask("UTF8_STRING", "ANSWER", since + 2);
    EXPECT_EQ(answer->time, since + 2) << "the answer bears the time of the question";
}

TEST_F(X11Serving, ClientThatNamesNoPropertyGetsTheOneNamedLikeTheTarget) {
    Requestor requestor(*pasteboard_);
    pasteboard_->setString("text");
    const auto answer = requestor.ask("UTF8_STRING", /*property=*/"");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->property, requestor.atom("UTF8_STRING"));
    EXPECT_EQ(requestor.take("UTF8_STRING")->bytes, "text");
}

TEST_F(X11Serving, MultipleConvertsEachPairAndMarksFailures) {
    Requestor requestor(*pasteboard_);
    const std::string text = textOfSize(600000);
    pasteboard_->setString(text);
    const auto atom = [&](const char* name) { return requestor.atom(name); };
    const std::vector<xcb_atom_t> pairs = {atom("UTF8_STRING"), atom("A"), atom("image/png"), atom("B"),
                                           atom("TIMESTAMP"),   atom("C"), atom("STRING"),    XCB_ATOM_NONE};
    xcb_change_property(requestor.get(), XCB_PROP_MODE_REPLACE, requestor.window(), atom("PAIRS"), atom("ATOM_PAIR"),
                        32, static_cast<std::uint32_t>(pairs.size()), pairs.data());
    ASSERT_EQ(requestor.ask("MULTIPLE", "PAIRS")->property, atom("PAIRS"));
    const auto marked = requestor.take("PAIRS");
    EXPECT_EQ(marked->type, "ATOM_PAIR");
    EXPECT_THAT(marked->values(), ElementsAre(pairs[0], pairs[1], XCB_ATOM_NONE, XCB_ATOM_NONE, pairs[4], pairs[5],
                                              XCB_ATOM_NONE, XCB_ATOM_NONE));
    EXPECT_EQ(requestor.take("C")->type, "INTEGER");
    EXPECT_EQ(requestor.take("B"), std::nullopt);
    EXPECT_TRUE(requestor.takeAnnounced("A")->bytes == text) << "large content comes in increments here too";
}

TEST_F(X11Serving, MultipleWithoutItsPairsIsRefused) {
    Requestor requestor(*pasteboard_);
    pasteboard_->setString("text");
    EXPECT_EQ(requestor.ask("MULTIPLE", "PAIRS")->property, XCB_ATOM_NONE);
    EXPECT_EQ(requestor.ask("MULTIPLE", /*property=*/"")->property, XCB_ATOM_NONE);
}

// ---- Several readers, and readers in trouble -----------------------------------------------------------------------

TEST_F(X11Serving, ReadersTakeTurnsAtTheirOwnPace) {
    const std::string text = textOfSize(3000000);
    pasteboard_->setString(text);
    Requestor slow(*pasteboard_);
    Requestor alsoSlow(*pasteboard_);
    slow.begin("UTF8_STRING");
    alsoSlow.begin("UTF8_STRING");
    std::string first;
    std::string second;
    while (const auto increment = slow.takeIncrement()) {
        first += increment->bytes;
        if (const auto other = alsoSlow.takeIncrement()) second += other->bytes;
        if (increment->bytes.empty()) break;
        EXPECT_EQ(Requestor(*pasteboard_).read("TIMESTAMP")->format, 32) << "a third one is served in between";
    }
    EXPECT_TRUE(first == text);
    EXPECT_TRUE(second == text);
}

TEST_F(X11Serving, OneReaderMayReadTwiceAtOnce) {
    const std::string text = textOfSize(700000);
    pasteboard_->setString(text);
    Requestor requestor(*pasteboard_);
    requestor.begin("UTF8_STRING", "A");
    requestor.begin("text/plain", "B");
    EXPECT_TRUE(requestor.takeIncrements("A").bytes == text);
    EXPECT_TRUE(requestor.takeIncrements("B").bytes == text);
}

TEST_F(X11Serving, ReaderThatStopsHurtsNobody) {
    const std::string text = textOfSize(3000000);
    pasteboard_->setString(text);
    Requestor stopped(*pasteboard_);
    stopped.begin("UTF8_STRING");
    stopped.takeIncrement();
    EXPECT_TRUE(outputOf({"xclip", "-selection", "clipboard", "-out"}, *pasteboard_) == text);
    pasteboard_->setString("new");
    EXPECT_EQ(outputOf({"xclip", "-selection", "clipboard", "-out"}, *pasteboard_), "new");
}

TEST_F(X11Serving, ReaderThatDiesHurtsNobody) {
    const std::string text = textOfSize(3000000);
    pasteboard_->setString(text);
    for (int i = 0; i < 3; ++i) {
        Requestor dying(*pasteboard_);
        dying.begin("UTF8_STRING");
        if (i > 0) dying.takeIncrement();
    }
    for (int i = 0; i < 20; ++i) {
        X11Client gone;  // before the request reaches us
        xcb_convert_selection(gone.get(), gone.window(), gone.atom("CLIPBOARD"), gone.atom("UTF8_STRING"),
                              gone.atom("A"), XCB_CURRENT_TIME);
        gone.synchronise();
    }
    EXPECT_TRUE(outputOf({"xclip", "-selection", "clipboard", "-out"}, *pasteboard_) == text);
}

TEST_F(X11Serving, TransferGoesOnWithTheOldTextAfterTheNextCopy) {
    const std::string text = textOfSize(1500000);
    pasteboard_->setString(text);
    Requestor first(*pasteboard_);
    Requestor second(*pasteboard_);
    first.begin("UTF8_STRING");
    pasteboard_->setString("new");
    EXPECT_EQ(second.read("UTF8_STRING")->bytes, "new");
    const ForeignOwner other("foreign");
    EXPECT_TRUE(first.takeIncrements().bytes == text);
}

// ---- Taking the clipboard ------------------------------------------------------------------------------------------

TEST_F(X11Serving, ClearAndSetAreOneChangeToEverybody) {
    const ForeignOwner owner("foreign");
    observer_.newOwners();
    pasteboard_->clearContents();
    pasteboard_->setString("ours");
    pasteboard_->processEvents();
    EXPECT_THAT(observer_.newOwners(), ElementsAre(pasteboardWindow()));
    pasteboard_->clearContents();
    pasteboard_->setString("ours again");
    pasteboard_->processEvents();
    EXPECT_THAT(observer_.newOwners(), ElementsAre(pasteboardWindow()));
    EXPECT_NE(pasteboardWindow(), 0U);
}

TEST_F(X11Serving, ReplacingIsOneChangeToEverybody) {
    const ForeignOwner owner("foreign");
    observer_.newOwners();
    EXPECT_TRUE(pasteboard_->replaceIfUnchanged(pasteboard_->changeCount(), "ours"));
    pasteboard_->processEvents();
    EXPECT_THAT(observer_.newOwners(), ElementsAre(pasteboardWindow()));
    EXPECT_NE(pasteboardWindow(), 0U);
}

TEST_F(X11Serving, ClearAloneEmptiesTheClipboardAtTheNextEvent) {
    pasteboard_->setString("ours");
    observer_.newOwners();
    pasteboard_->clearContents();
    std::vector<xcb_window_t> owners;
    EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return owners = observer_.newOwners(), !owners.empty(); }));
    EXPECT_THAT(owners, ElementsAre(0U));
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_EQ(pasteboard_->itemCount(), 0U);
}

TEST_F(X11Serving, ClearIsSeenAtOnceByItsOwnProgram) {
    const ForeignOwner owner("foreign");
    pasteboard_->clearContents();
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_EQ(pasteboard_->itemCount(), 0U);
}

TEST_F(X11Serving, TakingWorksRightAfterAnybodysCopy) {
    ForeignOwner owner("foreign");
    for (int i = 0; i < 200; ++i) {
        owner.copyAgain();
        ASSERT_TRUE(pasteboard_->setString("ours"));
        ASSERT_EQ(pasteboardWindow(), observer_.newOwners().back());
    }
}

TEST_F(X11Serving, AnotherProgramTakesTheClipboardFromUs) {
    pasteboard_->setString("ours");
    const ForeignOwner owner("foreign");
    EXPECT_EQ(pasteboard_->string(), "foreign");
    EXPECT_EQ(outputOf({"xclip", "-selection", "clipboard", "-out"}, *pasteboard_), "foreign");
    pasteboard_->setString("ours again");
    EXPECT_EQ(pasteboard_->string(), "ours again");
    EXPECT_EQ(outputOf({"xclip", "-selection", "clipboard", "-out"}, *pasteboard_), "ours again");
}

TEST_F(X11Serving, RequestsThatComeDuringAnOperationAreServedByIt) {
    pasteboard_->setString("ours");
    Requestor requestor(*pasteboard_);
    xcb_convert_selection(requestor.get(), requestor.window(), requestor.atom("CLIPBOARD"),
                          requestor.atom("UTF8_STRING"), requestor.atom("ANSWER"), XCB_CURRENT_TIME);
    requestor.synchronise();
    pasteboard_->changeCount();
    // Nothing may be left in a queue that the descriptor does not announce.
    EXPECT_FALSE(isReadable(pasteboard_->fileDescriptor(), std::chrono::milliseconds(0)));
    requestor.synchronise();
    EXPECT_EQ(requestor.take()->bytes, "ours");
}

}  // namespace
}  // namespace ravlin::tests
