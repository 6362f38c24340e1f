#include "Views/Feedback.h"

#include <gtest/gtest.h>

namespace ravlin {

// What failing tests print.
static std::ostream& operator<<(std::ostream& out, const Feedback& feedback) {
    return out << (feedback.ok ? "ok: " : "not ok: ") << feedback.text;
}

namespace {

TEST(FeedbackFor, SuccessNamesTheTransformAndBothCounts) {
    EXPECT_EQ(feedbackFor(TextTransform::upperCase, Success{5, 5}),
              (Feedback{"UPPERCASE — ready, paste with ⌘V  (5→5 chars)", true}));
    EXPECT_EQ(feedbackFor(TextTransform::sha256, Success{1, 64}),
              (Feedback{"SHA-256 — ready, paste with ⌘V  (1→64 chars)", true}));
    EXPECT_EQ(feedbackFor(TextTransform::htmlToMarkdown, Success{10'000'000'000, 0}),
              (Feedback{"HTML → Markdown — ready, paste with ⌘V  (10000000000→0 chars)", true}));
}

TEST(FeedbackFor, CountsOfNoneAndOneReadLikeAllOthers) {
    EXPECT_EQ(feedbackFor(TextTransform::upperCase, Success{1, 1}).text,
              "UPPERCASE — ready, paste with ⌘V  (1→1 chars)");
    EXPECT_EQ(feedbackFor(TextTransform::upperCase, Success{0, 0}).text,
              "UPPERCASE — ready, paste with ⌘V  (0→0 chars)");
    EXPECT_EQ(feedbackFor(TextTransform::upperCase, Success{2, 1}).text,
              "UPPERCASE — ready, paste with ⌘V  (2→1 chars)");
}

TEST(FeedbackFor, EachFailureTellsWhatToDo) {
    EXPECT_EQ(feedbackFor(TextTransform::upperCase, ClipboardEmpty{}),
              (Feedback{"Clipboard is empty — copy some text first", false}));
    EXPECT_EQ(feedbackFor(TextTransform::upperCase, NoText{}),
              (Feedback{"No text in the clipboard — copy some text first", false}));
    EXPECT_EQ(feedbackFor(TextTransform::upperCase, ClipboardChanged{}),
              (Feedback{"Clipboard changed mid-transform — copy again and retry", false}));
}

TEST(FeedbackFor, EveryTransformIsNamedByItsTitle) {
    for (const TextTransform transform : TextTransform::allCases())
        EXPECT_TRUE(feedbackFor(transform, Success{1, 1}).text.starts_with(std::string(transform.title()) + " — "));
}

}  // namespace
}  // namespace ravlin
