// Texts that memory has no room for, on every desktop.

#include "tests/platform/BackEnd.h"
#include "tests/support/FailingAllocation.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

/// Small pieces of memory are always found: what does not fit is a text.
constexpr std::size_t kLarge = 32768;

/// Does `action` with the first large allocation failing, then with the second, and so on until all succeed; `check`
/// looks at what has come of it.
void exhaust(const std::function<void()>& action, const std::function<void()>& check) {
    bool hasFailed = true;
    for (std::size_t number = 0; hasFailed; ++number) {
        {
            const FailingAllocation failing(number, kLarge);
            action();
            hasFailed = failing.hasFailed();
        }
        check();
        if (testing::Test::HasFailure()) return;
    }
}

TEST(BackEndMemory, TextThatDoesNotFitIsAbsentAndThereWhenItDoes) {
    const std::string text = textOfSize(1000000);
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", text}}});
    const auto pasteboard = openBackEnd();
    std::optional<std::string> found;
    exhaust([&] { found = pasteboard->string(); },
            [&] {
                EXPECT_TRUE(!found || *found == text);
                EXPECT_TRUE(pasteboard->string() == text);
            });
    EXPECT_TRUE(found == text);
}

TEST(BackEndMemory, TextThatDoesNotFitReplacesNothing) {
    const std::string text = textOfSize(1000000);
    const auto pasteboard = openBackEnd();
    const auto owner = copyElsewhere({.content = {{"UTF8_STRING", "before"}}});
    EXPECT_EQ(pasteboard->string(), "before");
    bool isWritten = true;
    exhaust([&] { isWritten = pasteboard->replaceIfUnchanged(pasteboard->changeCount(), text); },
            [&] {
                const std::optional<std::string> now = pasteElsewhere("UTF8_STRING", *pasteboard);
                EXPECT_TRUE(isWritten ? now == text : now == "before");
            });
    EXPECT_TRUE(isWritten);
    EXPECT_TRUE(pasteboard->setString("before"));
    exhaust(
        [&] {
            pasteboard->clearContents();
            isWritten = pasteboard->setString(text);
        },
        [&] {
            const std::optional<std::string> now = pasteElsewhere("UTF8_STRING", *pasteboard);
            EXPECT_TRUE(isWritten ? now == text : now == "before");
        });
    EXPECT_TRUE(isWritten);
}

}  // namespace
}  // namespace ravlin::tests
