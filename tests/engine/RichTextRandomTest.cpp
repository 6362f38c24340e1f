// Random rich text: written in every way, cut off, damaged, and made to be slow.

#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/RichText/RichText.h"
#include "tests/engine/Deadline.h"
#include "tests/engine/texts/HostileRTF.h"
#include "tests/engine/texts/RandomRTF.h"

#include <random>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using RichText::plainText;
using tests::RTFDocument;

/// No byte of a document yields more than the three bytes of U+FFFD.
constexpr std::size_t kMostBytesPerByte = 3;

void expectValid(const std::optional<std::string>& text, std::string_view rtf) {
    if (!text) return;
    EXPECT_TRUE(Unicode::isValidUTF8(*text)) << rtf;
    EXPECT_LE(text->size(), kMostBytesPerByte * rtf.size()) << rtf;
}

std::string_view withoutLastCharacters(std::string_view text, int count) {
    for (; count > 0 && !text.empty(); --count) text.remove_suffix(Unicode::decodeBefore(text, text.size()).byteSize);
    return text;
}

TEST(RandomRichText, GivesTheTextThatWasWritten) {
    tests::RandomRTF documents(1);
    for (int i = 0; i < 30'000; ++i) {
        const RTFDocument document = documents.next();
        ASSERT_EQ(plainText(document.rtf), document.text) << document.rtf;
    }
}

TEST(RandomRichText, CutOffAnywhereGivesTheBeginningOfItsText) {
    constexpr std::string_view kSignature = "{\\rtf";
    tests::RandomRTF documents(2);
    for (int i = 0; i < 150; ++i) {
        const RTFDocument document = documents.next();
        for (std::size_t size = 0; size < document.rtf.size(); ++size) {
            const std::string_view rtf = std::string_view(document.rtf).substr(0, size);
            const std::optional<std::string> text = plainText(rtf);
            expectValid(text, rtf);
            ASSERT_EQ(text.has_value(), size >= kSignature.size()) << rtf;
            // Half a token may be another one, and half a character becomes U+FFFD: two characters at most.
            ASSERT_TRUE(document.text.starts_with(withoutLastCharacters(text.value_or(""), 2))) << rtf;
        }
    }
}

TEST(RandomRichText, DamagedGivesAValidText) {
    constexpr std::string_view kBytes = "{}\\'*;- \n\r\tuvfb0159\x80\x95\xE9\xFF";
    tests::RandomRTF documents(3);
    std::mt19937_64 random(3);
    for (int i = 0; i < 20'000; ++i) {
        std::string rtf = documents.next().rtf;
        for (auto count = random() % 6; count < 6; ++count) {
            const std::size_t at = random() % rtf.size();
            switch (random() % 3) {
                case 0: rtf[at] = kBytes[random() % kBytes.size()]; break;
                case 1: rtf.erase(at, random() % 12); break;
                default: rtf.insert(at, rtf.substr(random() % rtf.size(), random() % 30)); break;
            }
        }
        expectValid(plainText(rtf), rtf);
        expectValid(plainText("{\\rtf1" + rtf), rtf);
    }
}

TEST(RandomRichText, OfAnyBytesIsAValidText) {
    std::mt19937_64 random(4);
    for (int i = 0; i < 20'000; ++i) {
        std::string rtf = "{\\rtf1";
        for (auto count = random() % 200; count > 0; --count) rtf += static_cast<char>(random() % 256);
        expectValid(plainText(rtf), rtf);
    }
}

TEST(HostileRichText, IsDoneInTime) {
    constexpr unsigned kSeconds = 5;
    for (const tests::HostileText& hostile : tests::hostileRTF()) {
        SCOPED_TRACE(hostile.name);
        const tests::Deadline deadline(kSeconds);
        const std::optional<std::string> text = plainText(hostile.text);
        ASSERT_TRUE(text);
        EXPECT_LE(text->size(), kMostBytesPerByte * hostile.text.size());
    }
}

TEST(HostileRichText, IsDoneInTimeWhenItIsLarge) {
    constexpr std::size_t kSize = 20'000'000;
    const tests::Deadline deadline(60);
    for (const char* const piece : {"{\\v ", "\\'e9", "\\bin1000000000 x", "{"})
        EXPECT_TRUE(plainText(tests::filled("{\\rtf1", piece, "", kSize))) << piece;
}

}  // namespace
}  // namespace ravlin
