#include "Engine/TextTransform.h"

#include "Engine/TextTransforms.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace ravlin {
namespace {

struct Row {
    TextTransform::Case transform;
    std::string_view rawValue;
    std::string_view title;
    std::string_view subtitle;
    TransformCategory::Case category;
};

// The whole catalogue, in the order of the panel's rows.
constexpr auto kCatalogue = std::to_array<Row>({
    {TextTransform::stripTracking, "stripTracking", "Clean URL", "Remove utm_*, fbclid, gclid… (100+ params)",
     TransformCategory::clean},
    {TextTransform::stripFormatting, "stripFormatting", "Strip formatting",
     "Rich text → plain text (drops fonts/colors)", TransformCategory::clean},
    {TextTransform::removeInvisibles, "removeInvisibles", "Remove invisible characters",
     "Strip zero-width, BOM, RTL marks & AI watermarks", TransformCategory::clean},
    {TextTransform::stripHTML, "stripHTML", "Strip HTML → plain text", "Drop all tags, keep the text",
     TransformCategory::clean},
    {TextTransform::htmlToMarkdown, "htmlToMarkdown", "HTML → Markdown", "Convert rich HTML to clean Markdown",
     TransformCategory::convert},
    {TextTransform::markdownToHTML, "markdownToHTML", "Markdown → HTML", "Convert Markdown to HTML",
     TransformCategory::convert},
    {TextTransform::jsonPretty, "jsonPretty", "JSON Pretty", "Indent JSON (exact numbers, original order)",
     TransformCategory::convert},
    {TextTransform::jsonMinify, "jsonMinify", "JSON Minify", "Collapse JSON to one line", TransformCategory::convert},
    {TextTransform::upperCase, "upperCase", "UPPERCASE", "ALL CAPS", TransformCategory::caseGroup},
    {TextTransform::lowerCase, "lowerCase", "lowercase", "all lowercase", TransformCategory::caseGroup},
    {TextTransform::titleCase, "titleCase", "Title Case", "Capitalise Each Word", TransformCategory::caseGroup},
    {TextTransform::sentenceCase, "sentenceCase", "Sentence case", "Capitalise first letter of each sentence",
     TransformCategory::caseGroup},
    {TextTransform::capitalizeWords, "capitalizeWords", "Capitalize Words", "Uppercase the first letter of every word",
     TransformCategory::caseGroup},
    {TextTransform::camelCase, "camelCase", "camelCase", "helloWorldExample", TransformCategory::caseGroup},
    {TextTransform::pascalCase, "pascalCase", "PascalCase", "HelloWorldExample", TransformCategory::caseGroup},
    {TextTransform::snakeCase, "snakeCase", "snake_case", "hello_world_example", TransformCategory::caseGroup},
    {TextTransform::kebabCase, "kebabCase", "kebab-case", "hello-world-example", TransformCategory::caseGroup},
    {TextTransform::constantCase, "constantCase", "CONSTANT_CASE", "HELLO_WORLD_EXAMPLE", TransformCategory::caseGroup},
    {TextTransform::slugify, "slugify", "Slugify", "url-friendly-kebab-case", TransformCategory::caseGroup},
    {TextTransform::bulletList, "bulletList", "Bullet list", "Turn lines into a “- ” list", TransformCategory::lines},
    {TextTransform::numberedList, "numberedList", "Numbered list", "Turn lines into a “1. ” list",
     TransformCategory::lines},
    {TextTransform::sortLinesAsc, "sortLinesAsc", "Sort lines A→Z", "Sort lines alphabetically ascending",
     TransformCategory::lines},
    {TextTransform::sortLinesDesc, "sortLinesDesc", "Sort lines Z→A", "Sort lines alphabetically descending",
     TransformCategory::lines},
    {TextTransform::reverseLines, "reverseLines", "Reverse lines", "Reverse the order of the lines",
     TransformCategory::lines},
    {TextTransform::shuffleLines, "shuffleLines", "Shuffle lines", "Deterministic shuffle of the lines",
     TransformCategory::lines},
    {TextTransform::removeDuplicateLines, "removeDuplicateLines", "Remove duplicate lines",
     "Drop repeated lines, keep first occurrence", TransformCategory::lines},
    {TextTransform::removeEmptyLines, "removeEmptyLines", "Remove empty lines", "Drop blank / whitespace-only lines",
     TransformCategory::lines},
    {TextTransform::trimEachLine, "trimEachLine", "Trim each line", "Trim leading & trailing spaces per line",
     TransformCategory::lines},
    {TextTransform::numberLines, "numberLines", "Number lines", "Prefix each line with “1. ”",
     TransformCategory::lines},
    {TextTransform::joinLines, "joinLines", "Join lines", "Unwrap lines into a single space-joined line",
     TransformCategory::lines},
    {TextTransform::quoteLines, "quoteLines", "Quote lines", "Prefix each line with “> ”", TransformCategory::lines},
    {TextTransform::straightenQuotes, "straightenQuotes", "Straight quotes", R"(“smart” → "straight" quotes & dashes)",
     TransformCategory::spacing},
    {TextTransform::smartQuotes, "smartQuotes", "Smart quotes", R"("straight" → “smart” quotes & dashes)",
     TransformCategory::spacing},
    {TextTransform::collapseSpaces, "collapseSpaces", "Tidy spaces", "Trim lines & collapse repeated spaces",
     TransformCategory::spacing},
    {TextTransform::removeAllSpaces, "removeAllSpaces", "Remove all spaces", "Delete every space, tab & newline",
     TransformCategory::spacing},
    {TextTransform::tabsToSpaces, "tabsToSpaces", "Tabs → spaces", "Replace each tab with 4 spaces",
     TransformCategory::spacing},
    {TextTransform::spacesToTabs, "spacesToTabs", "Spaces → tabs", "Replace 4 leading spaces with a tab",
     TransformCategory::spacing},
    {TextTransform::normalizeDashes, "normalizeDashes", "Normalize dashes & ellipsis", "… → ... and em/en-dash → -/--",
     TransformCategory::spacing},
    {TextTransform::reverseCharacters, "reverseCharacters", "Reverse characters",
     "Reverse the whole string character by character", TransformCategory::spacing},
    {TextTransform::base64Encode, "base64Encode", "Base64 encode", "Encode text to Base64", TransformCategory::encode},
    {TextTransform::base64Decode, "base64Decode", "Base64 decode", "Decode Base64 to text", TransformCategory::encode},
    {TextTransform::urlEncode, "urlEncode", "URL encode", "Percent-encode for URLs", TransformCategory::encode},
    {TextTransform::urlDecode, "urlDecode", "URL decode", "Decode percent-encoded URLs", TransformCategory::encode},
    {TextTransform::htmlEntitiesEncode, "htmlEntitiesEncode", "HTML entities encode",
     R"(Escape & < > " ' to HTML entities)", TransformCategory::encode},
    {TextTransform::htmlEntitiesDecode, "htmlEntitiesDecode", "HTML entities decode", "Unescape HTML entities to text",
     TransformCategory::encode},
    {TextTransform::backslashEscape, "backslashEscape", "Backslash escape", R"(Escape \n \t \" \\ control chars)",
     TransformCategory::encode},
    {TextTransform::backslashUnescape, "backslashUnescape", "Backslash unescape", R"(Unescape \n \t \" \\ sequences)",
     TransformCategory::encode},
    {TextTransform::hexEncode, "hexEncode", "Hex encode", "ASCII text → hex digits", TransformCategory::encode},
    {TextTransform::hexDecode, "hexDecode", "Hex decode", "Hex digits → ASCII text", TransformCategory::encode},
    {TextTransform::md5, "md5", "MD5", "MD5 hash (hex)", TransformCategory::encode},
    {TextTransform::sha1, "sha1", "SHA-1", "SHA-1 hash (hex)", TransformCategory::encode},
    {TextTransform::sha256, "sha256", "SHA-256", "SHA-256 hash (hex)", TransformCategory::encode},
    {TextTransform::jwtDecode, "jwtDecode", "JWT decode", "Decode JWT header+payload (no verify)",
     TransformCategory::encode},
    {TextTransform::rot13, "rot13", "ROT13", "ROT13 letter rotation cipher", TransformCategory::encode},
});

constexpr std::array<std::string_view, 6> kCategoryTitles = {"Clean", "Convert", "Case",
                                                             "Lines", "Spacing", "Encode / Dev"};

constexpr std::array<TransformCategory, kCategoryTitles.size()> kCategories = {
    TransformCategory::clean, TransformCategory::convert, TransformCategory::caseGroup,
    TransformCategory::lines, TransformCategory::spacing, TransformCategory::encode};

consteval auto makeTransforms() {
    return []<std::size_t... i>(std::index_sequence<i...>) {
        return std::array<TextTransform, sizeof...(i)>{TextTransform(kCatalogue[i].transform)...};
    }
    (std::make_index_sequence<kCatalogue.size()>());
}

constexpr auto kTransforms = makeTransforms();

/// The name of a case as in the source, which compilers put into the function's name; empty if there is no such case.
template <TextTransform::Case kCase>
consteval std::string_view nameOf() {
    constexpr std::string_view kBefore = "kCase = ravlin::TextTransform::";
    const std::string_view function = __PRETTY_FUNCTION__;
    const std::size_t at = function.find(kBefore);
    if (at == std::string_view::npos) return {};
    const std::string_view name = function.substr(at + kBefore.size());
    return name.substr(0, name.find_first_of(";]"));
}

consteval bool rowsAreInTheOrderOfTheCases() {
    for (std::size_t i = 0; i < kCatalogue.size(); ++i)
        if (kCatalogue[i].transform != i) return false;
    return true;
}

consteval bool identifiersAreTheNamesOfTheCases() {
    return []<std::size_t... i>(std::index_sequence<i...>) {
        return ((nameOf<kCatalogue[i].transform>() == kCatalogue[i].rawValue) && ...);
    }
    (std::make_index_sequence<kCatalogue.size()>());
}

consteval bool categoriesAreTogetherAndInMenuOrder() {
    return std::is_sorted(kCatalogue.begin(), kCatalogue.end(),
                          [](const Row& a, const Row& b) { return a.category < b.category; });
}

static_assert(rowsAreInTheOrderOfTheCases(),
              "kCatalogue: put the rows in the order of TextTransform's cases, one for each of them");
static_assert(nameOf<TextTransform::Case{kCatalogue.size()}>().empty(),
              "kCatalogue: add a row for the last case of TextTransform");
static_assert(identifiersAreTheNamesOfTheCases(), "kCatalogue: a row's identifier is the name of its case");
static_assert(categoriesAreTogetherAndInMenuOrder(),
              "TextTransform: a new case goes to the others of its category, and so does its row in kCatalogue");
static_assert(kCatalogue.back().category == kCategories.back(),
              "kCategoryTitles and kCategories: add the category that the last rows of kCatalogue are in");

const Row& rowOf(TextTransform transform) noexcept {
    return kCatalogue[static_cast<std::size_t>(TextTransform::Case(transform))];
}

}  // namespace

std::span<const TransformCategory> TransformCategory::allCases() noexcept {
    return kCategories;
}

std::optional<TransformCategory> TransformCategory::fromRawValue(std::string_view rawValue) noexcept {
    const auto* const found = std::find(kCategoryTitles.begin(), kCategoryTitles.end(), rawValue);
    if (found == kCategoryTitles.end()) return std::nullopt;
    return kCategories[static_cast<std::size_t>(found - kCategoryTitles.begin())];
}

std::string_view TransformCategory::rawValue() const noexcept {
    return kCategoryTitles[case_];
}

std::span<const TextTransform> TextTransform::allCases() noexcept {
    return kTransforms;
}

std::optional<TextTransform> TextTransform::fromRawValue(std::string_view rawValue) noexcept {
    const auto* const found =
        std::find_if(kCatalogue.begin(), kCatalogue.end(), [&](const Row& row) { return row.rawValue == rawValue; });
    if (found == kCatalogue.end()) return std::nullopt;
    return TextTransform(found->transform);
}

std::string_view TextTransform::rawValue() const noexcept {
    return rowOf(*this).rawValue;
}
std::string_view TextTransform::title() const noexcept {
    return rowOf(*this).title;
}
std::string_view TextTransform::subtitle() const noexcept {
    return rowOf(*this).subtitle;
}
TransformCategory TextTransform::category() const noexcept {
    return rowOf(*this).category;
}

std::string TextTransform::apply(std::string_view text) const {
    return TextTransforms::apply(*this, text);
}

}  // namespace ravlin
