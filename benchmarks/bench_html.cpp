// HTML and Markdown: against their rules run as regular expressions, against other programs, and on hostile texts.

#include "Engine/HTMLTransforms.h"
#include "Engine/MarkdownTransforms.h"
#include "benchmarks/Documents.h"
#include "tests/engine/oracles/PatternOracle.h"
#include "tests/engine/texts/HostileTexts.h"

#include <cstdlib>
#include <functional>
#include <memory>

#include <benchmark/benchmark.h>
#include <cmark.h>
#include <md4c-html.h>

namespace {

using namespace ravlin;
using TextFunction = std::string (*)(std::string_view);

std::string withCmark(std::string_view text) {
    const std::unique_ptr<char, decltype(&std::free)> html(
        cmark_markdown_to_html(text.data(), text.size(), CMARK_OPT_DEFAULT), &std::free);
    return html.get();
}

std::string withMd4c(std::string_view text) {
    std::string html;
    const auto append = [](const MD_CHAR* piece, MD_SIZE size, void* to) {
        static_cast<std::string*>(to)->append(piece, size);
    };
    md_html(text.data(), static_cast<MD_SIZE>(text.size()), append, &html, 0, 0);
    return html;
}

void add(const std::string& name, TextFunction function, const std::function<std::string()>& makeText) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string text = makeText();
        for (auto _ : state) {
            const std::string result = function(text);
            benchmark::DoNotOptimize(result.data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

void addPages() {
    const struct {
        const char* name;
        std::size_t size;
    } pages[] = {{"256KB", 262'000}, {"4KB", 4'096}};
    for (const auto& page : pages) {
        const auto make = [size = page.size] { return Benchmarks::htmlPage(size); };
        const std::string name = std::string("/") + page.name;
        add("stripHTML" + name, TextTransforms::stripHTML, make);
        add("htmlToMarkdown" + name, TextTransforms::htmlToMarkdown, make);
        add("stripHTMLWithICU" + name, PatternOracle::stripHTMLFromScratch, make);
        add("htmlToMarkdownWithICU" + name, PatternOracle::htmlToMarkdownFromScratch, make);
    }
}

void addMarkdown() {
    const auto make = [] { return Benchmarks::markdownDocument(1'300'000); };
    add("markdownToHTML/document", TextTransforms::markdownToHTML, make);
    add("markdownToHTML/cmark", withCmark, make);
    add("markdownToHTML/md4c", withMd4c, make);
}

void addHostileTexts() {
    for (const tests::HostileText& text : tests::hostileHTML()) {
        const auto make = [text = text.text] { return text; };
        add(std::string("hostile/stripHTML/") + text.name, TextTransforms::stripHTML, make);
        add(std::string("hostile/htmlToMarkdown/") + text.name, TextTransforms::htmlToMarkdown, make);
    }
    for (const tests::HostileText& text : tests::hostileMarkdown())
        add(std::string("hostile/markdownToHTML/") + text.name, TextTransforms::markdownToHTML,
            [text = text.text] { return text; });
}

const bool kRegistered = [] {
    addPages();
    addMarkdown();
    addHostileTexts();
    return true;
}();

}  // namespace
