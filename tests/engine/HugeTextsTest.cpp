// Texts of more than one and of more than four GiB, where sizes and positions need more than 32 bits. They need 14 GB
// of memory, and run only if RAVLIN_HUGE_TEXTS is set.

#include "Engine/LineTransforms.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/LineModel.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20U;
constexpr std::size_t kGiB = std::size_t{1} << 30U;

class HugeTexts : public testing::Test {
protected:
    void SetUp() override {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing sets it
        if (std::getenv("RAVLIN_HUGE_TEXTS") == nullptr) GTEST_SKIP() << "RAVLIN_HUGE_TEXTS is not set";
    }
};

/// `count` lines of a MiB each, every one starting with its number.
std::string numberedLines(std::size_t count) {
    std::string text;
    text.reserve(count * kMiB);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        text += number + std::string(kMiB - 1 - number.size(), '.') + '\n';
    }
    text.pop_back();
    return text;
}

TEST_F(HugeTexts, AreComposedAcrossTheLimitOfICU) {
    for (const std::size_t before : {kGiB - 1, kGiB - 3, kGiB}) {
        std::string text(before, 'x');
        text += "e\u0301";
        text.append(kMiB, 'y');
        EXPECT_FALSE(Unicode::isNFC(text));
        text = Unicode::nfc(text);
        EXPECT_TRUE(Unicode::isNFC(text));
        EXPECT_EQ(text.size(), before + 2 + kMiB);
        EXPECT_EQ(text.substr(before - 1, 4), "x\u00E9y");
    }
}

TEST_F(HugeTexts, LinesBeyondFourGiBAreReversed) {
    constexpr std::size_t kCount = 4 * kGiB / kMiB + 2;
    const std::string text = numberedLines(kCount);
    const std::string reversed = TextTransforms::reverseLines(text);
    ASSERT_EQ(reversed.size(), text.size());
    EXPECT_EQ(reversed.substr(0, 5), std::to_string(kCount - 1) + '.');
    EXPECT_EQ(reversed.substr(reversed.size() - kMiB, 4), "\n0..");
    EXPECT_TRUE(std::string_view(reversed).ends_with(std::string_view(text).substr(0, kMiB - 1)));
}

TEST_F(HugeTexts, LinesBeyondFourGiBAreShuffledAsSoManyOthersAre) {
    constexpr std::size_t kCount = 4 * kGiB / kMiB + 2;
    std::string numbers;
    for (std::size_t i = 0; i < kCount; ++i) numbers += std::to_string(i) + ".\n";
    numbers.pop_back();
    const std::string order = TextTransforms::shuffleLines(numbers);
    const std::string shuffled = TextTransforms::shuffleLines(numberedLines(kCount));
    ASSERT_EQ(shuffled.size(), kCount * kMiB - 1);
    std::size_t at = 0;
    for (const std::string_view line : LineModel::split(order)) {
        ASSERT_TRUE(std::string_view(shuffled).substr(at).starts_with(line)) << line;
        at += kMiB;
    }
}

TEST_F(HugeTexts, DuplicatesBeyondFourGiBAreFound) {
    constexpr std::size_t kCount = 4 * kGiB / kMiB + 2;
    const std::string text = numberedLines(kCount);
    const std::string last = text.substr(text.size() - (kMiB - 1));
    const std::string unique = TextTransforms::removeDuplicateLines(text + '\n' + last + "\nend");
    EXPECT_EQ(unique.size(), text.size() + 4);
    EXPECT_TRUE(unique.ends_with(".\nend"));
}

}  // namespace
}  // namespace ravlin
