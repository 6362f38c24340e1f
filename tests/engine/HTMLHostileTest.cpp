// Texts that take careless implementations minutes: done in time, and correctly.

#include "Engine/HTMLTransforms.h"
#include "Engine/MarkdownTransforms.h"
#include "tests/engine/Deadline.h"
#include "tests/engine/oracles/PatternOracle.h"
#include "tests/engine/texts/HostileTexts.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using tests::Deadline;

constexpr unsigned kSeconds = 5;

TEST(HostileHTML, IsDoneInTime) {
    for (const tests::HostileText& hostile : tests::hostileHTML()) {
        SCOPED_TRACE(hostile.name);
        ASSERT_LE(hostile.text.size(), TextTransforms::kMaxHTMLSize);
        ASSERT_GT(hostile.text.size() + 8, TextTransforms::kMaxHTMLSize);
        const Deadline deadline(kSeconds);
        TextTransforms::stripHTML(hostile.text);
        TextTransforms::htmlToMarkdown(hostile.text);
        TextTransforms::decodeEntities(hostile.text);
    }
}

TEST(HostileMarkdown, IsDoneInTime) {
    for (const tests::HostileText& hostile : tests::hostileMarkdown()) {
        SCOPED_TRACE(hostile.name);
        const Deadline deadline(kSeconds);
        TextTransforms::markdownToHTML(hostile.text);
    }
}

TEST(HostileMarkdown, HasNoLimitOfSize) {
    constexpr std::size_t kSize = 50'000'000;
    const Deadline deadline(60);
    const std::string lines = tests::repeated("Some *text* in a line\n", kSize);
    EXPECT_GT(TextTransforms::markdownToHTML(lines).size(), lines.size());
    const std::string line(kSize, 'x');
    EXPECT_EQ(TextTransforms::markdownToHTML(line), "<p>" + line + "</p>");
}

// The patterns take time that grows with the third power of the size, so these are small.

TEST(HostileHTML, GivesWhatThePatternsGive) {
    for (const tests::HostileText& hostile : tests::hostileHTML(900)) {
        EXPECT_EQ(TextTransforms::stripHTML(hostile.text), PatternOracle::stripHTML(hostile.text)) << hostile.name;
        EXPECT_EQ(TextTransforms::htmlToMarkdown(hostile.text), PatternOracle::htmlToMarkdown(hostile.text))
            << hostile.name;
    }
}

TEST(HostileMarkdown, GivesWhatThePatternsGive) {
    for (const tests::HostileText& hostile : tests::hostileMarkdown(3'000))
        EXPECT_EQ(TextTransforms::markdownToHTML(hostile.text), PatternOracle::markdownToHTML(hostile.text))
            << hostile.name;
}

TEST(HostileHTML, GivesWhatThePatternsGiveWhereICURunsOutOfStackByDefault) {
    const std::string spaces(TextTransforms::kMaxHTMLSize - 100, ' ');
    const std::string text = "<a href='u'>one</a> <" + spaces + "a href='v'>two</a> <a href='w'>three</a>";
    EXPECT_EQ(TextTransforms::htmlToMarkdown(text), PatternOracle::htmlToMarkdown(text));
}

}  // namespace
}  // namespace ravlin
