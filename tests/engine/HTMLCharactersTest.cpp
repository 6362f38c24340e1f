// Every name in every form of a tag, and every kind of character in every place where its kind matters (as a letter in
// some case, as white space, as part of a word): the scanners treat them as ICU does.

#include "Engine/HTMLTransforms.h"
#include "Engine/MarkdownTransforms.h"
#include "tests/engine/oracles/Oracle.h"
#include "tests/engine/oracles/PatternOracle.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <tuple>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

void expectLikePatterns(const std::string& html) {
    EXPECT_EQ(TextTransforms::stripHTML(html), PatternOracle::stripHTML(html)) << html;
    EXPECT_EQ(TextTransforms::htmlToMarkdown(html), PatternOracle::htmlToMarkdown(html)) << html;
}

constexpr auto kNames = std::to_array<std::string_view>(
    {"script", "style", "br",     "p", "div", "li", "tr",   "h1", "h2", "h3",         "h4",
     "h5",     "h6",    "strong", "b", "em",  "i",  "code", "ul", "ol", "blockquote", "a"});

/// `form` with every "N" in it replaced by `name`.
std::string withName(std::string_view form, std::string_view name) {
    std::string result;
    for (const char character : form) result += character == 'N' ? std::string(name) : std::string(1, character);
    return result;
}

TEST(HTMLNames, AreFoundInEveryFormOfATag) {
    const std::string_view opening[] = {"<N>", "<N x>", "< N\n>", "<Nx>", "<N-x>", "<N/>", "<N href='u'>", "<N\u00AD>"};
    const std::string_view inside[] = {"", "<N>", "<N", "< /N x>", "<Nx>", "</Nx>", "</N1>", "< N\u00E9>", "</ N>"};
    const std::string_view closing[] = {"</N>", "< /N >", "</N x>", "</ N>", "</N/>", "</Nx>", "<N>", "</N"};
    for (const std::string_view name : kNames)
        for (const std::string_view first : opening)
            for (const std::string_view second : inside)
                for (const std::string_view third : closing)
                    expectLikePatterns("s" + withName(first, name) + "t" + withName(second, name) + "u" +
                                       withName(third, name) + "v");
}

bool hasASCIILetter(const icu::UnicodeString& text) {
    for (std::int32_t i = 0; i < text.length(); ++i)
        if ((text[i] >= u'a' && text[i] <= u'z') || (text[i] >= u'A' && text[i] <= u'Z')) return true;
    return false;
}

/// All characters outside ASCII that some case mapping turns into something with an ASCII letter in it.
std::vector<std::string> relativesOfASCIILetters() {
    std::vector<std::string> found;
    for (UChar32 scalar = 0x80; scalar <= 0x10FFFF; ++scalar) {
        const icu::UnicodeString text(scalar);
        icu::UnicodeString folded(text);
        icu::UnicodeString lower(text);
        icu::UnicodeString upper(text);
        if (hasASCIILetter(folded.foldCase()) || hasASCIILetter(lower.toLower(icu::Locale::getRoot())) ||
            hasASCIILetter(upper.toUpper(icu::Locale::getRoot())))
            found.push_back(Oracle::utf8(static_cast<char32_t>(scalar)));
    }
    return found;
}

/// `name` with `relative` in every place, and in place of every letter and every two letters.
std::vector<std::string> misspelt(std::string_view name, std::string_view relative) {
    std::vector<std::string> found;
    for (std::size_t at = 0; at < name.size(); ++at)
        for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{2}})
            found.push_back(std::string(name.substr(0, at)) + std::string(relative) +
                            std::string(name.substr(std::min(at + size, name.size()))));
    return found;
}

TEST(HTMLCharacters, StandForLettersOfNamesAsTheyDoForICU) {
    const std::vector<std::string> relatives = relativesOfASCIILetters();
    EXPECT_GE(relatives.size(), 20U);
    for (const std::string& relative : relatives) {
        for (const std::string_view name : kNames)
            for (const std::string& other : misspelt(name, relative)) {
                expectLikePatterns("<" + other + ">x" + withName("</N>y</", name) + other + ">z");
                expectLikePatterns(withName("<N>x<", name) + other + ">y</" + other + withName(">z</N>", name));
            }
        for (const std::string& other : misspelt("href", relative)) expectLikePatterns("<a " + other + "='u'>x</a>");
    }
}

/// The first and the last of every run of code points that the rules do not distinguish, and all below U+0100.
std::vector<std::string> charactersOfEveryKind() {
    using Kind = std::tuple<int, bool, bool, bool>;
    const auto kindOf = [](UChar32 scalar) {
        return Kind(u_charType(scalar), u_isUWhiteSpace(scalar) != 0, u_isUAlphabetic(scalar) != 0,
                    u_hasBinaryProperty(scalar, UCHAR_GRAPHEME_EXTEND) != 0);
    };
    std::vector<std::string> found;
    for (UChar32 scalar = 1; scalar < 0x10FFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
        const Kind kind = kindOf(scalar);
        if (scalar >= 0x100 && kind == kindOf(scalar - 1) && kind == kindOf(scalar + 1)) continue;
        found.push_back(Oracle::utf8(static_cast<char32_t>(scalar)));
    }
    return found;
}

TEST(HTMLCharacters, AreWhiteSpaceAndEndNamesAsTheyDoForICU) {
    const std::vector<std::string> characters = charactersOfEveryKind();
    EXPECT_GT(characters.size(), 2'000U);
    for (const std::string& each : characters) {
        expectLikePatterns("<" + each + "b" + each + ">x</b>" + each);
        expectLikePatterns("<i>x<i" + each + "</i>&lt;" + each);
        expectLikePatterns("<a" + each + "href" + each + "=" + each + "'u'>x</a" + each + ">");
    }
}

TEST(HTMLCharacters, AreWhatICUTakesThemForInMarkdown) {
    for (const std::string& each : charactersOfEveryKind())
        for (const std::string& text :
             {"_x_" + each, each + "_x_ " + each + "*x*", "[x](y" + each + "z)", "#" + each + "x", "# x" + each,
              "# x" + each + "y", each + ". x", "1" + each + ") x", "-" + each, ">" + each + "x" + each, each})
            EXPECT_EQ(TextTransforms::markdownToHTML(text), PatternOracle::markdownToHTML(text)) << text;
}

}  // namespace
}  // namespace ravlin
