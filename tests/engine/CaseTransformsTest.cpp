#include "Engine/CaseTransforms.h"
#include "tests/engine/Oracle.h"

#include <unicode/uchar.h>

#include <utility>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

bool hasProperty(char32_t scalar, UProperty property) {
    return u_hasBinaryProperty(static_cast<UChar32>(scalar), property) != 0;
}

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

/// The rule as it reads, code point by code point.
std::string plainTitleCase(std::string_view text) {
    static const std::u32string ends =
        U"\u002e\u003a\u00b7\u0387\u055f\u05f4\u2018\u2024\u2027\ufe13\ufe52\ufe55\uff07\uff0e\uff1a";
    const std::string lower = Oracle::lowerCased(text);
    std::string result;
    bool isInWord = false;
    std::size_t inLower = 0;
    for (const char32_t scalar : Oracle::scalars(text)) {
        const auto character = static_cast<UChar32>(scalar);
        const std::string itself = Oracle::utf8(scalar);
        const std::string lowered = lower.substr(inLower, Oracle::lowerCased(itself).size());
        inLower += lowered.size();
        const bool isMark = (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
        const bool isLetterOrNumber = !isMark && (hasProperty(scalar, UCHAR_ALPHABETIC) ||
                                                  u_getIntPropertyValue(character, UCHAR_NUMERIC_TYPE) != U_NT_NONE);
        const bool goesOn = isMark || isLetterOrNumber ||
                            (hasProperty(scalar, UCHAR_CASE_IGNORABLE) && ends.find(scalar) == std::u32string::npos);
        const bool starts = !isInWord && isLetterOrNumber;
        isInWord = starts || (isInWord && goesOn);
        if (starts)
            result += Oracle::titleCased(scalar);
        else
            result += isInWord ? lowered : itself;
    }
    return result;
}

TEST(TitleCase, IsThatOfThePlainVersionInRandomTexts) {
    Oracle::Texts texts(Oracle::kTextAlphabet, 16);
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(TextTransforms::titleCase(text), plainTitleCase(text)) << testing::PrintToString(text);
    }
}

TEST(TitleCase, IsThatOfThePlainVersionForEveryCodePointInEveryPlaceOfAWord) {
    for (char32_t scalar = 0; scalar <= 0x1FFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
        const std::string text = Oracle::utf8(scalar) + "A" + Oracle::utf8(scalar) + "B";
        ASSERT_EQ(TextTransforms::titleCase(text), plainTitleCase(text)) << std::hex << static_cast<unsigned>(scalar);
    }
}

}  // namespace
}  // namespace ravlin
