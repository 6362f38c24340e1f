#include "Engine/Support/Links/CharacterReference.h"
#include "tests/engine/Command.h"

#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Links::referenceAt;
using Links::sizeOfReferenceBefore;

TEST(CharacterReference, IsANameOrANumberBetweenAmpersandAndSemicolon) {
    for (const std::string_view text : {"&lt;", "&nbsp;", "&#39;", "&#x27;", "&frac12;", "&amp;", "&thetasym;"}) {
        EXPECT_EQ(referenceAt(text, 0).size, text.size()) << text;
        EXPECT_EQ(referenceAt(std::string(text) + "x;", 0).size, text.size()) << text;
        EXPECT_EQ(sizeOfReferenceBefore("a" + std::string(text), 0, text.size() + 1), text.size()) << text;
    }
    for (const std::string_view text : {"&", "&;", "&#;", "&a;", "&lt", "&l t;", "&1a;", "&a=b;", "&abcdefghij;",
                                        "&flag;", "&Nbsp;", "&nbspx;", "&amp#;"}) {
        EXPECT_EQ(referenceAt(text, 0).size, 0U) << text;
        EXPECT_EQ(sizeOfReferenceBefore(text, 0, text.size()), 0U) << text;
    }
}

TEST(CharacterReference, HasEveryNameThatHTMLKnows) {
    const std::string names = tests::outputOf(
        "/usr/bin/python3 -c 'from html.entities import html5; print(*(name for name in html5 if name[-1] == \";\"))'",
        "");
    std::istringstream stream(names);
    std::size_t count = 0;
    for (std::string name; stream >> name; ++count)
        EXPECT_EQ(referenceAt("&" + name + "x;", 0).size, name.size() + 1) << name;
    EXPECT_EQ(count, 2125U);
}

TEST(CharacterReference, TellsWhereItIsAnAmpersand) {
    for (const char* const text : {"&amp;", "&AMP;", "&#38;", "&#038;", "&#x26;", "&#X26;"})
        EXPECT_TRUE(referenceAt(text, 0).isAmpersand) << text;
    for (const char* const text : {"&lt;", "&#380;", "&amp", "&ampx;"})
        EXPECT_FALSE(referenceAt(text, 0).isAmpersand) << text;
}

TEST(CharacterReference, IsLookedForWithinItsBounds) {
    EXPECT_EQ(sizeOfReferenceBefore("&lt;", 1, 4), 0U);
    EXPECT_EQ(sizeOfReferenceBefore("&lt;;", 0, 5), 0U);
    EXPECT_EQ(sizeOfReferenceBefore("x;", 0, 2), 0U);
}

}  // namespace
}  // namespace ravlin
