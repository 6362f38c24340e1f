#include "Views/GroupedTransforms.h"

#include "Engine/Support/Characters/Unicode.h"

#include <string>
#include <utility>

namespace ravlin {
namespace {

/// The form to compare: lower case, and one spelling for all canonically equivalent ones.
std::string searchForm(std::string_view text) {
    return Unicode::nfc(Unicode::lowerCased(text));
}

bool contains(std::string_view text, std::string_view needle) {
    return searchForm(text).find(needle) != std::string::npos;
}

bool matches(TextTransform transform, std::string_view needle) {
    return needle.empty() || contains(transform.title(), needle) || contains(transform.subtitle(), needle);
}

std::vector<TextTransform> matchesIn(TransformCategory category, std::string_view needle) {
    std::vector<TextTransform> items;
    for (const TextTransform transform : TextTransform::allCases())
        if (transform.category() == category && matches(transform, needle)) items.push_back(transform);
    return items;
}

}  // namespace

bool isSearch(std::string_view query) {
    return !Unicode::trimWhitespaces(query).empty();
}

std::vector<TransformGroup> groupedTransforms(std::string_view query) {
    const std::string needle = searchForm(Unicode::trimWhitespaces(query));
    std::vector<TransformGroup> groups;
    for (const TransformCategory category : TransformCategory::allCases()) {
        std::vector<TextTransform> items = matchesIn(category, needle);
        if (!items.empty()) groups.push_back({category, std::move(items)});
    }
    return groups;
}

}  // namespace ravlin
