#pragma once

#include "Engine/TextTransform.h"

#include <string>
#include <string_view>

/// The library of text functions. Each takes the whole text and returns the whole new text (UTF-8), never throws, and
/// depends on nothing but its input.
namespace ravlin::TextTransforms {

/// Runs `transform` on `text`: the only place that maps transforms to functions.
std::string apply(TextTransform transform, std::string_view text);

}  // namespace ravlin::TextTransforms
