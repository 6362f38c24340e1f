#include "Engine/PasteboardService.h"
#include "tests/support/FakePasteboard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using tests::FakePasteboard;
using Type = Pasteboard::Type;

PasteOutcome run(TextTransform transform) {
    return PasteboardService::transformClipboard(transform);
}

TEST(TransformClipboard, WritesTheResultAsOnePlainTextItem) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("hello");
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 5, .outputCount = 5}));
    EXPECT_THAT(pasteboard.representations(), ElementsAre(std::pair(Type::string, std::string("HELLO"))));
}

TEST(TransformClipboard, CountsBeforeReadingAndOnceMoreRightBeforeWriting) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("a");
    run(TextTransform::upperCase);
    EXPECT_THAT(pasteboard.calls(), ElementsAre("changeCount", "string", "changeCount", "replaceIfUnchanged(A)"));
}

TEST(TransformClipboard, PlainTextWinsOverRichTextAndHTML) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::string, "plain"}, {Type::rtf, "{\\rtf1 rich}"}, {Type::html, "<b>html</b>"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 5, .outputCount = 5}));
    EXPECT_THAT(pasteboard.representations(), ElementsAre(std::pair(Type::string, std::string("PLAIN"))));
}

TEST(TransformClipboard, ClipboardWithoutAnythingIsEmpty) {
    FakePasteboard pasteboard;
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardEmpty{}));
    EXPECT_THAT(pasteboard.calls(), ElementsAre("changeCount", "string", "data(rtf)", "data(html)", "itemCount"));
}

TEST(TransformClipboard, ClipboardThatCannotTellItsItemsIsEmpty) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({});
    pasteboard.hideItemCount();
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardEmpty{}));
}

TEST(TransformClipboard, ClipboardWithOnlyAnImageHasNoText) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(NoText{}));
    EXPECT_THAT(pasteboard.calls(), ElementsAre("changeCount", "string", "data(rtf)", "data(html)", "itemCount"));
}

TEST(TransformClipboard, EmptyPlainTextIsAnEmptyClipboardWhateverElseThereIs) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::string, ""}, {Type::html, "<b>html</b>"}});
    EXPECT_EQ(run(TextTransform::base64Encode), PasteOutcome(ClipboardEmpty{}));
    EXPECT_THAT(pasteboard.calls(), ElementsAre("changeCount", "string"));
}

TEST(TransformClipboard, TextOfSpacesAndLineBreaksOnlyIsText) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere(" \n");
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 2, .outputCount = 2}));
}

TEST(TransformClipboard, UnchangedResultIsWrittenAllTheSame) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::string, "PLAIN"}, {Type::html, "<b>PLAIN</b>"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 5, .outputCount = 5}));
    EXPECT_THAT(pasteboard.representations(), ElementsAre(std::pair(Type::string, std::string("PLAIN"))));
}

TEST(TransformClipboard, TextOfWhichNothingIsLeftMakesTheClipboardEmpty) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere(" \n\t");
    EXPECT_EQ(run(TextTransform::removeAllSpaces), PasteOutcome(Success{.inputCount = 3, .outputCount = 0}));
    EXPECT_THAT(pasteboard.representations(), ElementsAre(std::pair(Type::string, std::string())));
    EXPECT_EQ(run(TextTransform::removeAllSpaces), PasteOutcome(ClipboardEmpty{}));
}

TEST(TransformClipboard, CountsUserPerceivedCharacters) {
    const struct {
        const char* text;
        std::int64_t count;
    } vectors[] = {
        {"a\r\nb", 3},
        {"\r\r\n", 2},
        {"\n\r", 2},
        {"e\u0301", 1},
        {"\U0001F1EA\U0001F1FA", 1},
        {"\u0915\u094D\u0937", 1},
    };
    for (const auto& vector : vectors) {
        FakePasteboard pasteboard;
        pasteboard.copyTextElsewhere(vector.text);
        EXPECT_EQ(run(TextTransform::tabsToSpaces), PasteOutcome(Success{vector.count, vector.count})) << vector.text;
    }
}

TEST(TransformClipboard, CountsInputAndOutputSeparately) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("a\tb");
    EXPECT_EQ(run(TextTransform::tabsToSpaces), PasteOutcome(Success{.inputCount = 3, .outputCount = 6}));
}

TEST(TransformClipboard, RunsOnItsOwnResultTheNextTime) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("hi");
    run(TextTransform::base64Encode);
    EXPECT_EQ(run(TextTransform::base64Encode), PasteOutcome(Success{.inputCount = 4, .outputCount = 8}));
    EXPECT_EQ(pasteboard.string(), "YUdrPQ==");
}

TEST(TransformClipboard, RefusedWriteIsNotTheServicesBusiness) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("a");
    pasteboard.refuseWrites();
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 1, .outputCount = 1}));
}

TEST(TransformClipboard, ChangeBetweenReadAndWriteIsLeftAlone) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("mine");
    pasteboard.before("changeCount", 2, [&] { pasteboard.copyTextElsewhere("theirs"); });
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardChanged{}));
    EXPECT_EQ(pasteboard.string(), "theirs");
}

TEST(TransformClipboard, ChangeBetweenCountAndReadIsLeftAlone) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("mine");
    pasteboard.before("string", 1, [&] { pasteboard.copyTextElsewhere("theirs"); });
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardChanged{}));
    EXPECT_EQ(pasteboard.string(), "theirs");
}

TEST(TransformClipboard, CopyBetweenTheSecondCountAndTheWriteIsKeptAsIfItHadComeAfterwards) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("mine");
    pasteboard.before("replaceIfUnchanged", 1, [&] { pasteboard.copyTextElsewhere("theirs"); });
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 4, .outputCount = 4}));
    EXPECT_EQ(pasteboard.string(), "theirs");
}

TEST(TransformClipboard, SameTextCopiedAgainCountsAsAChange) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("mine");
    pasteboard.before("changeCount", 2, [&] { pasteboard.copyTextElsewhere("mine"); });
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardChanged{}));
    EXPECT_EQ(pasteboard.string(), "mine");
}

TEST(TransformClipboard, ChangeBeforeTheFirstCountIsTheTextThatIsTransformed) {
    FakePasteboard pasteboard;
    pasteboard.copyTextElsewhere("older");
    pasteboard.before("changeCount", 1, [&] { pasteboard.copyTextElsewhere("newer"); });
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 5, .outputCount = 5}));
    EXPECT_EQ(pasteboard.string(), "NEWER");
}

TEST(SetText, ReplacesEveryRepresentation) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::string, "old"}, {Type::rtf, "{\\rtf1 old}"}});
    PasteboardService::setText("new");
    EXPECT_THAT(pasteboard.calls(), ElementsAre("clearContents", "setString(new)"));
    EXPECT_THAT(pasteboard.representations(), ElementsAre(std::pair(Type::string, std::string("new"))));
}

TEST(PlainText, IsTheStringAsItIsEvenWhenEmpty) {
    FakePasteboard pasteboard;
    EXPECT_EQ(PasteboardService::plainText(), std::nullopt);
    pasteboard.copyTextElsewhere("");
    EXPECT_EQ(PasteboardService::plainText(), "");
    pasteboard.copyTextElsewhere(" a\r\n");
    EXPECT_EQ(PasteboardService::plainText(), " a\r\n");
}

TEST(PlainText, IsTheTextOfHTMLWhereThereIsNoString) {
    const struct {
        const char* html;
        std::optional<std::string> text;
    } vectors[] = {
        {"<p>a</p><p>b &lt; c</p>", "a\nb < c"},
        {"a\u00E9", "a\u00E9"},
        {"", ""},
        {"<p> </p>", ""},
        // One byte order mark is dropped, and is no reason to keep white space.
        {"\uFEFF <b>a</b>", "a"},
        {"\uFEFF\uFEFFa", "\uFEFFa"},
        {"a\uFEFF", "a\uFEFF"},
        // Anything but UTF-8 is not text.
        {"a\xE9", std::nullopt},
        {"\xC0\xAF", std::nullopt},
        {"\xED\xA0\x80", std::nullopt},
        {"\xFF\xFE<\0", std::nullopt},
        {"\uFEFFa\xC3", std::nullopt},
    };
    for (const auto& vector : vectors) {
        FakePasteboard pasteboard;
        pasteboard.copyElsewhere({{Type::html, vector.html}});
        EXPECT_EQ(PasteboardService::plainText(), vector.text) << vector.html;
    }
}

TEST(PlainText, KeepsNULsThatAnHTMLRepresentationEndsWith) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::html, std::string("<b>a</b>\0", 9)}});
    EXPECT_EQ(PasteboardService::plainText(), std::string("a\0", 2));
}

TEST(PlainText, IsTheTextOfRichTextWhereThereIsNoString) {
    const struct {
        const char* rtf;
        std::optional<std::string> text;
    } vectors[] = {
        {"{\\rtf1 rich}", "rich"},
        {"{\\rtf1\\ansi caf\\'e9 {\\b noir}\\par}", "caf\u00E9 noir\n"},
        {"{\\rtf1 cut off", "cut off"},
        {"{\\rtf1}", ""},
        // Anything but rich text is not text.
        {"", std::nullopt},
        {"rich", std::nullopt},
        {"{\\rtfd rich}", std::nullopt},
    };
    for (const auto& vector : vectors) {
        FakePasteboard pasteboard;
        pasteboard.copyElsewhere({{Type::rtf, vector.rtf}});
        EXPECT_EQ(PasteboardService::plainText(), vector.text) << vector.rtf;
    }
}

TEST(PlainText, ReadsNoHTMLWhereThereIsRichText) {
    for (const char* const rtf : {"{\\rtf1 rich}", "{\\rtf1}"}) {
        FakePasteboard pasteboard;
        pasteboard.copyElsewhere({{Type::rtf, rtf}, {Type::html, "<b>html</b>"}});
        PasteboardService::plainText();
        EXPECT_THAT(pasteboard.calls(), ElementsAre("string", "data(rtf)")) << rtf;
    }
}

TEST(PlainText, ReadsNoRichTextWhereThereIsAString) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::string, ""}, {Type::rtf, "{\\rtf1 rich}"}, {Type::html, "<b>html</b>"}});
    EXPECT_EQ(PasteboardService::plainText(), "");
    EXPECT_THAT(pasteboard.calls(), ElementsAre("string"));
}

TEST(PlainText, IsTheTextOfHTMLWhereTheRichTextIsNone) {
    for (const char* const rtf : {"", "broken", "{\\rtfd x}", "<p>{\\rtf1 x}</p>"}) {
        FakePasteboard pasteboard;
        pasteboard.copyElsewhere({{Type::rtf, rtf}, {Type::html, "<b>html</b>"}});
        EXPECT_EQ(PasteboardService::plainText(), "html") << rtf;
        EXPECT_THAT(pasteboard.calls(), ElementsAre("string", "data(rtf)", "data(html)")) << rtf;
    }
}

TEST(TransformClipboard, FlattensRichTextOnTheWayIn) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::rtf, "{\\rtf1 h{\\b\\'e9}}"}, {Type::html, "<p>html</p>"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 2, .outputCount = 2}));
    EXPECT_THAT(pasteboard.representations(), ElementsAre(std::pair(Type::string, std::string("H\u00C9"))));
}

TEST(TransformClipboard, RichTextWithoutTextIsAnEmptyClipboardWhateverElseThereIs) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::rtf, "{\\rtf1{\\fonttbl{\\f0 A;}}\\pard}"}, {Type::html, "<b>html</b>"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardEmpty{}));
    EXPECT_EQ(pasteboard.representations().size(), 2U);
}

TEST(TransformClipboard, RichTextThatIsNoneHasNoTextAndStays) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::rtf, "{\\rt"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(NoText{}));
    EXPECT_EQ(pasteboard.representations().count(Type::rtf), 1U);
}

TEST(TransformClipboard, FlattensHTMLOnTheWayIn) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::html, "<p>h\u00E9</p>"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(Success{.inputCount = 2, .outputCount = 2}));
    EXPECT_THAT(pasteboard.representations(), ElementsAre(std::pair(Type::string, std::string("H\u00C9"))));
}

TEST(TransformClipboard, HTMLWithoutTextIsAnEmptyClipboard) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::html, "<p></p>"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardEmpty{}));
    EXPECT_EQ(pasteboard.representations().count(Type::html), 1U);
}

TEST(TransformClipboard, HTMLThatIsNotUTF8HasNoTextAndStays) {
    FakePasteboard pasteboard;
    pasteboard.copyElsewhere({{Type::html, "<b>\xE9</b>"}});
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(NoText{}));
    EXPECT_EQ(pasteboard.representations().count(Type::html), 1U);
}

TEST(GeneralPasteboard, IsAlwaysThereAndEmptyWhereNoneIsInstalled) {
    EXPECT_EQ(run(TextTransform::upperCase), PasteOutcome(ClipboardEmpty{}));
    EXPECT_FALSE(Pasteboard::general().setString("x"));
    EXPECT_FALSE(Pasteboard::general().replaceIfUnchanged(Pasteboard::general().changeCount(), "x"));
    PasteboardService::setText("x");
    EXPECT_EQ(PasteboardService::plainText(), std::nullopt);
}

TEST(PasteOutcome, IsTheSameWhereKindAndBothCountsAre) {
    EXPECT_EQ(PasteOutcome(Success{1, 2}), PasteOutcome(Success{1, 2}));
    EXPECT_NE(PasteOutcome(Success{1, 2}), PasteOutcome(Success{1, 3}));
    EXPECT_NE(PasteOutcome(Success{1, 2}), PasteOutcome(Success{3, 2}));
    EXPECT_NE(PasteOutcome(Success{0, 0}), PasteOutcome(ClipboardEmpty{}));
}

}  // namespace
}  // namespace ravlin
