#include "tests/engine/oracles/PlainLinks.h"

#include "Engine/CleaningTransforms.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Links/LinkDetector.h"
#include "Engine/Support/Links/URLQuery.h"

#include <algorithm>
#include <optional>

namespace ravlin::tests {
namespace {

/// What `cleanURL` says, step by step, without hurry.
std::string plainlyCleaned(const std::string& url) {
    const std::size_t hash = std::min(url.find('#'), url.size());
    const std::size_t question = url.find('?');
    if (question >= hash || question + 1 == hash) return url;
    const std::string query = url.substr(question + 1, hash - question - 1) + "&";
    std::string kept;
    for (std::size_t at = 0; at < query.size();) {
        const std::size_t end = query.find('&', at);
        const std::string item = query.substr(at, end - at);
        const std::string name = Unicode::lowerCased(URLQuery::decodedName(item.substr(0, item.find('='))));
        const auto isName = [&](std::string_view key) { return Unicode::lowerCased(key) == name; };
        const auto& keys = TextTransforms::trackingKeys;
        if (!name.starts_with("utm_") && std::none_of(keys.begin(), keys.end(), isName)) kept += "&" + item;
        at = end + 1;
    }
    if (!kept.empty()) kept[0] = '?';
    std::string result = url.substr(0, question) + kept + url.substr(hash);
    if (result.ends_with('?')) result.pop_back();
    return result;
}

bool isTrackingName(std::string_view rawName) {
    return plainlyCleaned("?" + std::string(rawName)).empty();
}

}  // namespace

std::string cleanedAround(std::string_view text) {
    std::string result;
    std::size_t copied = 0;
    LinkDetector detector(text, isTrackingName);
    while (const std::optional<Link> link = detector.next()) {
        result += text.substr(copied, link->begin - copied);
        if (!link->hasScheme) result += "http://";
        const std::string url(text.substr(link->begin, link->end - link->begin));
        result += link->isWhole ? plainlyCleaned(url) : url;
        copied = link->end;
    }
    result += text.substr(copied);
    return result;
}

const char* brokenRuleOfLinks(std::string_view text) {
    std::size_t before = 0;
    LinkDetector detector(text, isTrackingName);
    while (const std::optional<Link> link = detector.next()) {
        if (link->begin < before || link->end <= link->begin || link->end > text.size()) return "links are in order";
        before = link->end;
        const std::string_view url = text.substr(link->begin, link->end - link->begin);
        if (url.find_first_of(" \n\t\"`<>\\") != std::string_view::npos) return "no boundary is inside";
        if (std::string_view(".,;:!?|").find(url.back()) != std::string_view::npos) return "no punctuation at the end";
        for (const std::string_view pair : {"()", "[]", "{}"})
            if (std::count(url.begin(), url.end(), pair[0]) != std::count(url.begin(), url.end(), pair[1]))
                return "brackets are balanced";
        const std::string_view scheme = url.substr(0, url.find(':'));
        const std::string lower = Unicode::lowerCased(scheme);
        if (link->hasScheme && lower != "http" && lower != "https") return "the scheme is there";
        for (const std::string_view second : {",http://", ";http://", "|https://", ",https://"})
            if (url.find(second) != std::string_view::npos) return "a second link is left outside";
    }
    return nullptr;
}

}  // namespace ravlin::tests
