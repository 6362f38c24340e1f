#include "Engine/Support/RichText/RichText.h"
#include "tests/engine/texts/HostileTexts.h"

#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using namespace std::string_literals;
using RichText::plainText;

/// A document, from its beginning.
struct Vector {
    std::string rtf;
    std::optional<std::string> text;
};

/// The inside of a document.
struct Body {
    std::string rtf;
    std::string text;
};

template <std::size_t kCount>
void check(const Body (&bodies)[kCount]) {
    for (const Body& body : bodies) EXPECT_EQ(plainText("{\\rtf1 " + body.rtf + "}"), body.text) << body.rtf;
}

TEST(RichText, BeginsWithItsSignature) {
    const Vector vectors[] = {
        {"{\\rtf1 a}", "a"},
        {"{\\rtf a}", "a"},
        {"{\\rtf\\ansi a}", "a"},
        {"{\\rtf}", ""},
        {"{\\rtf", ""},
        {"{\\rtf1", ""},
        {"{\\rtf-1{a}}", "a"},
        // Some programs put something before it.
        {"\xEF\xBB\xBF{\\rtf1 a}", "a"},
        {" \t\r\n{\\rtf1 a}", "a"},
        {"\0\0{\\rtf1 a}"s, "a"},
        {"\xEF\xBB\xBF \n{\\rtf1 a}", "a"},
        // But this is something else.
        {"", std::nullopt},
        {"\0"s, std::nullopt},
        {"a", std::nullopt},
        {"{", std::nullopt},
        {"{\\rt", std::nullopt},
        {"{\\rtfx a}", std::nullopt},
        {"{\\rtfX a}", std::nullopt},
        {"{\\RTF1 a}", std::nullopt},
        {"{ \\rtf1 a}", std::nullopt},
        {"{\\urtf1 a}", std::nullopt},
        {"\\rtf1 a", std::nullopt},
        {"a{\\rtf1 a}", std::nullopt},
        {" \xEF\xBB\xBF{\\rtf1 a}", std::nullopt},
        {"<p>{\\rtf1 a}</p>", std::nullopt},
    };
    for (const Vector& vector : vectors) EXPECT_EQ(plainText(vector.rtf), vector.text) << vector.rtf;
}

TEST(RichText, EndsWithItsFirstGroupOrWithTheData) {
    const Vector vectors[] = {
        {"{\\rtf1 a}b{c}\\par", "a"}, {"{\\rtf1 a}}}", "a"},    {"{\\rtf1 a}\0\0"s, "a"},
        {"{\\rtf1 {a}{b}c", "abc"},   {"{\\rtf1 a\\", "a"},     {"{\\rtf1 a\\'", "a"},
        {"{\\rtf1 a\\'4", "a4"},      {"{\\rtf1 a\\pa", "a"},   {"{\\rtf1 a\\u8364", "a\u20AC"},
        {"{\\rtf1 a{\\pict 00", "a"}, {"{\\rtf1 a{\\v b", "a"},
    };
    for (const Vector& vector : vectors) EXPECT_EQ(plainText(vector.rtf), vector.text) << vector.rtf;
}

TEST(RichText, LineEndsAndNULsAreNoText) {
    check({
        {"a\r\nb\nc\rd", "abcd"},
        {"a\0b"s, "ab"},
        {"a\\'00b\\u0?c\\u?d\\u", "abcd"},
        {"a \n b", "a  b"},
        {"\n\n", ""},
    });
}

TEST(RichText, ControlWordsEndWithTheirNumberAndOneSpace) {
    check({
        {"\\b a", "a"},
        {"\\b  a", " a"},
        {"\\b1a", "a"},
        {"\\b-12 a", "a"},
        {"\\b-a", "-a"},
        {"\\b- a", "- a"},
        {"\\b1-a", "-a"},
        {"\\b1 2", "2"},
        {"\\b\\i0\\ul a", "a"},
        {"\\b\na", "a"},
        {"\\unknownword123456789012345678901234567890 a", "a"},
        {"\\B\\Par\\PAR a", "a"},
        {"\\par1 a", "\na"},
    });
}

TEST(RichText, ParagraphsAndLinesEndWithALineFeed) {
    check({
        {"a\\par b", "a\nb"},
        {"a\\par\\par b", "a\n\nb"},
        {"a\\\nb", "a\nb"},
        {"a\\\r\nb", "a\nb"},
        {"a\\line b", "a\nb"},
        {"a\\sect b", "a\nb"},
        {"a\\pard b\\sectd c", "abc"},
        {"a\\page b", "a\fb"},
        {"a\\column b", "a\fb"},
    });
}

TEST(RichText, CharactersHaveNames) {
    check({
        {"a\\tab b", "a\tb"},
        {"a\\\tb", "a\tb"},
        {"a\tb", "a\tb"},
        {"a\\~b\\_c\\-d", "a\u00A0b\u2011c\u00ADd"},
        {"\\emdash\\endash", "\u2014\u2013"},
        {"\\emspace\\enspace\\qmspace", "\u2003\u2002\u2005"},
        {"\\bullet\\lquote\\rquote\\ldblquote\\rdblquote", "\u2022\u2018\u2019\u201C\u201D"},
        {"\\zwj\\zwnj\\zwbo\\zwnbo", "\u200D\u200C\u200B\u2060"},
        {"\\ltrmark\\rtlmark", "\u200E\u200F"},
        {"\\{\\}\\\\", "{}\\"},
        {"a\\|b\\:c\\;d\\?e", "abcde"},
    });
}

TEST(RichText, BytesAreOfTheDocumentsCodePage) {
    const Vector vectors[] = {
        {"{\\rtf1 caf\\'e9 \\'80}", "caf\u00E9 \u20AC"},
        {"{\\rtf1 caf\\'E9}", "caf\u00E9"},
        {"{\\rtf1 caf\xE9}", "caf\u00E9"},
        {"{\\rtf1\\ansi\\'e9}", "\u00E9"},
        {"{\\rtf1\\ansi\\ansicpg1251\\'cf\\'f0\\'e8}", "\u041F\u0440\u0438"},
        {"{\\rtf1\\ansicpg1251 \xCF\xF0\xE8}", "\u041F\u0440\u0438"},
        {"{\\rtf1\\ansicpg1253\\'e1}", "\u03B1"},
        {"{\\rtf1\\ansicpg437\\'e1}", "\u00DF"},
        {"{\\rtf1\\ansicpg10007\\'80}", "\u0410"},
        {"{\\rtf1\\mac\\'8e}", "\u00E9"},
        {"{\\rtf1\\pc\\'82}", "\u00E9"},
        {"{\\rtf1\\pca\\'9b}", "\u00F8"},
        // An unknown one leaves it as it is.
        {"{\\rtf1\\ansicpg0\\'e9}", "\u00E9"},
        {"{\\rtf1\\ansicpg-5\\'e9}", "\u00E9"},
        {"{\\rtf1\\ansicpg99999999999\\'e9}", "\u00E9"},
        {"{\\rtf1\\ansicpg1251\\ansicpg7\\'cf}", "\u041F"},
        // UTF-8, and what is not.
        {"{\\rtf1\\ansicpg65001\\'e2\\'82\\'ac}", "\u20AC"},
        {"{\\rtf1\\ansicpg65001 \u20AC\U0001F600}", "\u20AC\U0001F600"},
        {"{\\rtf1\\ansicpg65001\\'e2\\'82 a}", "\uFFFD a"},
        {"{\\rtf1\\ansicpg65001\\'e2\\'82\\par}", "\uFFFD\n"},
        {"{\\rtf1\\ansicpg65001\\'e2\\'82}", "\uFFFD"},
        {"{\\rtf1\\ansicpg54936\\'94\\'39\\'da\\'33}", "\U0001F4A9"},
    };
    for (const Vector& vector : vectors) EXPECT_EQ(plainText(vector.rtf), vector.text) << vector.rtf;
}

TEST(RichText, HexadecimalNeedsTwoDigits) {
    check({
        {"a\\'41b", "aAb"},
        {"a\\'4a\\'4B", "aJK"},
        {"a\\'zzb", "azzb"},
        {"a\\'4gb", "a4gb"},
        {"a\\'", "a"},
        {"a\\'\\par b", "a\nb"},
    });
}

TEST(RichText, EachFontCharsetHasItsCodePage) {
    const struct {
        int charset;
        const char* bytes;
        const char* text;
    } vectors[] = {
        {0, "\\'e9", "\u00E9"},
        {1, "\\'e9", "\u0439"},  // as the document
        {2, "\\'b7", "\u2022"},
        {77, "\\'8e", "\u00E9"},
        {78, "\\'93\\'fa", "\u65E5"},
        {128, "\\'93\\'fa\\'96\\'7b", "\u65E5\u672C"},
        {129, "\\'c7\\'d1", "\uD55C"},
        {134, "\\'d6\\'d0", "\u4E2D"},
        {136, "\\'a4\\'a4", "\u4E2D"},
        {161, "\\'e1", "\u03B1"},
        {162, "\\'fd", "\u0131"},
        {163, "\\'fe", "\u20AB"},
        {177, "\\'f9\\'ec", "\u05E9\u05DC"},
        {178, "\\'c7", "\u0627"},
        {186, "\\'e0", "\u0105"},
        {204, "\\'cf", "\u041F"},
        {222, "\\'a1", "\u0E01"},
        {238, "\\'b3", "\u0142"},
        {254, "\\'e1", "\u00DF"},
        {255, "\\'9b", "\u00F8"},
        {-1, "\\'e9", "\u0439"},
        {3, "\\'e9", "\u0439"},
        {999, "\\'e9", "\u0439"},
    };
    for (const auto& vector : vectors) {
        const std::string rtf = "{\\rtf1\\ansicpg1251{\\fonttbl{\\f7\\fnil\\fcharset" + std::to_string(vector.charset) +
                                " Font;}}\\f7 a" + vector.bytes + "}";
        const std::string letter = vector.charset == 2 ? "\u03B1" : "a";
        EXPECT_EQ(plainText(rtf), letter + vector.text) << rtf;
    }
}

constexpr std::string_view kFonts =
    "\\deff1{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset204 B;}{\\f2\\fcharset161 C;}{\\f3\\fcharset2 Symbol;}"
    "{\\f4\\fcharset128 D;}{\\f32767\\fcharset238 E;}}";

TEST(RichText, FontsHoldUntilTheirGroupEnds) {
    const Body bodies[] = {
        {"\\'e1", "\u0431"},  // the default font's
        {"\\f0\\'e1", "\u00E1"},
        {"\\f2\\'e1", "\u03B1"},
        {"{\\f2\\'e1}\\'e1", "\u03B1\u0431"},
        {"{\\f2{\\f0\\'e1}\\'e1}\\'e1", "\u00E1\u03B1\u0431"},
        {"{{{\\f2}\\'e1}}", "\u0431"},
        {"\\f2{\\'e1\\plain\\'e1}\\'e1", "\u03B1\u0431\u03B1"},
        {"\\f32767\\'b3", "\u0142"},
        // Fonts missing from the table use the document's code page.
        {"\\f9\\'e1", "\u00E1"},
        {"\\f32768\\'e1\\f65536\\'e1\\f-7\\'e1\\f99999999999\\'e1", "\u00E1\u00E1\u00E1\u00E1"},
    };
    for (const Body& body : bodies)
        EXPECT_EQ(plainText("{\\rtf1" + std::string(kFonts) + body.rtf + "}"), body.text) << body.rtf;
}

TEST(RichText, FontTablesComeInSeveralForms) {
    check({
        {"{\\fonttbl\\f0\\fcharset0 A;\\f1\\fcharset204 B;}\\f1\\'e1", "\u0431"},
        {"{\\fonttbl{\\f1\\fnil\\fcharset204{\\*\\fname B;}B Cyr;}}\\f1\\'e1", "\u0431"},
        {"{\\fonttbl{\\f1 B;}}\\f1\\'e1", "\u00E1"},
        {"{\\fonttbl{\\f1\\cpg1251 B;}}\\f1\\'e1", "\u0431"},
        {"{\\fonttbl{\\f1\\cpg1251\\fcharset0 B;}}\\f1\\'e1", "\u0431"},
        {"{\\fonttbl{\\f1\\fcharset0\\cpg1251 B;}}\\f1\\'e1", "\u0431"},
        {"{\\fonttbl{\\f1\\cpg3\\fcharset204 B;}}\\f1\\'e1", "\u0431"},
        {"{\\fonttbl{\\f1\\cpg1251 B;}{\\f2\\fcharset161 C;}}\\f2\\'e1", "\u03B1"},
        // Described twice: the last description counts.
        {"{\\fonttbl{\\f1\\fcharset204 B;}{\\f1 B;}}\\f1\\'e1", "\u00E1"},
        // Names are not text, however they are written.
        {"{\\fonttbl{\\f1\\fcharset128 \\'82\\'6c\\u65325 \\tab\\~;}}a", "a"},
        {"{\\fonttbl\\fcharset204 no number;{\\f-1\\fcharset204 B;}{\\f32768\\fcharset204 B;}}\\f0\\'e1", "\u00E1"},
    });
}

TEST(RichText, CharactersOfTwoBytesMayBeWrittenInAnyMixture) {
    const Body bodies[] = {
        {"\\f4\\'93\\'fa", "\u65E5"},
        {"\\f4 \x93\xFA", "\u65E5"},
        {"\\f4 \x93\\'fa", "\u65E5"},
        {"\\f4\\'83A", "\u30A2"},      // the second byte is ASCII
        {"\\f4\\'95\\'5c", "\u8868"},  // ... and a backslash
        {"\\f4\\'95\\\\", "\u8868"},
        {"\\f4\\'83\\{", "\u30DC"},
        {"\\f4\\'93\n\\'fa", "\u65E5"},
        {"\\f4\\'93\\b\\'fa", "\u65E5"},  // formatting between them does no harm
        {"\\f4 a\\'93\\'fa b", "a\u65E5 b"},
        {"\\f4\\'93", "\uFFFD"},
        {"\\f4\\'93\\par", "\uFFFD\n"},
        {"\\f4\\'93\\f0 a", "\uFFFDa"},
        {"\\f4\\'93\\f0\\'fa", "\uFFFD\u00FA"},
    };
    for (const Body& body : bodies)
        EXPECT_EQ(plainText("{\\rtf1" + std::string(kFonts) + body.rtf + "}"), body.text) << body.rtf;
}

TEST(RichText, SymbolFontsHaveCharactersOfTheirOwn) {
    const Body bodies[] = {
        {"\\f3 abg\\'b7\\'a5\\'e5 \\'de", "\u03B1\u03B2\u03B3\u2022\u221E\u2211 \u21D2"},
        {"\\f3\\u-3913\\'b7", "\u2022"},
        {"\\f3\\u61623 \\'b7", "\u2022"},
        {"\\f3\\u-3999?", "\u03B1"},
        {"\\f3\\u8226\\'b7", "\u2022"},
        {"\\f3\\'7f\\'85\\'ff", "\u007F\uFFFD\uFFFD"},
        {"\\f0\\u-3913\\'b7", "\uF0B7"},
        {"\\f3\\tab\\{\\~", "\t{\u00A0"},
    };
    for (const Body& body : bodies)
        EXPECT_EQ(plainText("{\\rtf1" + std::string(kFonts) + body.rtf + "}"), body.text) << body.rtf;
}

TEST(RichText, UnicodeCharactersAreNumbers) {
    check({
        {"\\u233?", "\u00E9"},
        {"\\u8364 ?", "\u20AC"},
        {"\\u-10179?\\u-8704?", "\U0001F600"},
        {"\\u55357?\\u56832?", "\U0001F600"},
        {"\\uc0\\u55357\\u56832", "\U0001F600"},
        {"\\uc0\\u55357{\\b}\\u56832", "\U0001F600"},
        {"\\uc0\\u55357 \\uc1\\u56832?", "\U0001F600"},
        {"\\uc0\\u128512", "\U0001F600"},
        {"\\u65535?\\u-1?", "\uFFFF\uFFFF"},
        // Halves of characters, and numbers that are not characters.
        {"\\u-10179?a", "\uFFFDa"},
        {"\\u-10179?", "\uFFFD"},
        {"\\u-10179?\\par", "\uFFFD\n"},
        {"\\u-10179?\\u-10179?\\u-8704?", "\uFFFD\U0001F600"},
        {"\\u-8704?a", "\uFFFDa"},
        {"\\u-10179?\\u97?", "\uFFFDa"},
        {"\\u1114112?\\u-65537?\\u99999999999?\\u-99999999999?", "\uFFFD\uFFFD\uFFFD\uFFFD"},
    });
}

TEST(RichText, UnicodeCharactersAreFollowedByAFallback) {
    check({
        {"\\u8364?a", "\u20ACa"},
        {"\\u8364\\'80a", "\u20ACa"},
        {"\\u8364\x80z", "\u20ACz"},
        {"\\u8364\\~a", "\u20ACa"},
        {"\\u8217\\rquote a", "\u2019a"},
        {"\\u8364\\{a", "\u20ACa"},
        {"\\u8364\n?a", "\u20ACa"},
        {"\\u8364\\bin2 \\}?a", "\u20AC?a"},
        {"\\uc0\\u8364?a", "\u20AC?a"},
        {"\\uc2\\u8364?xa", "\u20ACa"},
        {"\\uc2\\u8364\\'a2\\'e6a", "\u20ACa"},
        {"\\uc3\\u8364\\'a2?\\b a", "\u20ACa"},
        {"\\uc5\\u8364 ab\\'20cde", "\u20ACe"},
        {"\\uc-5\\u8364?a", "\u20AC?a"},
        {"\\uc99999999999\\u8364?a{b}", "\u20ACb"},
        // It ends where a group begins or ends.
        {"{\\u8364}a", "\u20ACa"},
        {"\\u8364{a}b", "\u20ACab"},
        {"\\uc3{\\u8364 x}abc", "\u20ACabc"},
        // Its size holds until the group ends.
        {"{\\uc0\\u8364?}\\u8364?", "\u20AC?\u20AC"},
        {"\\uc2{\\u8364??{\\uc0\\u8364}}\\u8364??a", "\u20AC\u20AC\u20ACa"},
        {"\\uc0\\plain\\u8364?", "\u20AC?"},
        // A Unicode character is no fallback of another.
        {"\\u8364\\u8364?a", "\u20AC\u20ACa"},
        {"\\uc2\\u8364?\\u8364??a", "\u20AC\u20ACa"},
    });
}

TEST(RichText, WhatIsNotTheDocumentsTextIsSkipped) {
    std::istringstream names(
        "annotation background bkmkend bkmkstart colortbl datastore fldinst filetbl fonttbl footer "
        "footerf footerl footerr footnote formfield generator header headerf headerl headerr info "
        "listtable listoverridetable mmathPr nonesttables nonshppict objclass objdata objname panose "
        "pict pn pnseclvl revtbl shprslt sn stylesheet sv tc themedata xe *\\unknown *\\pict *\\v");
    for (std::string name; names >> name;) {
        const std::string group = "{\\" + name + "1 x\\par{y\\'e9\\u8364?\\}}z{\\*\\ud w}\\upr}";
        EXPECT_EQ(plainText("{\\rtf1 a" + group + "b}"), "ab") << name;
        EXPECT_EQ(plainText("{\\rtf1 a{before " + group + "}b}"), "abefore b") << name;
        EXPECT_EQ(plainText("{\\rtf1 a{before \\" + name + " x{y}z}b}"), "abefore b") << name;
    }
}

TEST(RichText, OtherGroupsAreText) {
    for (const char* const name :
         {"fldrslt", "result",     "listtext",   "pntext",      "shptxt",    "unknown",  "pard",
          "*\\ud",   "*\\shpinst", "*\\fldrslt", "*\\listtext", "*\\shptxt", "field",    "shp",
          "object",  "rtlch",      "Info",       "PICT",        "footnot",   "footnotes"})
        EXPECT_EQ(plainText("{\\rtf1 a{\\"s + name + " b}c}"), "abc") << name;
}

TEST(RichText, TheStarBelongsToTheWordBehindIt) {
    check({
        {"{\\* \\unknown a}b", " ab"},  // a space is text, and the word is no longer optional
        {"{\\*a}b", "ab"},
        {"{\\*\\~\\unknown a}b", "\u00A0ab"},
        {"{\\*{\\unknown a}}b", "ab"},
        {"{\\*}{\\unknown a}b", "ab"},
        {"{\\*\n\\unknown a}b", "b"},
        {"{\\*\\*\\unknown a}b", "b"},
    });
}

TEST(RichText, ObjectsFieldsAndShapesShowTheirResult) {
    check({
        {"{\\field{\\*\\fldinst HYPERLINK \"https://example.org/\"}{\\fldrslt{\\ul a link}}}.", "a link."},
        {"{\\field{\\*\\fldinst{ HYPERLINK \"x\"}}{\\*\\fldrslt{a link}}}.", "a link."},
        {"{\\field\\fldedit{\\fldinst PAGE}{\\fldrslt 7}}", "7"},
        {"{\\object\\objemb{\\*\\objclass X}{\\*\\objdata 0011}{\\result{\\pard a\\par}}}", "a\n"},
        {"{\\shp{\\*\\shpinst\\shpleft1{\\sp{\\sn pWrap}{\\sv 1}}{\\shptxt a\\par}}{\\shprslt{\\*\\do b}}}", "a\n"},
        {"{\\*\\shppict{\\pict\\pngblip 89504e47}}{\\nonshppict{\\pict 00}}a", "a"},
        {"{\\listtext\\pard\\plain\\f3 1.\\tab}item\\par", "1.\titem\n"},
        {"{\\pntext\\f3\\'b7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}item\\par", "\u00B7\titem\n"},
        {"{\\*\\bkmkstart a}b{\\*\\bkmkend a}", "b"},
    });
}

TEST(RichText, OfTwoVersionsTheUnicodeOneCounts) {
    check({
        {"{\\upr{ansi}{\\*\\ud{uni\\u8364?}}}a", "uni\u20ACa"},
        {"{\\upr{ansi {nested} }{\\*\\ud uni}}", "uni"},
        {"{\\upr}{a}", "a"},
        {"{\\upr{ansi}}{a}", "a"},
        {"{\\upr a{ansi}b}", "ab"},
    });
}

TEST(RichText, HiddenAndDeletedTextIsNot) {
    check({
        {"a{\\v b}c", "ac"},
        {"a\\v b\\v0 c", "ac"},
        {"a\\v1 b\\v0{c}", "ac"},
        {"a{\\v b{\\v0 c}d\\par\\u8364?\\'e9}e", "ace"},
        {"a\\v b\\plain c", "ac"},
        {"a{\\deleted b}c\\deleted d\\deleted0 e", "ace"},
        {"a{\\deleted\\v b\\v0 c}d", "ad"},
        {"a\\deleted b\\plain c", "ac"},
    });
}

TEST(RichText, TableCellsEndLikeParagraphs) {
    check({
        {"\\trowd\\cellx1\\cellx2\\intbl a\\cell b\\cell\\row\\trowd c\\cell d\\cell\\row\\pard e", "a\nb\nc\nd\ne"},
        {"\\intbl a\\par b\\cell\\row", "a\nb\n"},
        {"a\\nestcell b\\nestcell{\\*\\nesttableprops\\trowd\\cellx1\\nestrow}{\\nonesttables\\par}c\\cell\\row",
         "a\nb\nc\n"},
        // AbiWord ends the table twice.
        {"a\\par{\\trowd b\\cell{\\*\\abiendcell}\\row}{\\*\\abiendtable}\\par c", "a\nb\nc"},
        {"{b\\cell\\row}{\\*\\abiendtable}{\\*\\abitableprops x}\\par{c\\cell\\row}{\\*\\abiendtable}\\par", "b\nc\n"},
        {"b\\cell{\\*\\abiendtable}\\par\\par c", "b\n\nc"},
        {"b\\cell{\\*\\abiendtable}c\\par d", "b\nc\nd"},
    });
}

TEST(RichText, BinaryDataIsNot) {
    check({
        {"a{\\pict\\bin3 }{\\}b", "ab"},
        {"a\\bin3 }{\\b", "ab"},
        {"a\\bin4 }{\\\0b"s, "ab"},
        {"a\\bin0 b", "ab"},
        {"a\\bin-4 b", "ab"},
        {"a\\bin b", "ab"},
        {"a\\binary1 b", "ab"},
        {"a\\bin99999999999 b}", "a"},
    });
}

TEST(RichText, ManyGroupsMayChangeWhatHolds) {
    const auto nested = [](std::size_t count) {
        return "{\\rtf1 " + tests::repeated("{\\v0", 4 * count) + "{\\v b}c" + std::string(count, '}') + "}";
    };
    EXPECT_EQ(plainText(nested(RichText::kMaxNesting - 1)), "c");
    EXPECT_EQ(plainText(nested(RichText::kMaxNesting)), "");
    // Groups that change nothing do not count, nor do those that are skipped.
    constexpr std::size_t kMany = 8 * RichText::kMaxNesting;
    EXPECT_EQ(plainText("{\\rtf1 " + std::string(kMany, '{') + "{\\v b}c"), "c");
    EXPECT_EQ(
        plainText("{\\rtf1 {\\pict" + tests::repeated("{\\v0", 4 * kMany) + std::string(kMany, '}') + "}{\\v b}c"),
        "c");
}

TEST(RichText, LongRunsOfBytesAreConvertedWhole) {
    // Longer than any buffer, and shifted so that its ends fall into characters.
    for (std::size_t shift = 0; shift < 5; ++shift) {
        const std::string start(shift, 'a');
        std::string rtf = "{\\rtf1\\ansicpg65001\\'c3\\'a9" + start;
        std::string text = "\u00E9" + start;
        for (int i = 0; i < 3000; ++i) {
            rtf += "\u20ACx\U0001F600";
            text += "\u20ACx\U0001F600";
        }
        EXPECT_EQ(plainText(rtf), text) << shift;
    }
}

}  // namespace
}  // namespace ravlin
