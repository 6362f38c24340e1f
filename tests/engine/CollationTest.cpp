#include "Engine/Support/Collation.h"
#include "Engine/Support/LineModel.h"
#include "tests/engine/Deadline.h"
#include "tests/engine/oracles/PlainCollation.h"
#include "tests/engine/texts/AlphabetTexts.h"

#include <unicode/coll.h>

#include <algorithm>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

std::vector<std::string_view> sorted(std::span<const std::string_view> texts, const std::string& locale,
                                     bool ascending) {
    Collation::Sorter sorter(locale);
    for (const std::string_view text : texts) sorter.add(text);
    sorter.sort(ascending);
    std::vector<std::string_view> result;
    sorter.forEach([&](std::string_view text) { result.push_back(text); });
    return result;
}

std::string sortedLines(std::string_view text, const std::string& locale = "", bool ascending = true) {
    return LineModel::join(sorted(LineModel::split(text), locale, ascending));
}

TEST(Collation, ReadsTheLocaleFromAPOSIXName) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", ""},
        {"C", ""},
        {"C.UTF-8", ""},
        {"POSIX", ""},
        {"en_US_POSIX", ""},
        {"en_US.UTF-8", "en_US"},
        {"de", "de"},
        {"de_DE.UTF-8@euro", "de_DE"},
        {"de_DE@euro", "de_DE"},
        {"sr_RS@latin", "sr_Latn_RS"},
        {"sr_RS.UTF-8@latin", "sr_Latn_RS"},
        {"uz_UZ.UTF-8@cyrillic", "uz_Cyrl_UZ"},
        {"sr@latin", "sr_Latn"},
    };
    for (const auto& [posixName, expected] : vectors) EXPECT_EQ(Collation::icuLocale(posixName), expected) << posixName;
}

TEST(Collation, OrdersAsTheRootLocaleDoes) {
    EXPECT_EQ(sortedLines("coop\nco-op\nco op"), "co op\nco-op\ncoop");
    EXPECT_EQ(sortedLines("b\n1\n,\n-\n_\n \n"), "\n \n_\n-\n,\n1\nb");
    EXPECT_EQ(sortedLines("côté\ncôte\ncoté\ncote"), "cote\ncoté\ncôte\ncôté");
    EXPECT_EQ(sortedLines("á\na\nb"), "a\ná\nb");
    EXPECT_EQ(sortedLines("ß\nss"), "ss\nß");
    EXPECT_EQ(sortedLines("a\nb\r\nb \nba\nb"), "a\nb\nb\r\nb \nba");
}

TEST(Collation, TextsThatDifferInCaseOrInvisiblyOnlyAreEqual) {
    for (const std::string_view text : {"apple\nApple", "Apple\napple", "あ\nア\nｱ", "a\nA\nＡ", "1\n①\n１",
                                        "fi\nﬁ\nFI", "...\n…", "ab\na\u200bb\nab", "x\nx\u0001", "é\ne\u0301\nÉ"}) {
        EXPECT_EQ(sortedLines(text), text);
        EXPECT_EQ(sortedLines(text, "", /*ascending=*/false), text);
    }
}

TEST(Collation, FollowsTheLanguage) {
    EXPECT_EQ(sortedLines("ö\nä\nå\nz", "sv_SE"), "z\nå\nä\nö");
    EXPECT_EQ(sortedLines("o\nñ\nn", "es_ES"), "n\nñ\no");
    EXPECT_EQ(sortedLines("chico\ncubo", "cs_CZ"), "cubo\nchico");
    EXPECT_EQ(sortedLines("i\nı", "tr_TR"), "ı\ni");
    EXPECT_EQ(sortedLines("côté\ncôte\ncoté\ncote", "fr_CA"), "cote\ncôte\ncoté\ncôté");
    EXPECT_EQ(sortedLines("coop\nco op", "th_TH"), "co op\ncoop");
    EXPECT_EQ(sortedLines("b\na", "xx_NOSUCH"), "a\nb");
}

TEST(Collation, IsAStableSortByTheCollatorInRandomTexts) {
    const std::pair<const char*, std::u32string_view> alphabets[] = {
        {"", U"aAbB12 -_\n\n"},
        {"", U"aeoéèêôö\u0301\u0308ßﬁAE\n\n"},
        {"", U"あアｱ①1一二三\u200b\u0001\r\n\n"},
        {"sv", U"zåäöaoÅÄ\n\n"},
        {"th", U"กขคเแ็่ -a\n\n"},
        {"fr_CA", U"coteôé\u0301\n\n"},
    };
    for (const auto& [locale, alphabet] : alphabets) {
        tests::AlphabetTexts texts(alphabet, 60);
        for (int i = 0; i < 1'500; ++i) {
            const std::string text = texts.next();
            for (const bool ascending : {true, false})
                ASSERT_EQ(sortedLines(text, locale, ascending), tests::plainlySorted(text, locale, ascending)) << text;
        }
    }
}

TEST(Collation, ComparesLongTextsLikeShortOnes) {
    // At sizes where memory is allocated differently.
    std::string text;
    for (const char* const end : {"b", "", "A", "á", "a", "B", "ab"})
        for (const std::size_t size : {3U, 0x8000U, 0x10000U - 2, 0x10000U, 0x10001U, 0x100000U, 0x140000U})
            text += std::string(size, 'x') + end + '\n';
    for (const bool ascending : {true, false})
        EXPECT_EQ(sortedLines(text, "", ascending), tests::plainlySorted(text, "", ascending));
}

TEST(Collation, TakesATextThatIsMostlyInvisibleInTime) {
    // Comparing it with another means going through all of it.
    std::string invisible;
    for (int i = 0; i < 150'000; ++i) invisible += "\u0600";
    std::string text;
    for (int i = 0; i < 30'000; ++i) text += "word" + std::to_string(i) + "\n";
    text += invisible + "word15000";
    const tests::Deadline deadline(20);
    for (const bool ascending : {true, false})
        EXPECT_TRUE(sortedLines(text, "", ascending).find("\nword15000\n" + invisible + "word15000\n") !=
                    std::string::npos);
}

TEST(Collation, CutsRunsOfMarksThatNoLanguageHas) {
    // 64 marks count; what comes after them in the same run does not.
    std::string marks;
    for (int i = 0; i < 63; ++i) marks += "\u0301";
    EXPECT_EQ(sortedLines("a" + marks + "\u0308\na" + marks + "\u0301"), "a" + marks + "\u0301\na" + marks + "\u0308");
    const std::string tie = "a" + marks + "\u0301\u0308\na" + marks + "\u0301\u0301";
    EXPECT_EQ(sortedLines(tie), tie);
    EXPECT_EQ(sortedLines("b\na" + marks + marks), "a" + marks + marks + "\nb");
}

/// Sets and restores variables of the environment.
class UserLocale : public testing::Test {
protected:
    UserLocale() {
        for (const char* const name : kNames) {
            const char* const value = std::getenv(name);
            saved_.emplace_back(value != nullptr, value != nullptr ? value : "");
            unsetenv(name);
        }
    }
    ~UserLocale() override {
        for (std::size_t i = 0; i < saved_.size(); ++i)
            if (saved_[i].first)
                setenv(kNames[i], saved_[i].second.c_str(), 1);
            else
                unsetenv(kNames[i]);
    }

private:
    static constexpr const char* kNames[] = {"LC_ALL", "LC_COLLATE", "LANG"};
    std::vector<std::pair<bool, std::string>> saved_;
};

TEST_F(UserLocale, IsTheFirstOfThreeVariablesThatIsNotEmpty) {
    EXPECT_EQ(Collation::userLocale(), "");
    setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_EQ(Collation::userLocale(), "de_DE");
    setenv("LC_COLLATE", "sv_SE.UTF-8", 1);
    EXPECT_EQ(Collation::userLocale(), "sv_SE");
    setenv("LC_ALL", "", 1);
    EXPECT_EQ(Collation::userLocale(), "sv_SE");
    setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_EQ(Collation::userLocale(), "");
}

}  // namespace
}  // namespace ravlin
