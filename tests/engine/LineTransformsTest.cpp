#include "Engine/LineTransforms.h"

#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(ReverseLines, TurnsTheOrderRoundAndKeepsCarriageReturnsWithTheirLines) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},     {"a", "a"},     {"a\nb\n", "\nb\na"}, {"one\r\ntwo", "two\none\r"},
        {"\n", "\n"}, {"\na", "a\n"}, {"a\n\nb", "b\n\na"}, {"a\r\nb\r\nc", "c\nb\r\na\r"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::reverseLines(text), expected);
}

}  // namespace
}  // namespace ravlin
