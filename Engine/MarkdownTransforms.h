#pragma once

#include <string>
#include <string_view>

/// Markdown to HTML.
namespace ravlin::TextTransforms {

/// A small, line-oriented subset of Markdown as HTML: every line is a heading, an item of a bulleted or numbered list,
/// a quote or a paragraph of its own, and may contain code, links, strong and emphasis. Anything HTML would take for
/// markup is escaped. There are no code blocks or nested lists, and lines are not merged. Lines end at "\n" only.
///     markdownToHTML("# Title\n- *a*")  ->  "<h1>Title</h1>\n<ul>\n<li><em>a</em></li>\n</ul>"
std::string markdownToHTML(std::string_view text);

}  // namespace ravlin::TextTransforms
