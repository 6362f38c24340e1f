#include "Views/GroupedTransforms.h"

#include <unicode/uloc.h>

#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> identifiers(const std::vector<TransformGroup>& groups) {
    std::vector<std::string> all;
    for (const TransformGroup& group : groups)
        for (const TextTransform transform : group.items) all.emplace_back(transform.id());
    return all;
}

std::vector<std::string> categories(const std::vector<TransformGroup>& groups) {
    std::vector<std::string> all;
    for (const TransformGroup& group : groups) all.emplace_back(group.category.title());
    return all;
}

std::vector<std::string> found(std::string_view query) {
    return identifiers(groupedTransforms(query));
}

TEST(GroupedTransforms, AnEmptyQueryListsAllSixCategoriesInMenuOrder) {
    EXPECT_THAT(categories(groupedTransforms("")),
                ElementsAre("Clean", "Convert", "Case", "Lines", "Spacing", "Encode / Dev"));
    std::map<std::string_view, std::size_t> sizes;
    for (const TransformGroup& group : groupedTransforms("")) sizes[group.category.title()] = group.items.size();
    std::map<std::string_view, std::size_t> expected;
    for (const TextTransform transform : TextTransform::allCases()) ++expected[transform.category().title()];
    EXPECT_EQ(sizes, expected);
}

TEST(GroupedTransforms, AnEmptyQueryListsAllTransformsInCatalogueOrder) {
    std::vector<std::string> catalogue;
    for (const TextTransform transform : TextTransform::allCases()) catalogue.emplace_back(transform.id());
    EXPECT_EQ(found(""), catalogue);
}

TEST(GroupedTransforms, EveryTransformIsListedUnderItsOwnCategory) {
    for (const TransformGroup& group : groupedTransforms(""))
        for (const TextTransform transform : group.items) EXPECT_EQ(transform.category(), group.category);
}

TEST(GroupedTransforms, BlanksAloneFilterNothing) {
    for (const char* const blanks : {" ", "   ", "\t", " \t "}) EXPECT_EQ(found(blanks), found(""));
}

TEST(GroupedTransforms, BlanksAroundTheQueryAndItsLetterCaseDoNotCount) {
    EXPECT_THAT(found("json"), ElementsAre("jsonPretty", "jsonMinify"));
    for (const char* const query : {"JSON", "  JSON ", "Json", "\tjson\t"}) EXPECT_EQ(found(query), found("json"));
}

TEST(GroupedTransforms, TheUsersLanguageDoesNotCount) {
    UErrorCode status = U_ZERO_ERROR;
    const std::string before = uloc_getDefault();
    uloc_setDefault("tr_TR", &status);  // where "I" is a different letter from "i"
    EXPECT_THAT(found("TITLE"), ElementsAre("titleCase"));
    uloc_setDefault(before.c_str(), &status);
}

TEST(GroupedTransforms, LineBreaksAroundTheQueryCount) {
    EXPECT_THAT(found("json\n"), IsEmpty());
}

TEST(GroupedTransforms, BlanksInsideTheQueryCount) {
    EXPECT_THAT(found("json pretty"), ElementsAre("jsonPretty"));
    EXPECT_THAT(found("json  pretty"), IsEmpty());
}

TEST(GroupedTransforms, SubtitlesAreSearchedToo) {
    EXPECT_THAT(found("fbclid"), ElementsAre("stripTracking"));
    EXPECT_THAT(found("percent-encode"), ElementsAre("urlEncode", "urlDecode"));
    EXPECT_THAT(found("\\n \\t"), ElementsAre("backslashEscape", "backslashUnescape"));
}

TEST(GroupedTransforms, IdentifiersAndCategoryTitlesAreNotSearched) {
    EXPECT_THAT(found("stripTracking"), IsEmpty());
    EXPECT_THAT(found("Encode / Dev"), IsEmpty());
    EXPECT_THAT(found("/ dev"), IsEmpty());
}

TEST(GroupedTransforms, ASearchFindsTypographicCharacters) {
    EXPECT_THAT(found("→"), ElementsAre("stripFormatting", "stripHTML", "htmlToMarkdown", "markdownToHTML",
                                        "sortLinesAsc", "sortLinesDesc", "straightenQuotes", "smartQuotes",
                                        "tabsToSpaces", "spacesToTabs", "normalizeDashes", "hexEncode", "hexDecode"));
    EXPECT_THAT(found("a→z"), ElementsAre("sortLinesAsc"));
    EXPECT_THAT(found("“smart”"), ElementsAre("straightenQuotes", "smartQuotes"));
}

TEST(GroupedTransforms, CategoriesWithoutAMatchDisappearAndTheOthersKeepTheirOrder) {
    EXPECT_THAT(categories(groupedTransforms("html")), ElementsAre("Clean", "Convert", "Encode / Dev"));
    EXPECT_THAT(categories(groupedTransforms("quote")), ElementsAre("Lines", "Spacing"));
}

TEST(GroupedTransforms, NoMatchIsNoGroup) {
    for (const char* const query : {"xyz", "  xyz ", "jsonn", "é", "\xF0\x9F\x92\xA9"})
        EXPECT_THAT(groupedTransforms(query), IsEmpty()) << query;
}

TEST(GroupedTransforms, CanonicallyEquivalentSpellingsMatchEachOther) {
    // U+212A KELVIN SIGN is canonically the letter K; U+FF2B FULLWIDTH LATIN CAPITAL LETTER K is not.
    EXPECT_EQ(found("\u212Aebab"), found("kebab"));
    EXPECT_THAT(found("kebab"), ElementsAre("kebabCase", "slugify"));
    EXPECT_THAT(found("\uFF2Bebab"), IsEmpty());
}

TEST(GroupedTransforms, EveryTransformIsFoundByItsTitleAndByItsSubtitle) {
    for (const TextTransform transform : TextTransform::allCases()) {
        EXPECT_THAT(found(transform.title()), testing::Contains(std::string(transform.id())));
        EXPECT_THAT(found(transform.subtitle()), testing::Contains(std::string(transform.id())));
    }
}

}  // namespace
}  // namespace ravlin
