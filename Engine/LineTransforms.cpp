#include "Engine/LineTransforms.h"

#include "Engine/Support/LineModel.h"

namespace ravlin::TextTransforms {

std::string reverseLines(std::string_view text) {
    LineModel::Joiner joiner(text.size());
    for (std::size_t end = text.rfind('\n'); end != std::string_view::npos; end = text.rfind('\n')) {
        joiner.startLine() += text.substr(end + 1);
        text = text.substr(0, end);
    }
    joiner.startLine() += text;
    return std::move(joiner).text();
}

}  // namespace ravlin::TextTransforms
