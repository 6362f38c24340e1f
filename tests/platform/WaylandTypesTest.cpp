// The types under which WaylandPasteboard reads and offers texts.

#include "tests/platform/WaylandClients.h"

#include <optional>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

using testing::ElementsAre;

struct PlainCase {
    const char* name;
    OwnerPlan plan;
    std::optional<std::string> expected;
};
std::ostream& operator<<(std::ostream& stream, const PlainCase& each) {
    return stream << each.name;
}

const PlainCase kPlainCases[] = {
    {"UTF8ByItsMIMETypeIsPreferred",
     {.content = {{"STRING", "s"}, {"TEXT", "t"}, {"text/plain", "p"}, {"text/plain;charset=utf-8", "u"}}},
     "u"},
    {"UTF8ByItsNameOnX11IsPreferred", {.content = {{"STRING", "s"}, {"text/plain", "p"}, {"UTF8_STRING", "u"}}}, "u"},
    {"TextPlainBeforeString", {.content = {{"STRING", "s"}, {"text/plain", "p"}}}, "p"},
    {"CaseOfATypeDoesNotCount", {.content = {{"text/plain;charset=UTF-8", "u"}, {"text/plain", "p"}}}, "u"},
    {"SpacesInATypeDoNotCount", {.content = {{"text/plain; charset=utf-8", "u"}, {"text/plain", "p"}}}, "u"},
    {"OtherCharacterSetsAreNotRead", {.content = {{"text/plain;charset=utf-16", "u"}}}, std::nullopt},
    {"StringInUTF8", {.content = {{"STRING", "\u20ac"}}}, "\u20ac"},
    {"StringInLatin1", {.content = {{"STRING", "\xE9"}}}, "\u00e9"},
    {"TextInUTF8", {.content = {{"TEXT", "\u20ac"}}}, "\u20ac"},
    {"TextThatIsNoUTF8IsAbsent", {.content = {{"TEXT", "\xE9"}}}, std::nullopt},
    {"InvalidUTF8IsNotReadAsLatin1Either", {.content = {{"UTF8_STRING", "\xE9"}, {"STRING", "\xE9"}}}, std::nullopt}};

class WaylandTypesOfPlainText : public testing::TestWithParam<PlainCase> {};

TEST_P(WaylandTypesOfPlainText, IsAsTabled) {
    const auto pasteboard = openPasteboard();
    const ForeignSource source(GetParam().plan);
    EXPECT_EQ(pasteboard->string(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(WaylandTypes, WaylandTypesOfPlainText, testing::ValuesIn(kPlainCases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(WaylandTypes, EveryOfferedTypeHasItsEncoding) {
    const auto pasteboard = openPasteboard();
    pasteboard->setString("caf\u00e9");
    Paster paster;
    EXPECT_THAT(paster.types(), ElementsAre("STRING", "TEXT", "UTF8_STRING", "text/plain", "text/plain;charset=utf-8"));
    EXPECT_EQ(paster.read("STRING", *pasteboard), "caf\xE9");
    for (const char* type : {"TEXT", "UTF8_STRING", "text/plain", "text/plain;charset=utf-8"}) {
        EXPECT_EQ(paster.read(type, *pasteboard), "caf\u00e9") << type;
    }
}

TEST(WaylandTypes, TextBeyondLatin1IsNotOfferedAsString) {
    const auto pasteboard = openPasteboard();
    pasteboard->setString("5 \u20ac");
    Paster paster;
    EXPECT_THAT(paster.types(), ElementsAre("TEXT", "UTF8_STRING", "text/plain", "text/plain;charset=utf-8"));
}

TEST(WaylandTypes, ManyReadersAreServedAtOnce) {
    const auto pasteboard = openPasteboard();
    const std::string text = textOfSize(1000000);
    pasteboard->setString(text);
    Paster paster;
    std::vector<Descriptor> pipes;
    std::vector<std::string> texts(20);
    for (std::size_t i = 0; i < texts.size(); ++i) pipes.push_back(paster.begin("UTF8_STRING"));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_TRUE(serveUntil(*pasteboard, [&] { return !takeFrom(pipes[i].get(), texts[i]); }));
        EXPECT_TRUE(texts[i] == text);
    }
}

TEST(WaylandTypes, ReaderThatGoesAwayInTheMiddleDisturbsNobody) {
    const auto pasteboard = openPasteboard();
    const std::string text = textOfSize(1000000);
    pasteboard->setString(text);
    Paster paster;
    paster.begin("UTF8_STRING");  // and closes it at once
    EXPECT_EQ(paster.read("UTF8_STRING", *pasteboard), text);
}

}  // namespace
}  // namespace ravlin::tests
