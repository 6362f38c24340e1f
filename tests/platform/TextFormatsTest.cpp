#include "Platform/Clipboard/TextFormats.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using namespace std::literals;
using TextFormats::Encoding;
using TextFormats::Type;

const TextFormat& named(std::string_view name) {
    return *std::ranges::find(TextFormats::kAll, name, &TextFormat::name);
}

TEST(TextFormats, BestIsTheFirstOfTheTableWhateverTheOrderOfTheOffer) {
    const std::vector<std::string> order = {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT"};
    for (auto first = order.begin(); first != order.end(); ++first) {
        const std::vector<std::string> offered(std::make_reverse_iterator(order.end()),
                                               std::make_reverse_iterator(first));
        EXPECT_EQ(TextFormats::best(Type::string, offered)->name, *first);
    }
    EXPECT_EQ(TextFormats::best(Type::rtf, {"text/richtext", "application/rtf", "text/rtf"})->name, "text/rtf");
    EXPECT_EQ(TextFormats::best(Type::rtf, {"text/richtext", "application/rtf"})->name, "application/rtf");
}

TEST(TextFormats, NothingIsBestWhereTheTypeIsNotOffered) {
    const std::vector<std::string> offered = {"text/plain", "text/uri-list", "image/png", "text/html+xml", ""};
    EXPECT_TRUE(TextFormats::best(Type::string, offered));
    EXPECT_FALSE(TextFormats::best(Type::rtf, offered));
    EXPECT_FALSE(TextFormats::best(Type::html, offered));
    EXPECT_FALSE(TextFormats::best(Type::string, {}));
}

TEST(TextFormats, LetterCaseAndBlanksOfANameDoNotCountAndItIsKeptAsOffered) {
    const TextFormat& format = named("text/plain;charset=utf-8");
    for (const char* const name :
         {"text/plain;charset=UTF-8", "text/plain; charset=utf-8", "Text/Plain ; Charset=UTF-8"}) {
        EXPECT_TRUE(TextFormats::isNameOf(name, format)) << name;
        const auto match = TextFormats::best(Type::string, {"text/plain", name});
        EXPECT_EQ(&match->format, &format) << name;
        EXPECT_EQ(match->name, name);
    }
    for (const char* const name : {"text/plain;charset=utf-16", "text/plain", "text/plain;charset=utf-8;x=y", ""})
        EXPECT_FALSE(TextFormats::isNameOf(name, format)) << name;
}

TEST(TextFormats, TypeOfAnAnswerTellsTheEncodingUnlessTheFormatDoes) {
    const struct {
        const char* format;
        const char* told;  // null: a type that is not in the table
        std::optional<Encoding> encoding;
    } rows[] = {
        {"UTF8_STRING", "UTF8_STRING", Encoding::utf8},
        {"UTF8_STRING", "STRING", Encoding::utf8},
        {"UTF8_STRING", nullptr, Encoding::utf8},
        {"text/plain;charset=utf-8", "STRING", Encoding::utf8},
        {"text/plain", "text/plain", Encoding::utf8},
        {"text/plain", "STRING", Encoding::latin1},
        {"text/plain", nullptr, Encoding::utf8},
        {"STRING", "STRING", Encoding::latin1},
        {"STRING", "UTF8_STRING", Encoding::utf8},
        {"STRING", nullptr, std::nullopt},
        {"TEXT", "STRING", Encoding::latin1},
        {"TEXT", "UTF8_STRING", Encoding::utf8},
        {"TEXT", "TEXT", Encoding::utf8},
        {"TEXT", nullptr, std::nullopt},
    };
    for (const auto& row : rows) {
        const TextFormat* const told = row.told != nullptr ? &named(row.told) : nullptr;
        EXPECT_EQ(TextFormats::encodingOf(named(row.format), told), row.encoding)
            << row.format << " answered as " << (row.told != nullptr ? row.told : "something else");
    }
}

TEST(TextFormats, BytesAreDecodedByTheirEncoding) {
    EXPECT_EQ(TextFormats::decoded(Encoding::utf8, "caf\u00e9"), "caf\u00e9");
    EXPECT_EQ(TextFormats::decoded(Encoding::utf8, "caf\xE9"), std::nullopt);
    EXPECT_EQ(TextFormats::decoded(Encoding::latin1, "caf\xE9"), "caf\u00e9");
    EXPECT_EQ(TextFormats::decoded(Encoding::latin1, "\xC3\xA9"), "\u00c3\u00a9") << "though it could be UTF-8";
    EXPECT_EQ(TextFormats::decoded(Encoding::utf8, ""), "");
    for (const Encoding each : {Encoding::utf8, Encoding::latin1})
        EXPECT_EQ(TextFormats::decoded(each, "a\0b\0\0"s), "a\0b\0"s) << "one NUL less";
}

TEST(TextFormats, WithoutATypeOfTheAnswerOnlyStringMayBeLatin1) {
    for (const TextFormat& each : TextFormats::kAll) {
        if (each.type != Type::string) continue;
        EXPECT_EQ(TextFormats::decodedUntyped(each, "\u20ac\0"s), "\u20ac") << each.name;
        EXPECT_EQ(TextFormats::decodedUntyped(each, "\xE9"),
                  each.name == "STRING" ? std::optional("\u00e9"s) : std::nullopt)
            << each.name;
    }
}

}  // namespace
}  // namespace ravlin
