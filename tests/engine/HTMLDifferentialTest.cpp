#include "Engine/HTMLTransforms.h"
#include "Engine/MarkdownTransforms.h"
#include "tests/engine/oracles/PatternOracle.h"
#include "tests/engine/texts/HTMLTokens.h"
#include "tests/engine/texts/RandomTexts.h"

#include <array>
#include <cstdint>
#include <cstdlib>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using TextFunction = std::string (*)(std::string_view);

std::uint64_t numberFromEnvironment(const char* name, std::uint64_t otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : std::strtoull(value, nullptr, 10);
}

/// Compares two functions on random texts: a few by default, RAVLIN_DIFFERENTIAL_TEXTS on request.
void expectEqual(TextFunction scanner, TextFunction oracle, std::span<const std::string_view> tokens) {
    const std::uint64_t count = numberFromEnvironment("RAVLIN_DIFFERENTIAL_TEXTS", 150'000);
    const std::uint64_t seed = numberFromEnvironment("RAVLIN_DIFFERENTIAL_SEED", 1);
    tests::RandomTexts texts(tokens, seed);
    std::uint64_t changed = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::string text = texts.next();
        const std::string result = scanner(text);
        changed += static_cast<std::uint64_t>(result != text);
        ASSERT_EQ(result, oracle(text)) << "text " << i << " of seed " << seed << ": " << testing::PrintToString(text);
    }
    testing::Test::RecordProperty("changed", std::to_string(changed));
    EXPECT_GT(changed, count / 2) << "the texts give the rules too little to do";
}

TEST(HTMLDifferential, StripHTMLDoesWhatItsExpressionsSay) {
    expectEqual(TextTransforms::stripHTML, PatternOracle::stripHTML, tests::kHTMLTokens);
}

TEST(HTMLDifferential, HTMLToMarkdownDoesWhatItsExpressionsSay) {
    expectEqual(TextTransforms::htmlToMarkdown, PatternOracle::htmlToMarkdown, tests::kHTMLTokens);
}

TEST(HTMLDifferential, DecodeEntitiesDoesWhatItsExpressionsSay) {
    expectEqual(TextTransforms::decodeEntities, PatternOracle::decodeEntities, tests::kReferenceTokens);
}

TEST(HTMLDifferential, MarkdownToHTMLDoesWhatItsExpressionsSay) {
    expectEqual(TextTransforms::markdownToHTML, PatternOracle::markdownToHTML, tests::kMarkdownTokens);
}

}  // namespace
}  // namespace ravlin
