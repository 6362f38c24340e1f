// Update feeds: only what the key's holder signed is genuine, and what is read from anyone's feed is sound.

#include "Updater/Feed.h"
#include "Updater/UpdateChoice.h"
#include "fuzz/Fuzz.h"
#include "tests/updater/SigningKey.h"

namespace {

using ravlin::Fuzz::expect;

/// The only feed that the key's holder ever signed; the corpus has it, for the fuzzer to change.
constexpr QByteArrayView kContent =
    "<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>"
    "<lastBuildDate>Fri, 01 May 2026 12:00:00 +0000</lastBuildDate>"
    "<item><sparkle:version>1.1.0</sparkle:version></item></channel></rss>\n";

/// However much is in a feed, the choice follows the rules.
void checkChoice(const ravlin::Feed& feed) {
    const ravlin::UpdateCircumstances circumstances = {.current = *ravlin::Version::parse(u"1.0.0"),
                                                       .system = *ravlin::Version::parse(u"2.36"),
                                                       .architecture = QStringLiteral("x86_64"),
                                                       .now = feed.buildDate,
                                                       .newestFeed = {},
                                                       .skippedVersion = {},
                                                       .isAskedForByUser = true};
    const ravlin::UpdateChoice choice = ravlin::chooseUpdate(feed, circumstances);
    const auto* const chosen = std::get_if<ravlin::ChosenUpdate>(&choice);
    if (chosen == nullptr) return;
    expect(chosen->item.version > circumstances.current, "never back");
    expect(!chosen->item.minimumSystem || *chosen->item.minimumSystem <= circumstances.system, "runs here");
    expect(!chosen->enclosure || chosen->enclosure->byteSize <= ravlin::Feed::kMaxEnclosureSize, "of a sane size");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ravlin::tests::SigningKey key;
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    static const QByteArray genuine = key.signFeed(kContent.toByteArray());
    const auto part = ravlin::Feed::genuinePart(input, {key.publicKey()});
    expect(part.has_value() == (input == genuine), "only what was signed is genuine");
    if (const auto feed = ravlin::Feed::parse(input)) checkChoice(*feed);

    const QByteArray document = key.signFeed(input);
    const auto content = ravlin::Feed::genuinePart(document, {key.publicKey()});
    expect(content ? *content == input : input.isEmpty(), "what is signed is what is read");
    return 0;
}
