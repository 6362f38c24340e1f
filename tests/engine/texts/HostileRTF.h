#pragma once

#include "tests/engine/texts/HostileTexts.h"

#include <string>
#include <string_view>
#include <vector>

namespace ravlin::tests {

/// Documents on which a careless rich-text reader takes too long or too much memory, by name.
inline std::vector<HostileText> hostileRTF(std::size_t size = 1'000'000) {
    std::string fonts = "{\\rtf1{\\fonttbl";
    for (int i = 0; fonts.size() < size; ++i) fonts += "{\\f" + std::to_string(i) + "\\fcharset204 F;}";
    std::string pages = "{\\rtf1";
    for (int i = 0; pages.size() < size; ++i)
        pages += "{\\fonttbl\\f1\\cpg" + std::to_string(i % 66'000) + "}\\f1\\'e9";
    const auto all = [size](std::string_view piece) { return filled("{\\rtf1", piece, "", size); };
    return {
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
        {"open groups", all("{")},
        {"open groups that change something", all("{\\v ")},
        {"open groups with fonts", all("{\\f1")},
        {"open groups with a star", all("{\\*")},
        {"open groups that are optional", all("{\\*\\x")},
        {"optional groups", all("{\\*\\x}")},
        {"open pictures", all("{\\pict")},
        {"open pairs of versions", all("{\\upr")},
        {"open pairs of open versions", all("{\\upr{")},
        {"pairs of versions", all("{\\upr{}}")},
        {"open font tables", all("{\\fonttbl")},
        {"font tables", all("{\\fonttbl\\f1}")},
        {"backslashes", all("\\")},
        {"hexadecimal without digits", all("\\'")},
        {"hexadecimal with one digit", all("\\'9")},
        {"hexadecimal bytes", all("\\'e9")},
        {"hexadecimal bytes between spaces", all("\\'e9 ")},
        {"binary data without a size", all("\\bin")},
        {"binary data of one byte", all("\\bin1 ")},
        {"too much binary data", all("\\bin1000000000 ")},
        {"Unicode characters without a number", all("\\u")},
        {"Unicode characters without a fallback", all("\\u1")},
        {"Unicode characters", all("\\u8364?")},
        {"halves of characters", all("\\u-10179?")},
        {"changing fallbacks", all("\\uc9\\u1 ")},
        {"paragraphs", all("\\par")},
        {"formatting", all("\\b")},
        {"formatting that ends", all("\\b0")},
        {"unknown words", all("\\zzzzz ")},
        {"changing fonts", all("\\f32767\\plain")},
        {"changing default fonts", all("\\deff1\\deff2")},
        {"charsets of no font", all("\\fcharset204\\cpg1251")},
        {"hidden text that ends", all("\\v\\v0")},
        {"halves of characters in changing code pages", all("\\ansicpg932\\'95\\ansicpg949\\'95")},
        {"stars", all("\\*")},
        {"symbols", all("\\|")},
        {"table cells", all("\\cell\\row")},
        {"bytes that are not ASCII between spaces", all("\xE9 ")},
        {"line ends", all("\r")},
        {"letters", all("a")},
    };
}

}  // namespace ravlin::tests
