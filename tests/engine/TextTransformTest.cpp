#include "Engine/TextTransform.h"

#include <map>
#include <set>
#include <type_traits>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(TextTransform, ThereAreFiftyFourInCatalogueOrder) {
    ASSERT_EQ(TextTransform::allCases().size(), 54U);
    int position = 0;
    for (const TextTransform transform : TextTransform::allCases()) EXPECT_EQ(transform, position++);
    EXPECT_EQ(TextTransform::allCases().front(), TextTransform::stripTracking);
    EXPECT_EQ(TextTransform::allCases().back(), TextTransform::rot13);
}

TEST(TextTransform, EveryIdentifierLeadsBackToItsTransform) {
    std::set<std::string_view> identifiers;
    for (const TextTransform transform : TextTransform::allCases()) {
        EXPECT_EQ(TextTransform::fromRawValue(transform.rawValue()), transform);
        EXPECT_EQ(transform.id(), transform.rawValue());
        identifiers.insert(transform.rawValue());
    }
    EXPECT_EQ(identifiers.size(), 54U);
}

TEST(TextTransform, IdentifiersAreComparedByteForByte) {
    EXPECT_EQ(TextTransform::fromRawValue("md5"), TextTransform::md5);
    for (const char* const unknown : {"MD5", " md5", "md5 ", "", "md", "JSON Pretty"})
        EXPECT_EQ(TextTransform::fromRawValue(unknown), std::nullopt) << unknown;
}

TEST(TextTransform, EveryTransformHasATitleAndASubtitleOfItsOwn) {
    std::set<std::string_view> titles;
    for (const TextTransform transform : TextTransform::allCases()) {
        EXPECT_FALSE(transform.title().empty());
        EXPECT_FALSE(transform.subtitle().empty());
        titles.insert(transform.title());
    }
    EXPECT_EQ(titles.size(), 54U);
}

TEST(TextTransform, TitlesAndSubtitlesAreTheDocumentedOnes) {
    const struct {
        TextTransform transform;
        std::string_view title;
        std::string_view subtitle;
    } vectors[] = {
        {TextTransform::stripTracking, "Clean URL", "Remove utm_*, fbclid, gclid… (100+ params)"},
        {TextTransform::sortLinesAsc, "Sort lines A→Z", "Sort lines alphabetically ascending"},
        {TextTransform::bulletList, "Bullet list", "Turn lines into a “- ” list"},
        {TextTransform::straightenQuotes, "Straight quotes", "“smart” → \"straight\" quotes & dashes"},
        {TextTransform::smartQuotes, "Smart quotes", "\"straight\" → “smart” quotes & dashes"},
        {TextTransform::tabsToSpaces, "Tabs → spaces", "Replace each tab with 4 spaces"},
        {TextTransform::htmlEntitiesEncode, "HTML entities encode", "Escape & < > \" ' to HTML entities"},
        {TextTransform::backslashEscape, "Backslash escape", "Escape \\n \\t \\\" \\\\ control chars"},
        {TextTransform::backslashUnescape, "Backslash unescape", "Unescape \\n \\t \\\" \\\\ sequences"},
    };
    for (const auto& vector : vectors) {
        EXPECT_EQ(vector.transform.title(), vector.title);
        EXPECT_EQ(vector.transform.subtitle(), vector.subtitle);
    }
}

TEST(TextTransform, TheTwoNumberingTransformsAreDistinctEntries) {
    const TextTransform list = TextTransform::numberedList;
    const TextTransform lines = TextTransform::numberLines;
    EXPECT_NE(list.title(), lines.title());
    EXPECT_NE(list.subtitle(), lines.subtitle());
}

TEST(TextTransform, ReversingCharactersIsSpacingAndSlugifyIsCase) {
    EXPECT_EQ(TextTransform(TextTransform::reverseCharacters).category(), TransformCategory::spacing);
    EXPECT_EQ(TextTransform(TextTransform::slugify).category(), TransformCategory::caseGroup);
}

TEST(TransformCategory, EveryCategoryHoldsItsNumberOfTransforms) {
    std::map<std::string_view, int> counts;
    for (const TextTransform transform : TextTransform::allCases()) ++counts[transform.category().title()];
    const std::map<std::string_view, int> expected = {
        {"Clean", 4}, {"Convert", 4}, {"Case", 11}, {"Lines", 12}, {"Spacing", 8}, {"Encode / Dev", 15},
    };
    EXPECT_EQ(counts, expected);
}

TEST(TransformCategory, MenuOrderAndRawValues) {
    const std::string_view titles[] = {"Clean", "Convert", "Case", "Lines", "Spacing", "Encode / Dev"};
    ASSERT_EQ(TransformCategory::allCases().size(), std::size(titles));
    for (std::size_t i = 0; i < std::size(titles); ++i) {
        const TransformCategory category = TransformCategory::allCases()[i];
        EXPECT_EQ(category.rawValue(), titles[i]);
        EXPECT_EQ(category.id(), titles[i]);
        EXPECT_EQ(category.title(), titles[i]);
        EXPECT_EQ(TransformCategory::fromRawValue(titles[i]), category);
    }
    EXPECT_EQ(TransformCategory::fromRawValue("clean"), std::nullopt);
    EXPECT_EQ(TransformCategory::fromRawValue("Encode"), std::nullopt);
}

}  // namespace
}  // namespace ravlin
