#include "Engine/Support/RichText/ControlWords.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using RichText::Effect;
using RichText::findWord;
using RichText::Word;

TEST(ControlWords, AreFoundByTheirWholeNames) {
    const struct {
        const char* name;
        Effect effect;
        char32_t value;
    } vectors[] = {
        {"abiendtable", Effect::endOfTable, 0},
        {"par", Effect::paragraph, 0},
        {"u", Effect::unicode, 0},
        {"uc", Effect::fallback, 0},
        {"tab", Effect::character, 9},
        {"zwnj", Effect::character, 0x200C},
        {"pc", Effect::documentCodePage, 437},
        {"mmathPr", Effect::skipped, 0},
    };
    for (const auto& [name, effect, value] : vectors) {
        const Word* const word = findWord(name);
        ASSERT_NE(word, nullptr) << name;
        EXPECT_EQ(word->name, name);
        EXPECT_EQ(word->effect, effect) << name;
        EXPECT_EQ(word->value, value) << name;
    }
}

TEST(ControlWords, ThatMeanNothingForTheTextAreNone) {
    for (const char* const name : {"ansi", "b", "fs", "pa", "pard", "zz", "zwnjx", "PAR", "Z", "a"})
        EXPECT_EQ(findWord(name), nullptr) << name;
}

}  // namespace
}  // namespace ravlin
