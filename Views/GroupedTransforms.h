#pragma once

#include "Engine/TextTransform.h"

#include <string_view>
#include <vector>

namespace ravlin {

/// One section of the panel's list.
struct TransformGroup {
    TransformCategory category;
    std::vector<TextTransform> items;  // never empty, in catalogue order
    friend bool operator==(const TransformGroup&, const TransformGroup&) = default;
};

/// Whether `query` (UTF-8, as typed) searches for anything: blanks alone do not.
bool isSearch(std::string_view query);

/// The catalogue as the panel lists it for the search text `query` (UTF-8, as typed): the categories in menu order, in
/// each the transforms whose title or subtitle contains the query in any letter case, in catalogue order. White space
/// at both ends of the query is ignored, canonically equivalent spellings match each other, and a category without a
/// match is left out. An empty query lists everything.
///     groupedTransforms(" JSON ")  ->  {{convert, {jsonPretty, jsonMinify}}}
std::vector<TransformGroup> groupedTransforms(std::string_view query);

}  // namespace ravlin
