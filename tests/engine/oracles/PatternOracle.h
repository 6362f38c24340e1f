#pragma once

#include <functional>
#include <string>
#include <string_view>

/// HTML and Markdown rules as regular expressions run by ICU: slow and plain, to compare the engine's scanners with.
/// The expressions run without a stack limit, and throw if ICU gives up anyway.
namespace ravlin::PatternOracle {

/// The pipelines, with their expressions compiled once.
std::string stripHTML(std::string_view text);
std::string htmlToMarkdown(std::string_view text);
std::string decodeEntities(std::string_view text);
std::string decodeNumeric(std::string_view text);
std::string markdownToHTML(std::string_view text);

/// The HTML pipelines, with all their expressions compiled for this one call, as the plainest product would do.
std::string stripHTMLFromScratch(std::string_view text);
std::string htmlToMarkdownFromScratch(std::string_view text);

/// A function that replaces every match of `pattern` with `replacement`; "$1" in it is the first group.
std::function<std::string(std::string_view)> replacing(const char* pattern, const char* replacement);

}  // namespace ravlin::PatternOracle
