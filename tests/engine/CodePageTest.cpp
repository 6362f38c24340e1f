#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/RichText/CodePage.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

/// Every known number, and bytes that are text in that code page.
const struct {
    int number;
    const char* bytes;
    const char* text;
} kPages[] = {
    {42, "a\xB7", "\u03B1\u2022"},     {437, "\xE1", "\u00DF"},
    {720, "\xA0", "\u0628"},           {737, "\x98", "\u03B1"},
    {775, "\xD0", "\u0105"},           {819, "\xE9", "\u00E9"},
    {850, "\x82", "\u00E9"},           {852, "\xA5", "\u0105"},
    {855, "\xA0", "\u0430"},           {857, "\x8D", "\u0131"},
    {858, "\xD5", "\u20AC"},           {860, "\x84", "\u00E3"},
    {861, "\x8D", "\u00DE"},           {862, "\x80", "\u05D0"},
    {863, "\x84", "\u00C2"},           {865, "\x9B", "\u00F8"},
    {866, "\xA0", "\u0430"},           {869, "\xD6", "\u03B1"},
    {874, "\xA1", "\u0E01"},           {932, "\x93\xFA", "\u65E5"},
    {936, "\xC8\xD5", "\u65E5"},       {949, "\xB0\xA1", "\uAC00"},
    {950, "\xA4\xE9", "\u65E5"},       {1250, "\xB9", "\u0105"},
    {1251, "\xE0", "\u0430"},          {1252, "\x80\xE9", "\u20AC\u00E9"},
    {1253, "\xE1", "\u03B1"},          {1254, "\xFD", "\u0131"},
    {1255, "\xE0", "\u05D0"},          {1256, "\xC8", "\u0628"},
    {1257, "\xE0", "\u0105"},          {1258, "\xFE", "\u20AB"},
    {10000, "\x8E", "\u00E9"},         {10006, "\xE1", "\u03B1"},
    {10007, "\x80", "\u0410"},         {10029, "\x88", "\u0105"},
    {10081, "\xDD", "\u0131"},         {54936, "\x94\x39\xDA\x33", "\U0001F4A9"},
    {65001, "\xE2\x82\xAC", "\u20AC"},
};

/// The text of bytes appended piece by piece.
std::string decoded(CodePage page, const std::vector<std::string>& pieces) {
    CodePageDecoder decoder;
    std::string text;
    for (const std::string& piece : pieces) decoder.append(text, page, piece);
    decoder.finish(text);
    return text;
}

CodePage pageNumbered(int number) {
    return CodePage::numbered(number).value();
}

TEST(CodePage, HasTheTextOfItsNumber) {
    for (const auto& page : kPages) {
        ASSERT_TRUE(CodePage::numbered(page.number)) << page.number;
        EXPECT_EQ(decoded(pageNumbered(page.number), {page.bytes}), page.text) << page.number;
    }
    EXPECT_EQ(CodePage::numbered(1252), CodePage::kWindows1252);
    EXPECT_EQ(CodePage::numbered(42), CodePage::kSymbol);
}

TEST(CodePage, OfOtherNumbersIsNotKnown) {
    for (const int number : {-1, 0, 1, 1200, 1259, 57002, 65000, 65002, 2147483647})
        EXPECT_EQ(CodePage::numbered(number), std::nullopt) << number;
}

TEST(CodePage, OfAFontFollowsFromItsCharset) {
    const std::pair<int, int> vectors[] = {
        {0, 1252},   {2, 42},     {77, 10000}, {128, 932},  {129, 949},  {134, 936},
        {136, 950},  {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256},
        {186, 1257}, {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850},
    };
    for (const auto& [charset, number] : vectors)
        EXPECT_EQ(CodePage::forCharset(charset), CodePage::numbered(number)) << charset;
    for (const int charset : {-1, 1, 3, 76, 300}) EXPECT_EQ(CodePage::forCharset(charset), std::nullopt) << charset;
}

TEST(CodePage, OfSymbolsHasTextForEveryByteOrTheReplacementCharacter) {
    const std::pair<const char*, const char*> vectors[] = {
        {"\x1F\t", "\x1F\t"}, {" !", " !"},       {"\"$", "\u2200\u2203"}, {"abg", "\u03B1\u03B2\u03B3"},
        {"\x7F", "\x7F"},     {"\x80", "\uFFFD"}, {"\x9F", "\uFFFD"},      {"\xA0", "\u20AC"},
        {"\xD4", "\u2122"},   {"\xE5", "\u2211"}, {"\xFE", "\u23AD"},      {"\xFF", "\uFFFD"},
    };
    for (const auto& [bytes, text] : vectors) EXPECT_EQ(decoded(CodePage::kSymbol, {bytes}), text);
}

TEST(CodePage, HoldsASCIIAsItIsUnlessItIsOfSymbols) {
    std::string ascii;
    for (char byte = 1; byte < 127; ++byte) ascii += byte;
    for (const auto& page : kPages) {
        if (page.number == 42) continue;
        EXPECT_EQ(decoded(pageNumbered(page.number), {ascii}), ascii) << page.number;
    }
}

TEST(CodePageDecoder, TakesBytesThatAreNoCharacterForTheReplacementCharacter) {
    EXPECT_EQ(decoded(pageNumbered(65001), {"a\xFF\xC0\x80z"}), "a\uFFFD\uFFFD\uFFFDz");
    EXPECT_EQ(decoded(pageNumbered(932), {"a\xFFz"}), "a\uFFFDz");
    EXPECT_EQ(decoded(pageNumbered(1253), {"a\xFFz"}), "a\uFFFDz");
}

TEST(CodePageDecoder, EndsAHalfCharacterWhereThePageChangesOrTheTextEnds) {
    CodePageDecoder decoder;
    std::string text;
    decoder.append(text, pageNumbered(932), "\x95");
    EXPECT_EQ(text, "");
    decoder.append(text, CodePage::kWindows1252, "\xE9");
    decoder.append(text, pageNumbered(65001), "\xE2\x82");
    decoder.finish(text);
    EXPECT_EQ(text, "\uFFFD\u00E9\uFFFD");
    decoder.finish(text);
    EXPECT_EQ(text, "\uFFFD\u00E9\uFFFD");
    decoder.append(text, pageNumbered(932), "\x93\xFA");
    decoder.finish(text);
    EXPECT_EQ(text, "\uFFFD\u00E9\uFFFD\u65E5");
}

TEST(CodePageDecoder, TakesCharactersInPiecesOfAnySize) {
    constexpr std::string_view kBytes = "a\\ \x30\x39\x40\x5C\x81\x82\x93\x94\x95\xA1\xB0\xC8\xD5\xDA\xE2\xE9\xFA\xFF";
    std::mt19937 random(1);
    for (const auto& page : kPages) {
        for (int i = 0; i < 500; ++i) {
            std::string whole;
            std::vector<std::string> pieces;
            for (auto count = random() % 6; count > 0; --count) {
                pieces.emplace_back();
                for (auto size = random() % 5; size > 0; --size) pieces.back() += kBytes[random() % kBytes.size()];
                whole += pieces.back();
            }
            const std::string text = decoded(pageNumbered(page.number), {whole});
            ASSERT_EQ(decoded(pageNumbered(page.number), pieces), text) << page.number;
            ASSERT_TRUE(Unicode::isValidUTF8(text)) << page.number;
        }
    }
}

TEST(CodePageDecoder, TakesCharactersAcrossTheBlocksThatItDecodesAtOnce) {
    for (std::size_t count = 505; count < 520; ++count) {
        std::string bytes = "\x82\xA0\x41";  // so that pairs begin at odd bytes
        std::string text = "\u3042A";
        for (std::size_t i = 0; i < count; ++i) {
            bytes += "\x95\x5C";
            text += "\u8868";
        }
        EXPECT_EQ(decoded(pageNumbered(932), {"\x95", "\x5C" + bytes}), "\u8868" + text);
    }
}

}  // namespace
}  // namespace ravlin
