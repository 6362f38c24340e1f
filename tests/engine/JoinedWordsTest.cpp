#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/JoinedWords.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(JoinedWords, AreMappedWithASeparatorBetween) {
    EXPECT_EQ(Words::joined("getJSON", '_', Unicode::appendUpperCased), "GET_JSON");
    EXPECT_EQ(Words::joined(" a  b ", '-', Unicode::appendUpperCased), "A-B");
    EXPECT_EQ(Words::joined("stra\u00DFe", '-', Unicode::appendUpperCased), "STRASSE");
    EXPECT_EQ(Words::joined(" - ", '-', Unicode::appendUpperCased), "");
}

TEST(JoinedWords, AreCapitalisedEachOnItsOwn) {
    EXPECT_EQ(Words::capitalised("JSON parser", /*isFirstCapitalised=*/false), "jsonParser");
    EXPECT_EQ(Words::capitalised("JSON parser", /*isFirstCapitalised=*/true), "JsonParser");
    EXPECT_EQ(Words::capitalised("\u01C6 \u01C6", /*isFirstCapitalised=*/false), "\u01C6\u01C4");
    EXPECT_EQ(Words::capitalised("\u0391\u03A3 \u0391\u03A3", /*isFirstCapitalised=*/false),
              "\u03B1\u03C2\u0391\u03C2");
    EXPECT_EQ(Words::capitalised("", /*isFirstCapitalised=*/true), "");
}

TEST(JoinedWords, MayBeLongerThanWhatIsMappedAtOnce) {
    for (const std::size_t size : {4094U, 4095U, 4096U, 4097U, 10000U})
        for (const std::string_view last : {"b", "\u00E9"}) {
            const std::string word(size, 'a');
            const std::string upper(size, 'A');
            const std::string text = word + " " + word + " c" + std::string(last);
            const std::string lastUpper = Unicode::upperCased(last);
            EXPECT_EQ(Words::joined(text, '_', Unicode::appendUpperCased), upper + "_" + upper + "_C" + lastUpper);
            const std::string second = "A" + word.substr(1) + "C" + std::string(last);
            EXPECT_EQ(Words::capitalised(text, /*isFirstCapitalised=*/false), word + second);
            EXPECT_EQ(Words::capitalised(text, /*isFirstCapitalised=*/true), "A" + word.substr(1) + second);
        }
}

}  // namespace
}  // namespace ravlin
