#pragma once

#include "Engine/TextTransform.h"

#include <string>
#include <string_view>

/// The library of text functions. Every one takes the whole text and returns the whole new text (UTF-8), never throws,
/// and depends on nothing but its input.
namespace ravlin::TextTransforms {

/// Runs `transform` on `text`: the one place that knows which function a transform stands for.
std::string apply(TextTransform transform, std::string_view text);

}  // namespace ravlin::TextTransforms
