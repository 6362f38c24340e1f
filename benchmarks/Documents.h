#pragma once

#include "benchmarks/Texts.h"

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

/// Documents to measure with, as people copy them; the same in every run.
namespace ravlin::Benchmarks {

class Writer {
public:
    std::string words(int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            if (i > 0) text += ' ';
            text += kWords[random_() % kWords.size()];
        }
        return text;
    }

    /// 1 ... limit
    int upTo(int limit) { return 1 + static_cast<int>(random_() % static_cast<unsigned>(limit)); }

private:
    static constexpr auto kWords = std::to_array<std::string_view>(
        {"the", "function", "returns", "a",       "value",  "of",       "type",    "string",    "and",
         "is",  "called",   "before",  "every",   "other",  "event",    "stream",  "will",      "not",
         "be",  "see",      "also",    "options", "object", "with",     "default", "caf\u00E9", "error",
         "if",  "process",  "module",  "to",      "in",     "it\u2019s"});
    std::mt19937 random_{7};
};

/// One section of a reference manual in HTML.
inline std::string htmlSection(Writer& writer) {
    std::string text =
        "<section><h3>" + writer.words(3) + "<span><a class=\"mark\" href=\"#id" + writer.words(1) +
        "\" id=\"id\">#</a></span></h3>\n<div class=\"api_metadata\">\n<span>Added in: v0.1</span>\n</div>\n<ul>\n";
    for (int items = writer.upTo(4); items > 0; --items)
        text += "<li><code>" + writer.words(1) + "</code> <a href=\"https://example.org/" + writer.words(1) +
                "\" class=\"type\">&lt;" + writer.words(1) + "&gt;</a> " + writer.words(6) + ".</li>\n";
    text += "</ul>\n";
    for (int paragraphs = writer.upTo(3); paragraphs > 0; --paragraphs)
        text += "<p>" + writer.words(12) + " <code>" + writer.words(1) + "</code>, " + writer.words(9) +
                " <a href=\"other.html#x\"><code>" + writer.words(1) + "()</code></a> " + writer.words(8) +
                " <strong>" + writer.words(2) + "</strong> &amp; <em>" + writer.words(2) + "</em>.</p>\n";
    text += "<pre><code class=\"language-js\"><span class=\"keyword\">const</span> { <span class=\"title\">" +
            writer.words(1) + "</span> } = <span class=\"built_in\">require</span>(<span class=\"string\">'" +
            writer.words(1) + "'</span>);\n</code></pre></section>\n";
    return text;
}

/// A page of a reference manual, about 21 bytes to a tag.
inline std::string htmlPage(std::size_t size) {
    Writer writer;
    std::string text =
        "<!DOCTYPE html>\n<html><head><title>Page</title><style>p { margin: 0 }</style>\n"
        "<script>if (a < b) { go(); }</script></head><body><h1>Page</h1>\n";
    while (text.size() < size) text += htmlSection(writer);
    text.resize(size);
    while ((static_cast<unsigned char>(text.back()) & 0x80U) != 0) text.pop_back();  // no partial character
    return text;
}

/// Notes and manuals in Markdown.
inline std::string markdownDocument(std::size_t size) {
    Writer writer;
    std::string text;
    while (text.size() < size) {
        text += "\n## " + writer.words(4) + "\n\n";
        for (int lines = writer.upTo(6); lines > 0; --lines) text += writer.words(12) + "\n";
        text += writer.words(5) + " `" + writer.words(1) + "` and **" + writer.words(2) + "** in [" + writer.words(2) +
                "](https://example.org/" + writer.words(1) + "), *" + writer.words(1) + "* & more.\n\n";
        for (int items = writer.upTo(4); items > 0; --items) text += "- " + writer.words(7) + "\n";
        text +=
            "\n> " + writer.words(9) + "\n\n1. " + writer.words(4) + " _" + writer.words(1) + "_\n2. snake_case_name\n";
    }
    return text;
}

/// A service's answer: records without any white space between their tokens, about 12 bytes to a token.
inline std::string jsonDocument(std::size_t size) {
    Writer writer;
    const auto number = [&writer] { return std::to_string(writer.upTo(1'000'000)); };
    std::string text = "[";
    while (text.size() < size) {
        if (text.size() > 1) text += ',';
        text += R"({"created_at":"Sun Aug 31 00:29:15 +0000 2014","id":)" + number() + number() + R"(,"text":")" +
                writer.words(12) + R"( \n\u3042","user":{"name":")" + writer.words(2) +
                R"(","verified":false,"followers":)" + number() + R"(,"url":"https://t.co/)" + writer.words(1) +
                R"(","lang":null},"coordinates":[)" + number() + ".25,-" + number() + R"(e-3],"tags":[)";
        for (int tags = writer.upTo(4); tags > 1; --tags) text += std::string("\"") + writer.words(1) + "\",";
        text += R"("x"],"entities":{},"score":1.5e-3})";
    }
    return text + "]";
}

/// Mails with a link every few lines, most of them with something to remove.
inline std::string mails(std::size_t size) {
    return repeated(
        "From: Ann Example <ann@example.com>\nTo: bob@example.org\nDate: Fri, 20 Nov 2026 12:34:56 +0000\n"
        "Subject: Re: the new shelf, is it what you wanted?\n\n"
        "Hello Bob,\n\nthis is the one that I meant: "
        "https://shop.example.com/shelves/oak?id=4711&utm_source=newsletter&utm_medium=email&color=dark#reviews.\n"
        "It comes in two sizes (see www.example.com/sizes), costs 120.50 and would be here by Monday. What do you\n"
        "think? The old one can go to the cellar; there's room for it next to the bicycles.\n"
        "> Did you see <https://news.example.org/2026/11/shelves?fbclid=IwAR0aBcD&ref=home>?\n"
        "> I'd rather have a white one.\n\nYours, Ann\n-- \nAnn Example, example.com\n\n",
        size);
}

}  // namespace ravlin::Benchmarks
