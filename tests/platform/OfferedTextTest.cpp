#include "Platform/Clipboard/OfferedText.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;

const TextFormat& named(std::string_view name) {
    return *std::ranges::find(TextFormats::kAll, name, &TextFormat::name);
}

std::vector<std::string> formatsOf(std::string_view text) {
    const OfferedText offered(text);
    std::vector<std::string> names;
    for (const TextFormat& each : TextFormats::kAll) {
        if (offered.isOfferedIn(each)) names.emplace_back(each.name);
    }
    return names;
}

TEST(OfferedText, IsOfferedInEveryPlainFormatThatCanHoldIt) {
    EXPECT_THAT(formatsOf("caf\u00e9"),
                ElementsAre("UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT"));
    EXPECT_THAT(formatsOf("5 \u20ac"), ElementsAre("UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"));
}

TEST(OfferedText, OnlyStringIsEncodedAnewAndReadBackTheSame) {
    const OfferedText text("caf\u00e9");
    for (const TextFormat& each : TextFormats::kAll) {
        if (each.type != TextFormats::Type::string) continue;
        const OfferedText::Bytes bytes = text.bytesIn(each);
        EXPECT_EQ(bytes.get() == &text.text(), each.name != "STRING") << each.name;
        EXPECT_EQ(TextFormats::decodedUntyped(each, *bytes), text.text()) << each.name;
    }
    EXPECT_EQ(*text.bytesIn(named("STRING")), "caf\xE9");
}

TEST(OfferedText, AllReadersShareOneEncoding) {
    const OfferedText text("caf\u00e9");
    EXPECT_EQ(text.bytesIn(named("STRING")), text.bytesIn(named("STRING")));
    for (const char* const same : {"", "coffee"}) {
        const OfferedText ascii(same);
        EXPECT_EQ(ascii.bytesIn(named("STRING")).get(), &ascii.text()) << "ASCII is its own encoding";
    }
}

TEST(OfferedText, BytesOutliveTheOffer) {
    OfferedText::Bytes utf8;
    OfferedText::Bytes latin1;
    {
        const OfferedText text("caf\u00e9");
        utf8 = text.bytesIn(named("UTF8_STRING"));
        latin1 = text.bytesIn(named("STRING"));
    }
    EXPECT_EQ(*utf8, "caf\u00e9");
    EXPECT_EQ(*latin1, "caf\xE9");
}

}  // namespace
}  // namespace ravlin
