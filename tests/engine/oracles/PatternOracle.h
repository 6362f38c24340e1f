#pragma once

#include <functional>
#include <string>
#include <string_view>

/// HTML and Markdown rules as regular expressions run by ICU: slow and plain, which is what the engine's scanners are
/// compared with. The expressions run without a limit on the stack, and throw where ICU gives up all the same.
namespace ravlin::PatternOracle {

/// The pipelines, with their expressions compiled once.
std::string stripHTML(std::string_view text);
std::string htmlToMarkdown(std::string_view text);
std::string decodeEntities(std::string_view text);
std::string decodeNumeric(std::string_view text);
std::string markdownToHTML(std::string_view text);

/// The HTML pipelines, with all their expressions compiled for this one call: what the plainest product would do.
std::string stripHTMLFromScratch(std::string_view text);
std::string htmlToMarkdownFromScratch(std::string_view text);

/// A function that puts `replacement` in the place of every match of `pattern`; "$1" in it is the first group.
std::function<std::string(std::string_view)> replacing(const char* pattern, const char* replacement);

}  // namespace ravlin::PatternOracle
