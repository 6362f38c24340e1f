// Cleaning links: ordinary texts and hostile ones, all within the limit of size, and invisible characters.

#include "Engine/CleaningTransforms.h"
#include "tests/engine/HostileTexts.h"

#include <functional>

#include "benchmarks/Texts.h"
#include <benchmark/benchmark.h>

namespace {

using namespace ravlin;
using Benchmarks::kMegabyte;
using TextFunction = std::string (*)(std::string_view);
using MakeText = std::function<std::string(std::size_t size)>;

std::string copied(std::string_view text) {
    return std::string(text);
}

void add(const std::string& name, TextFunction function, const MakeText& makeText, std::size_t size) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string text = makeText(size);
        for (auto _ : state) {
            const std::string result = function(text);
            benchmark::DoNotOptimize(result.data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

/// Mails with a link in every few lines, most of them with something to remove.
std::string mails(std::size_t size) {
    return Benchmarks::repeated(
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

std::string pieces(const char* piece, std::size_t size) {
    return tests::repeated(piece, size);
}

/// One link of very many items, of which none, or all, are removed.
MakeText items(const char* item) {
    return [=](std::size_t size) { return tests::filled("https://a.test/?", item, "", size); };
}

const struct {
    const char* name;
    MakeText make;
} kHostile[] = {
    {"schemes", [](std::size_t size) { return pieces("http://", size); }},
    {"schemesApart", [](std::size_t size) { return pieces("http://a ", size); }},
    {"schemesAfterCommas", [](std::size_t size) { return pieces("http://a,", size); }},
    {"schemesInBrackets", [](std::size_t size) { return pieces("http://a(=", size); }},
    {"otherSchemes", [](std::size_t size) { return pieces("a://", size); }},
    {"oneScheme", [](std::size_t size) { return tests::filled("", "a", "://a", size); }},
    {"colons", [](std::size_t size) { return pieces(":", size); }},
    {"slashes", [](std::size_t size) { return pieces(":/", size); }},
    {"questionMarks", [](std::size_t size) { return pieces("?", size); }},
    {"openBrackets", [](std::size_t size) { return tests::filled("http://a/", "(", "", size); }},
    {"closedBrackets",
     [](std::size_t size) {
         return "http://a/" + tests::repeated("(", size / 2) + tests::repeated(")", size - size / 2 - 9);
     }},
    {"references", [](std::size_t size) { return tests::filled("http://a/?", "&amp;", "", size); }},
    {"referencesToTrim", [](std::size_t size) { return tests::filled("http://a/?a=1", "&amp", ";", size); }},
    {"ampersands", [](std::size_t size) { return tests::filled("http://a/?", "&", "", size); }},
    {"semicolons", [](std::size_t size) { return tests::filled("http://a/?ref=", ";", "", size); }},
    {"commasInRemovedItem", [](std::size_t size) { return tests::filled("http://a/?ref=", ",a.a", "", size); }},
    {"commasInName", [](std::size_t size) { return tests::filled("http://a/?", "%41,", "", size); }},
    {"hostsInRemovedItem", [](std::size_t size) { return pieces("http://a/?ref=x,www.a.com/", size); }},
    {"apostrophes", [](std::size_t size) { return tests::filled("http://a/", "'", "", size); }},
    {"apostrophesAround", [](std::size_t size) { return pieces("'http://a/'", size); }},
    {"hosts", [](std::size_t size) { return pieces("www.", size); }},
    {"hostsWithLetters", [](std::size_t size) { return tests::repeated("\u00E9www.", size / 6 * 6); }},
    {"hostsWithPlus", [](std::size_t size) { return pieces("www.a.com+", size); }},
    {"hostsWithBang", [](std::size_t size) { return pieces("www.a.com!", size); }},
    {"hostsWithQuery", [](std::size_t size) { return pieces("a.com/?", size); }},
    {"hostsInBrackets", [](std::size_t size) { return pieces("a.com/(a.com/?x=1", size); }},
    {"hostsWithoutQuery", [](std::size_t size) { return tests::filled("", "a.com,", "?x=1", size); }},
    {"labels", [](std::size_t size) { return tests::filled("", "a.", "com/?x=1", size); }},
    {"foreignText", [](std::size_t size) { return "http://a/?ref=" + tests::repeated("\u8C22", (size - 14) / 3 * 3); }},
    {"foreignTextAndHosts",
     [](std::size_t size) { return tests::repeated("http://a/?ref=\u8C22www.a.com/?ref=\u8C22", size / 35 * 35); }},
    {"backslashes", [](std::size_t size) { return tests::filled("http://a/?ref=1", "\\", "", size); }},
    {"linksBeforeBackslashes", [](std::size_t size) { return pieces("http://a/?ref=1\\\\", size); }},
    {"mail", [](std::size_t size) { return pieces("mailto:", size); }},
    {"mailAndLinks", [](std::size_t size) { return pieces("mailto:a http://a ", size); }},
    {"keptItems", items("id=1&")},
    {"removedItems", items("cid&")},
    {"utmItems", items("utm_=&")},
    {"escapedItems", items("%63id=%41&")},
    {"shortItems", items("a=1&")},
};

const bool kRegistered = [] {
    constexpr std::size_t kOne = 1'000'000;  // bytes; doubled it would be above the limit
    add("cleaning/copy", copied, Benchmarks::words, kOne);
    add("cleaning/words", TextTransforms::stripTracking, Benchmarks::words, kOne);
    for (const Benchmarks::Sample& script : Benchmarks::kScripts)
        add(
            std::string("cleaning/script/") + script.name, TextTransforms::stripTracking,
            [text = script.text](std::size_t size) { return Benchmarks::repeated(text, size); }, kOne);
    add("cleaning/mails", TextTransforms::stripTracking, mails, kOne);
    for (const auto& text : kHostile) {
        const std::string name(text.name);
        add("hostile/stripTracking/" + name, TextTransforms::stripTracking, text.make, kOne);
        add("stripTracking/" + name + "/quarter", TextTransforms::stripTracking, text.make, kOne / 4);
        add("stripTracking/" + name + "/half", TextTransforms::stripTracking, text.make, kOne / 2);
    }

    add("50MB/removeInvisibles", TextTransforms::removeInvisibles, Benchmarks::words, 50 * kMegabyte);
    const struct {
        const char* name;
        const char* piece;
    } kInvisibles[] = {{"words", "some words "},
                       {"all", "\u200B"},
                       {"chinese", "\u8C22\u8C22\u3002"},
                       {"mixed", "a\u200Bb\u8C22\u00AD"}};
    for (const auto& text : kInvisibles) {
        const auto make = [piece = text.piece](std::size_t size) { return Benchmarks::repeated(piece, size); };
        const std::string name = std::string("removeInvisibles/") + text.name;
        add(name + "/4MB", TextTransforms::removeInvisibles, make, 4 * kMegabyte);
        add(name + "/8MB", TextTransforms::removeInvisibles, make, 8 * kMegabyte);
    }
    return true;
}();

}  // namespace
