#pragma once

#include "tests/engine/texts/HostileTexts.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// Texts on which a careless link detector takes minutes, by name.
namespace ravlin::Benchmarks {

inline std::string pieces(const char* piece, std::size_t size) {
    return tests::repeated(piece, size);
}

/// One link of very many items, of which none, or all, are removed.
inline std::function<std::string(std::size_t size)> items(const char* item) {
    return [=](std::size_t size) { return tests::filled("https://a.test/?", item, "", size); };
}

struct HostileLinks {
    const char* name;
    std::function<std::string(std::size_t size)> make;
};
inline const std::vector<HostileLinks> kHostileLinks = {
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
    {"hostsWithoutDomain", [](std::size_t size) { return pieces("www.a ", size); }},
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

}  // namespace ravlin::Benchmarks
