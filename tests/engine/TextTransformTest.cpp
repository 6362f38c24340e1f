#include "Engine/TextTransform.h"

#include <set>
#include <unordered_set>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(TextTransform, AllAreInTheOrderOfTheirCases) {
    int position = 0;
    for (const TextTransform transform : TextTransform::allCases()) EXPECT_EQ(transform, position++);
}

TEST(TextTransform, EveryIdentifierLeadsBackToItsTransform) {
    std::set<std::string_view> identifiers;
    for (const TextTransform transform : TextTransform::allCases()) {
        EXPECT_EQ(TextTransform::fromRawValue(transform.rawValue()), transform);
        EXPECT_EQ(transform.id(), transform.rawValue());
        identifiers.insert(transform.rawValue());
    }
    EXPECT_EQ(identifiers.size(), TextTransform::allCases().size());
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
    EXPECT_EQ(titles.size(), TextTransform::allCases().size());
}

TEST(TextTransform, TheCatalogueIsThis) {
    const struct {
        std::string_view rawValue;
        std::string_view title;
        std::string_view subtitle;
        std::string_view category;
    } vectors[] = {
        {"stripTracking", "Clean URL", "Remove utm_*, fbclid, gclid… (100+ params)", "Clean"},
        {"stripFormatting", "Strip formatting", "Rich text → plain text (drops fonts/colors)", "Clean"},
        {"removeInvisibles", "Remove invisible characters", "Strip zero-width, BOM, RTL marks & AI watermarks",
         "Clean"},
        {"stripHTML", "Strip HTML → plain text", "Drop all tags, keep the text", "Clean"},
        {"htmlToMarkdown", "HTML → Markdown", "Convert rich HTML to clean Markdown", "Convert"},
        {"markdownToHTML", "Markdown → HTML", "Convert Markdown to HTML", "Convert"},
        {"jsonPretty", "JSON Pretty", "Indent JSON (exact numbers, original order)", "Convert"},
        {"jsonMinify", "JSON Minify", "Collapse JSON to one line", "Convert"},
        {"upperCase", "UPPERCASE", "ALL CAPS", "Case"},
        {"lowerCase", "lowercase", "all lowercase", "Case"},
        {"titleCase", "Title Case", "Capitalise Each Word", "Case"},
        {"sentenceCase", "Sentence case", "Capitalise first letter of each sentence", "Case"},
        {"capitalizeWords", "Capitalize Words", "Uppercase the first letter of every word", "Case"},
        {"camelCase", "camelCase", "helloWorldExample", "Case"},
        {"pascalCase", "PascalCase", "HelloWorldExample", "Case"},
        {"snakeCase", "snake_case", "hello_world_example", "Case"},
        {"kebabCase", "kebab-case", "hello-world-example", "Case"},
        {"constantCase", "CONSTANT_CASE", "HELLO_WORLD_EXAMPLE", "Case"},
        {"slugify", "Slugify", "url-friendly-kebab-case", "Case"},
        {"bulletList", "Bullet list", "Turn lines into a “- ” list", "Lines"},
        {"numberedList", "Numbered list", "Turn lines into a “1. ” list", "Lines"},
        {"sortLinesAsc", "Sort lines A→Z", "Sort lines alphabetically ascending", "Lines"},
        {"sortLinesDesc", "Sort lines Z→A", "Sort lines alphabetically descending", "Lines"},
        {"reverseLines", "Reverse lines", "Reverse the order of the lines", "Lines"},
        {"shuffleLines", "Shuffle lines", "Deterministic shuffle of the lines", "Lines"},
        {"removeDuplicateLines", "Remove duplicate lines", "Drop repeated lines, keep first occurrence", "Lines"},
        {"removeEmptyLines", "Remove empty lines", "Drop blank / whitespace-only lines", "Lines"},
        {"trimEachLine", "Trim each line", "Trim leading & trailing spaces per line", "Lines"},
        {"numberLines", "Number lines", "Prefix each line with “1. ”", "Lines"},
        {"joinLines", "Join lines", "Unwrap lines into a single space-joined line", "Lines"},
        {"quoteLines", "Quote lines", "Prefix each line with “> ”", "Lines"},
        {"straightenQuotes", "Straight quotes", "“smart” → \"straight\" quotes & dashes", "Spacing"},
        {"smartQuotes", "Smart quotes", "\"straight\" → “smart” quotes & dashes", "Spacing"},
        {"collapseSpaces", "Tidy spaces", "Trim lines & collapse repeated spaces", "Spacing"},
        {"removeAllSpaces", "Remove all spaces", "Delete every space, tab & newline", "Spacing"},
        {"tabsToSpaces", "Tabs → spaces", "Replace each tab with 4 spaces", "Spacing"},
        {"spacesToTabs", "Spaces → tabs", "Replace 4 leading spaces with a tab", "Spacing"},
        {"normalizeDashes", "Normalize dashes & ellipsis", "… → ... and em/en-dash → -/--", "Spacing"},
        {"reverseCharacters", "Reverse characters", "Reverse the whole string character by character", "Spacing"},
        {"base64Encode", "Base64 encode", "Encode text to Base64", "Encode / Dev"},
        {"base64Decode", "Base64 decode", "Decode Base64 to text", "Encode / Dev"},
        {"urlEncode", "URL encode", "Percent-encode for URLs", "Encode / Dev"},
        {"urlDecode", "URL decode", "Decode percent-encoded URLs", "Encode / Dev"},
        {"htmlEntitiesEncode", "HTML entities encode", "Escape & < > \" ' to HTML entities", "Encode / Dev"},
        {"htmlEntitiesDecode", "HTML entities decode", "Unescape HTML entities to text", "Encode / Dev"},
        {"backslashEscape", "Backslash escape", "Escape \\n \\t \\\" \\\\ control chars", "Encode / Dev"},
        {"backslashUnescape", "Backslash unescape", "Unescape \\n \\t \\\" \\\\ sequences", "Encode / Dev"},
        {"hexEncode", "Hex encode", "ASCII text → hex digits", "Encode / Dev"},
        {"hexDecode", "Hex decode", "Hex digits → ASCII text", "Encode / Dev"},
        {"md5", "MD5", "MD5 hash (hex)", "Encode / Dev"},
        {"sha1", "SHA-1", "SHA-1 hash (hex)", "Encode / Dev"},
        {"sha256", "SHA-256", "SHA-256 hash (hex)", "Encode / Dev"},
        {"jwtDecode", "JWT decode", "Decode JWT header+payload (no verify)", "Encode / Dev"},
        {"rot13", "ROT13", "ROT13 letter rotation cipher", "Encode / Dev"},
    };
    for (const TextTransform transform : TextTransform::allCases()) {
        const std::size_t position = transform;
        ASSERT_LT(position, std::size(vectors)) << "no line above is for " << transform.rawValue();
        EXPECT_EQ(transform.rawValue(), vectors[position].rawValue);
        EXPECT_EQ(transform.title(), vectors[position].title);
        EXPECT_EQ(transform.subtitle(), vectors[position].subtitle);
        EXPECT_EQ(transform.category().title(), vectors[position].category);
    }
    EXPECT_EQ(std::size(vectors), TextTransform::allCases().size());
}

TEST(TextTransform, AndItsCategoryCanBeKeysOfHashTables) {
    std::unordered_set<TextTransform> transforms;
    std::unordered_set<TransformCategory> categories;
    for (int round = 0; round < 2; ++round) {
        for (const TextTransform transform : TextTransform::allCases()) {
            EXPECT_EQ(transforms.insert(transform).second, round == 0) << transform.rawValue();
            categories.insert(transform.category());
        }
    }
    EXPECT_EQ(categories.size(), TransformCategory::allCases().size());
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
