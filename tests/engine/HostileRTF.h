#pragma once

#include "tests/engine/HostileTexts.h"

#include <string>
#include <vector>

namespace ravlin::tests {

/// Documents on which a careless reader of rich text takes too long or too much memory, by name.
inline std::vector<HostileText> hostileRTF(std::size_t size = 4'000'000) {
    std::string fonts = "{\\rtf1{\\fonttbl";
    for (int i = 0; fonts.size() < size; ++i) fonts += "{\\f" + std::to_string(i) + "\\fcharset204 F;}";
    std::string pages = "{\\rtf1";
    for (int i = 0; pages.size() < size; ++i)
        pages += "{\\fonttbl\\f1\\cpg" + std::to_string(i % 66'000) + "}\\f1\\'e9";
    std::vector<HostileText> texts = {
        {"many fonts", fonts},
        {"many code pages", pages},
        {"closing braces", filled("{\\rtf1{", "}", "", size)},
        {"deep groups that are closed", "{\\rtf1" + repeated("{", size / 2) + repeated("}", size / 2)},
        {"deep groups that change something and are closed",
         "{\\rtf1" + repeated("{\\v0 ", size / 6 * 5) + repeated("}", size / 6)},
        {"deep groups that are skipped", "{\\rtf1{\\pict" + repeated("{", size / 2) + repeated("}", size / 2)},
        {"a long word", filled("{\\rtf1\\", "a", "", size)},
        {"a long number", filled("{\\rtf1\\u", "9", "", size)},
        {"a long fallback", filled("{\\rtf1\\uc2000000000\\u8364", "\\b", "", size)},
        {"one long run of bytes", filled("{\\rtf1\\ansicpg932", "\x95\x5D", "", size)},
        {"one long run of bytes that are no character", filled("{\\rtf1\\ansicpg932", "\xFF", "", size)},
    };
    for (const char* const piece : {"{",
                                    "{\\v ",
                                    "{\\f1",
                                    "{\\*",
                                    "{\\*\\x",
                                    "{\\*\\x}",
                                    "{\\pict",
                                    "{\\upr",
                                    "{\\upr{",
                                    "{\\upr{}}",
                                    "{\\fonttbl",
                                    "{\\fonttbl\\f1}",
                                    "\\",
                                    "\\'",
                                    "\\'e9",
                                    "\\'e9 ",
                                    "\\'9",
                                    "\\bin",
                                    "\\bin1 ",
                                    "\\bin1000000000 ",
                                    "\\u",
                                    "\\u1",
                                    "\\u8364?",
                                    "\\u-10179?",
                                    "\\uc9\\u1 ",
                                    "\\par",
                                    "\\b",
                                    "\\b0",
                                    "\\zzzzz ",
                                    "\\f32767\\plain",
                                    "\\v\\v0",
                                    "\\deff1\\deff2",
                                    "\\ansicpg932\\'95\\ansicpg949\\'95",
                                    "\\fcharset204\\cpg1251",
                                    "\\*",
                                    "\\|",
                                    "\\cell\\row",
                                    "\xE9",
                                    "\xE9 ",
                                    "\r",
                                    "a"})
        texts.push_back({piece, filled("{\\rtf1", piece, "", size)});
    return texts;
}

}  // namespace ravlin::tests
