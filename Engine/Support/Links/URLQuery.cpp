#include "Engine/Support/Links/URLQuery.h"

#include "Engine/Support/PercentEncoding.h"

#include <algorithm>

namespace ravlin {

URLQuery::URLQuery(std::string_view url) noexcept {
    const std::size_t hash = std::min(url.find('#'), url.size());
    fragment_ = url.substr(hash);
    head_ = url.substr(0, hash);
    const std::size_t question = head_.find('?');
    if (question == std::string_view::npos) return;
    items_ = head_.substr(question + 1);
    head_ = head_.substr(0, question);
}

std::string URLQuery::decodedName(std::string_view rawName) {
    if (rawName.find('%') == std::string_view::npos) return std::string(rawName);
    // "+" becomes a space here, which is in no name that is looked for.
    return PercentEncoding::decode(rawName).value_or("");
}

}  // namespace ravlin
