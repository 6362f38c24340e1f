#include "Engine/Support/Words.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words;
    Words::forEach(text, [&](std::string_view word) {
        EXPECT_GE(word.data(), text.data());
        EXPECT_LE(word.data() + word.size(), text.data() + text.size());
        words.emplace_back(word);
    });
    return words;
}

using List = std::vector<std::string>;

TEST(Words, AreCutAtSeparatorsAndWhereCapitalsBegin) {
    EXPECT_EQ(wordsOf("getJSONResponse2Go don't"), (List{"get", "JSON", "Response2", "Go", "don", "t"}));
    EXPECT_EQ(wordsOf("ABCd"), (List{"AB", "Cd"}));
    EXPECT_EQ(wordsOf("3D"), (List{"3", "D"}));
    EXPECT_EQ(wordsOf("\u00C9cole\u00C9lys\u00E9e"), (List{"\u00C9cole", "\u00C9lys\u00E9e"}));
    EXPECT_EQ(wordsOf("e\u0301-b"), (List{"e\u0301", "b"}));
    EXPECT_EQ(wordsOf(" -- \r\n"), List());
    EXPECT_EQ(wordsOf(""), List());
}

TEST(Words, AreFoundWhateverTheirSizeAndPlace) {
    for (std::size_t before = 0; before < 20; ++before)
        for (std::size_t size = 1; size < 20; ++size) {
            const std::string word(size, 'a');
            const std::string spaces(before, ' ');
            EXPECT_EQ(wordsOf(spaces + word), List{word});
            EXPECT_EQ(wordsOf(spaces + word + " b"), (List{word, "b"}));
            EXPECT_EQ(wordsOf(spaces + word + "B"), (List{word, "B"}));
            EXPECT_EQ(wordsOf(spaces + "A" + word + "\u00E9 " + word), (List{"A" + word + "\u00E9", word}));
        }
}

}  // namespace
}  // namespace ravlin
