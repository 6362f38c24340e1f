// Whichever allocation fails, nothing is lost.

#include "Engine/PasteboardService.h"
#include "Engine/TextTransform.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/FakePasteboard.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using testing::Pair;
using tests::FailingAllocation;
using tests::FakePasteboard;
using Type = Pasteboard::Type;

std::string repeated(const std::string& piece, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
}

/// Between them they give every transform something to do.
const std::vector<std::string>& texts() {
    static const std::vector<std::string> kTexts = {
        repeated(
            "<p>Gr\u00FC\u00DFe an \"alle\" &amp; https://a.test/p?id=1&utm_source=x#top\n\n  * **bold** 'q'\u00AD \t"
            "\u0130stanbul -- 1.000...</p>\n",
            20),
        "{\"a\": [" + repeated("{\"b\": \"\\u00e9\", \"c\": [1, 2.5e3, null]}, ", 30) + "true]}",
        "eyJhbGciOiJIUzI1NiJ9.eyJzdWIiOiIxMjM0NTY3ODkwIiwibmFtZSI6IkEgbmFtZSB0aGF0IGlzIGxvbmcgZW5vdWdoIn0.c2ln",
        repeated("48656c6c6f2c20776f726c64", 50),
    };
    return kTexts;
}

/// Shuffled lines are the same bytes in another order.
bool isResult(TextTransform transform, const std::string& result, const std::string& expected) {
    return transform == TextTransform::shuffleLines ? std::ranges::is_permutation(result, expected)
                                                    : result == expected;
}

class ExhaustedMemory : public testing::TestWithParam<TextTransform> {};

TEST_P(ExhaustedMemory, GivesTheTextBackOrTheResult) {
    const TextTransform transform = GetParam();
    for (const std::string& text : texts()) {
        const std::string expected = transform.apply(text);
        bool hasFailed = true;
        for (std::size_t number = 0; hasFailed; ++number) {
            std::string result;
            {
                const FailingAllocation failing(number);
                result = transform.apply(text);
                hasFailed = failing.hasFailed();
            }
            ASSERT_TRUE(result == text || isResult(transform, result, expected)) << number << ": " << result;
        }
    }
}

TEST_P(ExhaustedMemory, LeavesTheClipboardAsItWasOrWithTheResult) {
    const TextTransform transform = GetParam();
    const std::string text = texts().front();
    const std::string expected = transform.apply(text);
    bool hasFailed = true;
    for (std::size_t number = 0; hasFailed; ++number) {
        FakePasteboard pasteboard;
        pasteboard.copyTextElsewhere(text);
        {
            const FailingAllocation failing(number);
            PasteboardService::transformClipboard(transform);
            hasFailed = failing.hasFailed();
        }
        ASSERT_EQ(pasteboard.representations().size(), 1U);
        const std::string now = pasteboard.representations().begin()->second;
        ASSERT_TRUE(now == text || isResult(transform, now, expected)) << number << ": " << now;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, ExhaustedMemory, testing::ValuesIn(TextTransform::allCases()),
                         [](const auto& each) { return std::string(each.param.id()); });

TEST(ExhaustedMemoryWhileReading, NoTextIsSaidOfRichTextThatDoesNotFit) {
    const std::pair<Type, std::string> richTexts[] = {
        {Type::rtf, "{\\rtf1\\ansi " + repeated("text that is rich {\\b and bold}\\par ", 20) + "}"},
        {Type::html, repeated("<p>text that is <b>rich</b> &amp; bold</p>", 20)},
    };
    for (const auto& content : richTexts) {
        bool hasFailed = true;
        for (std::size_t number = 0; hasFailed; ++number) {
            FakePasteboard pasteboard;
            pasteboard.copyElsewhere({content});
            PasteOutcome outcome = ClipboardEmpty{};
            {
                const FailingAllocation failing(number);
                outcome = PasteboardService::transformClipboard(TextTransform::upperCase);
                hasFailed = failing.hasFailed();
            }
            if (outcome == PasteOutcome(NoText{}))
                ASSERT_THAT(pasteboard.representations(), ElementsAre(content)) << number;
            else
                ASSERT_THAT(pasteboard.representations(), ElementsAre(Pair(Type::string, testing::_))) << number;
        }
    }
}

}  // namespace
}  // namespace ravlin
