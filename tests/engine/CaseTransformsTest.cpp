#include "Engine/CaseTransforms.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/oracles/PlainCases.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

// --- titleCase -------------------------------------------------------------------------------------------------------

TEST(TitleCase, CapitalisesWordsAndLowerCasesTheirRest) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"hELLO wORLD", "Hello World"},
        {"a\tb\nc\r\nd\u2028e", "A\tB\nC\r\nD\u2028E"},
        {"o'neil", "O'neil"},
        {"can’t", "Can’t"},
        {"l'été", "L'été"},
        {"science-based", "Science-Based"},
        {"3d 49ERS 1st", "3d 49ers 1st"},
        {"foo_bar", "Foo_Bar"},
        {"d.c.", "D.C."},
        {"‘hello’", "‘Hello’"},
        {"“hello” (world) \"x\"", "“Hello” (World) \"X\""},
        {"'hello'", "'Hello'"},
        {"IJSSEL", "Ijssel"},
        {"«丰(aBc)»", "«丰(Abc)»"},
        {"丰aBc", "丰abc"},
        {"Th.he.EVERYWHERE", "Th.He.Everywhere"},
        {"and/or a:b", "And/Or A:B"},
        {"ﬃ ß ǆx Ǆx ŉx", "Ffi Ss ǅx ǅx ʼNx"},
        {"ΟΔΟΣ ΣΑΣ ΑΣ.Α", "Οδος Σας Ασ.Α"},
        {"e\u0301COLE", "E\u0301cole"},
        {"soft\u00adHyphen", "Soft\u00adhyphen"},
        {"👍hi🇫🇷hi", "👍Hi🇫🇷Hi"},
        {"İSTANBUL I", "İstanbul I"},
        {"ⅷ ⓐⓑ ½A", "Ⅷ Ⓐⓑ ½a"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::titleCase(text), expected);
}

TEST(TitleCase, IsThatOfThePlainVersionInRandomTexts) {
    tests::AlphabetTexts texts(tests::kTextAlphabet, 16);
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::titleCase(text), tests::plainTitleCase(text)) << testing::PrintToString(text);
    }
}

TEST(TitleCase, IsThatOfThePlainVersionForEveryCodePointInEveryPlaceOfAWord) {
    for (char32_t scalar = 0; scalar <= 0x1FFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
        const std::string text = Oracle::utf8(scalar) + "A" + Oracle::utf8(scalar) + "B";
        ASSERT_EQ(TextTransforms::titleCase(text), tests::plainTitleCase(text))
            << std::hex << static_cast<unsigned>(scalar);
    }
}

// --- tokenizeWords ---------------------------------------------------------------------------------------------------

using Words = std::vector<std::string>;

TEST(TokenizeWords, CutsAtSeparatorsAndAtCaseChanges) {
    const std::pair<std::string_view, Words> vectors[] = {
        {"", {}},
        {"  --  ", {}},
        {"helloWorld", {"hello", "World"}},
        {"version2Beta", {"version2", "Beta"}},
        {"JSONParser", {"JSON", "Parser"}},
        {"getJSONResponseCode", {"get", "JSON", "Response", "Code"}},
        {"XMLDataParser", {"XML", "Data", "Parser"}},
        {"iPhone", {"i", "Phone"}},
        {"ABC123Def", {"ABC123", "Def"}},
        {"AbC", {"Ab", "C"}},
        {"JSON-server", {"JSON", "server"}},
        {"already_snake_case", {"already", "snake", "case"}},
        {"abc123 3d", {"abc123", "3d"}},
        {"don't", {"don", "t"}},
        {"a\r\nb\u2028c👍d", {"a", "b", "c", "d"}},
        {"xª", {"x", "ª"}},
        {"日本語Text", {"日本語Text"}},
        {"一Text", {"一", "Text"}},  // the ideograph is a number
        {"Ⅻa", {"Ⅻa"}},
        {"E\u0301cole", {"E\u0301cole"}},
        {"abE\u0301cole", {"ab", "E\u0301cole"}},
        {"AB-\u0345", {"A", "B"}},  // what follows B is lower case, although a separator
        {"½cup", {"½cup"}},
    };
    for (const auto& [text, expected] : vectors) {
        EXPECT_EQ(TextTransforms::tokenizeWords(text), expected) << text;
        EXPECT_EQ(tests::plainWords(text), expected) << text;
    }
}

TEST(TokenizeWords, IsThatOfTheRulesForEverySmallString) {
    constexpr std::string_view alphabet = "aA1 -\n";
    std::string text;
    std::size_t checked = 0;
    const auto extend = [&](const auto& self) -> void {
        ASSERT_EQ(TextTransforms::tokenizeWords(text), tests::plainWords(text)) << text;
        ++checked;
        if (text.size() == 6) return;
        for (const char byte : alphabet) {
            text += byte;
            self(self);
            text.pop_back();
        }
    };
    extend(extend);
    EXPECT_EQ(checked, 55'987U);  // the sum of 6^0 to 6^6
}

constexpr std::u32string_view kWordAlphabet =
    U"aabzABZ12 -_\n\r'.\u0301\u0345\u00aa\u02b0\u2160\u2170\u24b6\u24d0\u24c2\u4e00\u4e2d\u00df\u01c4\u01c5\u01c6"
    U"\u0130\u0131\u0149\u0390\u03a3\u03c3\u00c9\u00e9\u00bd\u0600\u0d4e\u093e\u0915\u094d\u200d\u2764\U0001f1eb"
    U"\U0001d400";

TEST(TokenizeWords, IsThatOfTheRulesInRandomTexts) {
    tests::AlphabetTexts texts(kWordAlphabet, 10);
    for (int i = 0; i < 60'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::tokenizeWords(text), tests::plainWords(text)) << testing::PrintToString(text);
    }
}

TEST(TokenizeWords, KnowsTheCaseOfEveryCodePoint) {
    for (char32_t scalar = 1; scalar <= 0x1FFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
        const std::string text = "a" + Oracle::utf8(scalar) + "AB" + Oracle::utf8(scalar);
        ASSERT_EQ(TextTransforms::tokenizeWords(text), tests::plainWords(text))
            << std::hex << static_cast<unsigned>(scalar);
    }
}

// --- The transforms made of words ------------------------------------------------------------------------------------

TEST(WordTransforms, JoinWordsInTheirStyles) {
    const struct {
        std::string_view text, camel, pascal, snake, kebab, constant;
    } vectors[] = {
        {"", "", "", "", "", ""},
        {"  --  ", "", "", "", "", ""},
        {"JSONParser error", "jsonParserError", "JsonParserError", "json_parser_error", "json-parser-error",
         "JSON_PARSER_ERROR"},
        {"hello world example", "helloWorldExample", "HelloWorldExample", "hello_world_example", "hello-world-example",
         "HELLO_WORLD_EXAMPLE"},
        {"don't", "donT", "DonT", "don_t", "don-t", "DON_T"},
        {"ﬁx ßa", "ﬁxSSa", "FIxSSa", "ﬁx_ßa", "ﬁx-ßa", "FIX_SSA"},
        {"ǆx ǆx", "ǆxǄx", "ǄxǄx", "ǆx_ǆx", "ǆx-ǆx", "ǄX_ǄX"},
        {"ΑΣ ΑΣ", "αςΑς", "ΑςΑς", "ας_ας", "ας-ας", "ΑΣ_ΑΣ"},
        {"xª", "xª", "Xª", "x_ª", "x-ª", "X_ª"},
        {"İx", "i\u0307x", "I\u0307x", "i\u0307x", "i\u0307x", "İX"},
    };
    for (const auto& vector : vectors) {
        EXPECT_EQ(TextTransforms::camelCase(vector.text), vector.camel);
        EXPECT_EQ(TextTransforms::pascalCase(vector.text), vector.pascal);
        EXPECT_EQ(TextTransforms::snakeCase(vector.text), vector.snake);
        EXPECT_EQ(TextTransforms::kebabCase(vector.text), vector.kebab);
        EXPECT_EQ(TextTransforms::constantCase(vector.text), vector.constant);
    }
}

void expectWordTransformsToFollowTheRules(const std::string& text) {
    ASSERT_EQ(TextTransforms::camelCase(text), tests::plainCamelCase(text));
    ASSERT_EQ(TextTransforms::pascalCase(text), tests::plainPascalCase(text));
    ASSERT_EQ(TextTransforms::snakeCase(text), tests::plainSnakeCase(text));
    ASSERT_EQ(TextTransforms::kebabCase(text), tests::plainKebabCase(text));
    ASSERT_EQ(TextTransforms::constantCase(text), tests::plainConstantCase(text));
}

TEST(WordTransforms, AreThoseOfTheRulesInRandomTexts) {
    tests::AlphabetTexts texts(kWordAlphabet, 10, /*seed=*/2);
    for (int i = 0; i < 40'000; ++i) {
        const std::string text = texts.next();
        SCOPED_TRACE(testing::PrintToString(text));
        ASSERT_NO_FATAL_FAILURE(expectWordTransformsToFollowTheRules(text));
    }
}

TEST(WordTransforms, TakeWordsOfAnyLength) {
    for (const std::size_t size : {4'000U, 4'095U, 4'096U, 4'097U, 9'000U}) {
        const std::string word(size, 'a');
        const std::string greek = "Σ" + word + "Σ";
        for (const std::string& text :
             {word, "b " + word, word + " b", "b " + word + " " + word, "b " + greek + " b"}) {
            SCOPED_TRACE(size);
            ASSERT_NO_FATAL_FAILURE(expectWordTransformsToFollowTheRules(text));
        }
    }
}

TEST(WordTransforms, AreThoseOfTheRulesInLongTexts) {
    // Long words and short ones, then a stretch that is not ASCII.
    tests::AlphabetTexts plain(U"abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyzaz`{@[AZ09 -_", 6'000, /*seed=*/3);
    tests::AlphabetTexts others(kWordAlphabet, 30, /*seed=*/4);
    for (int i = 0; i < 100; ++i) {
        const std::string text = plain.next() + others.next() + plain.next();
        SCOPED_TRACE(testing::PrintToString(text));
        ASSERT_NO_FATAL_FAILURE(expectWordTransformsToFollowTheRules(text));
    }
}

// --- sentenceCase ----------------------------------------------------------------------------------------------------

TEST(SentenceCase, CapitalisesTheFirstLetterOfEverySentence) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"hello world. this is IT! ok?yes", "Hello world. This is it! Ok?yes"},
        {"e.g. this", "E.g. This"},
        {"1st place", "1St place"},
        {"“hello.” world", "“Hello.” world"},
        {"is IT", "Is it"},
        {"end.\r\nnext", "End.\r\nnext"},
        {"end.\nnext", "End.\nNext"},
        {"end.\tnext", "End.\tNext"},
        {"wait… then", "Wait… then"},
        {"what?! yes", "What?! Yes"},
        {"a.b. c", "A.b. C"},
        {"a.\u0301 b", "A.\u0301 b"},  // a full stop with an accent ends nothing
        {"a. \u0301b", "A. \u0301b"},  // nor does one before a blank with an accent
        {"a.", "A."},
        {"a. 👍🏽 b", "A. 👍🏽 B"},
        {"ßa. ŉb. ﬁx", "SSa. ʼNb. FIx"},
        {"e\u0301a. ǆ", "E\u0301a. Ǆ"},
        {"ΟΔΟΣ. ΟΔΟΣ", "Οδος. Οδος"},
        {"...  1 (a", "...  1 (A"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::sentenceCase(text), expected);
}

TEST(SentenceCase, IsThatOfTheRulesInRandomTexts) {
    tests::AlphabetTexts texts(U"aaBé.!? \n\r\t1'\u0301\u0600\u0345ßŉΣΑ\u0390\u24c2\u200d\u2764\u093e\u0130中", 14);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::sentenceCase(text), tests::plainSentenceCase(text)) << testing::PrintToString(text);
    }
}

// --- capitalizeWords -------------------------------------------------------------------------------------------------

TEST(CapitalizeWords, UpperCasesFirstLettersAndNothingElse) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"hello wORLD-foo o'neil 3d", "Hello WORLD-Foo O'Neil 3d"},
        {"ébène", "Ébène"},
        {"ß", "SS"},
        {"ǆa ﬁ", "Ǆa FI"},
        {"a\r\nb", "A\r\nB"},
        {"e\u0301a -\u0301b", "E\u0301a -\u0301B"},
        {"½a 日a", "½a 日a"},
        {"\u0600a", "\u0600a"},  // one character, that does not begin with a letter
        {"👍a", "👍A"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::capitalizeWords(text), expected);
}

TEST(CapitalizeWords, IsThatOfTheRulesInRandomTexts) {
    tests::AlphabetTexts texts(kWordAlphabet, 14, /*seed=*/3);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::capitalizeWords(text), tests::plainCapitalizeWords(text))
            << testing::PrintToString(text);
    }
}

// --- slugify ---------------------------------------------------------------------------------------------------------

TEST(Slugify, FoldsLatinGreekAndCyrillicAndKeepsOtherScripts) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"!!!", ""},
        {"Héllo, Wörld! 2024", "hello-world-2024"},
        {"Rock & Roll!", "rock-roll"},
        {"日本語 text", "日本語-text"},
        {"--a--b--", "a-b"},
        {"ệ İ Å й ё ї ΐ ῷ", "e-i-a-и-е-і-ι-ω"},
        {"a≠b", "a-b"},
        {"ø ł đ ß æ œ þ ð ı ﬁ ẞ", "ø-ł-đ-ß-æ-œ-þ-ð-ı-ﬁ-ß"},
        {"がぎ か\u3099 ガ 한", "がぎ-か\u3099-ガ-한"},
        {"مُحَمَّد שָׁלוֹם", "مُحَمَّد-שָׁלוֹם"},
        {"हिन्दी ไทย", "हिन्दी-ไทย"},
        {"می‌خواهم", "می‌خواهم"},
        {"½ Ⅻ", "½-ⅻ"},
        {"1️⃣", "1"},
        {"e\u0301\u0327 中\u0301", "e-中"},
        {"ΟΔΟΣ ΆΣ", "οδος-ας"},
        {"a\r\nb\tc", "a-b-c"},
        {"don't", "don-t"},
        {"a🏽b", "ab"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(TextTransforms::slugify(text), expected) << text;
}

TEST(Slugify, IsThatOfTheRulesInRandomTexts) {
    tests::AlphabetTexts texts(
        U"aaÉ1 "
        U"-.'"
        U"\u0301\u0327\u0345éệйΐ≠ΑΣσßİがか\u3099한각中हि\u094d"
        U"\u0600\u200d\u200c\ufe0f\u20e3🏽👍ﬁ½Ⅻⓐ\u212b"
        U"\r"
        U"\n",
        12);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::slugify(text), tests::plainSlug(text)) << testing::PrintToString(text);
    }
}

TEST(Slugify, IsThatOfTheRulesForEveryCodePoint) {
    for (char32_t scalar = 0; scalar <= 0x1FFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
        const std::string text = Oracle::utf8(scalar) + "\u0301x" + Oracle::utf8(scalar) + "\u0e31";
        ASSERT_EQ(TextTransforms::slugify(text), tests::plainSlug(text)) << std::hex << static_cast<unsigned>(scalar);
    }
}

TEST(Slugify, OfLongTextsIsThatOfTheirParts) {
    // The text is processed in parts of 64 KiB, whose borders must not show.
    for (const std::string_view piece :
         {"Ünicode Σ ", "word", "ΑΣ'Σ.", "中文", "中文 ", "e\u0301", "\r\n", "हि👍🏽"}) {
        for (std::size_t shift = 0; shift < 7; ++shift) {
            std::string text(shift, 'x');
            while (text.size() < 0x10000 + 40) text += piece;
            ASSERT_EQ(TextTransforms::slugify(text), tests::plainSlug(text)) << piece << shift;
        }
    }
}

}  // namespace
}  // namespace ravlin
