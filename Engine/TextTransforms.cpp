#include "Engine/TextTransforms.h"

namespace ravlin::TextTransforms {

std::string apply(TextTransform /*transform*/, std::string_view text) {
    return std::string(text);
}

}  // namespace ravlin::TextTransforms
