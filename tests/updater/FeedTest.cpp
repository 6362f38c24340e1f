#include "Updater/Feed.h"
#include "tests/updater/FeedText.h"
#include "tests/updater/SigningKey.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using tests::EnclosureText;
using tests::FeedText;
using tests::itemText;
using tests::SigningKey;

const SigningKey& key() {
    static const SigningKey signer(1);
    return signer;
}

std::optional<Feed> read(const QByteArray& document) {
    return Feed::read(document, {key().publicKey()});
}

QByteArray content() {
    return FeedText{.expires = {}, .items = itemText("1.1.0")}.text();
}

FeedItem onlyItem(const QByteArray& item) {
    const auto feed = Feed::parse(FeedText{.expires = {}, .items = item}.text());
    if (!feed || feed->items.size() != 1) throw std::runtime_error("not one item");
    return feed->items.front();
}

std::size_t itemCount(const QByteArray& items) {
    const auto feed = Feed::parse(FeedText{.expires = {}, .items = items}.text());
    return feed ? feed->items.size() : 999;
}

// What it says

TEST(Feed, TellsItsDatesInUniversalTime) {
    const auto feed = Feed::parse(FeedText{
        .date = "Fri, 01 May 2026 14:00:00 +0200",
        .expires = "Mon, 01 Jun 2026 00:00:00 +0000",
        .items = {}}.text());
    ASSERT_TRUE(feed.has_value());
    EXPECT_EQ(feed->buildDate.toString(Qt::ISODate).toStdString(), "2026-05-01T12:00:00Z");
    EXPECT_EQ(feed->expires->toString(Qt::ISODate).toStdString(), "2026-06-01T00:00:00Z");
    EXPECT_FALSE(Feed::parse(content())->expires.has_value());
}

TEST(Feed, TellsAllOfARelease) {
    const FeedItem item = onlyItem(itemText(
        "1.1.0",
        "<sparkle:shortVersionString>1.1</sparkle:shortVersionString>"
        "<sparkle:minimumSystemVersion>2.36</sparkle:minimumSystemVersion><sparkle:criticalUpdate/>"
        "<sparkle:channel>beta</sparkle:channel><link>https://ravlin.example/news</link>"
        "<description sparkle:format=\"markdown\"><![CDATA[# New\n\n* <b>Better</b> &amp; faster\n]]></description>" +
            EnclosureText{.os = "linux-x86_64"}.text()));
    EXPECT_EQ(item.version.text().toStdString(), "1.1.0");
    EXPECT_EQ(item.displayVersion.toStdString(), "1.1");
    EXPECT_EQ(item.minimumSystem->text().toStdString(), "2.36");
    EXPECT_TRUE(item.isCritical);
    EXPECT_TRUE(item.isForAChannel);
    EXPECT_EQ(item.link.toString().toStdString(), "https://ravlin.example/news");
    EXPECT_EQ(item.notes.toStdString(), "# New\n\n* <b>Better</b> &amp; faster");
    EXPECT_TRUE(item.notesAreMarkdown);
    ASSERT_EQ(item.enclosures.size(), 1U);
    EXPECT_EQ(item.enclosures[0].url.toString().toStdString(), "https://ravlin.example/Ravlin.AppImage");
    EXPECT_EQ(item.enclosures[0].byteSize, 1000);
    EXPECT_EQ(item.enclosures[0].signature.toStdString(), "c2lnbmF0dXJl");
    EXPECT_EQ(item.enclosures[0].os.toStdString(), "linux-x86_64");
    EXPECT_EQ(item.enclosures[0].installationType.toStdString(), "appimage");
}

TEST(Feed, ReleaseHasNothingThatIsNotSaid) {
    const FeedItem item = onlyItem(itemText("1.1.0", "<description>Plain &lt;b&gt; text</description>"));
    EXPECT_EQ(item.displayVersion.toStdString(), "1.1.0");
    EXPECT_FALSE(item.minimumSystem.has_value());
    EXPECT_FALSE(item.isCritical);
    EXPECT_FALSE(item.isForAChannel);
    EXPECT_TRUE(item.link.isEmpty());
    EXPECT_EQ(item.notes.toStdString(), "Plain <b> text");
    EXPECT_FALSE(item.notesAreMarkdown);
    EXPECT_TRUE(item.enclosures.empty());
}

TEST(Feed, LeavesOutReleasesWithoutAProperVersion) {
    EXPECT_EQ(itemCount(itemText("1.1.0") + itemText("1.2.0")), 2U);
    for (const char* const version : {"", "1.1.0-beta", "latest", "1.2.3.4.5"})
        EXPECT_EQ(itemCount(itemText("1.0.1") + itemText(version)), 1U) << version;
    EXPECT_EQ(itemCount("<item><title>nothing</title></item>"), 0U);
    EXPECT_EQ(itemCount(itemText("1.1", "<sparkle:minimumSystemVersion>new</sparkle:minimumSystemVersion>")), 0U);
    EXPECT_EQ(itemCount("<item><version xmlns=\"urn:other\">1.1</version></item>"), 0U);
}

TEST(Feed, LeavesOutEnclosuresThatLackAPart) {
    const QByteArray good = EnclosureText{}.text();
    EXPECT_EQ(onlyItem(itemText("1.1", good + good)).enclosures.size(), 2U);
    const struct {
        const char* part;
        const char* instead;
    } cases[] = {
        {"1000", "0"},         {"1000", "-1"},       {"1000", "many"},        {"1000", ""},
        {"1000", "536870913"}, {"c2lnbmF0dXJl", ""}, {"https://", "ht tps:"}, {"1000", "99999999999999999999"}};
    for (const auto& [part, instead] : cases) {
        const QByteArray bad = QByteArray(good).replace(part, instead);
        EXPECT_TRUE(onlyItem(itemText("1.1", bad)).enclosures.empty()) << bad.toStdString();
    }
    EXPECT_EQ(onlyItem(itemText("1.1", QByteArray(good).replace("1000", "536870912"))).enclosures.size(), 1U);
}

TEST(Feed, IsNoneWithoutAProperDate) {
    for (const char* const date : {"", "yesterday", "2026-05-01", "Fri, 41 May 2026 12:00:00 +0000"}) {
        const QByteArray text = FeedText{.date = date, .expires = {}, .items = itemText("1.1.0")}.text();
        EXPECT_FALSE(Feed::parse(text).has_value()) << date;
    }
    EXPECT_FALSE(Feed::parse(FeedText{.expires = "later", .items = itemText("1.1.0")}.text()).has_value());
}

TEST(Feed, IsNoneWhereItIsNoFeed) {
    const QByteArray good = content();
    const QByteArray bomb =
        "<!DOCTYPE rss [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
        "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">]>";
    const QByteArray bad[] = {
        "",
        "hello",
        "<html><body>Log in to the network</body></html>",
        "<rss/>",
        "<rss><item/></rss>",
        good.first(good.size() - 3),
        good + "<more/>",
        QByteArray(good).replace("<rss", bomb + "<rss"),
        QByteArray(good).replace("<rss", "<!DOCTYPE rss SYSTEM \"file:///etc/passwd\"><rss"),
        QByteArray(good).replace("<title>Ravlin", "<title>&unknown;"),
        QByteArray(good).replace("1.1.0", "<b>1.1.0</b>"),
        QByteArray(good).replace("Ravlin", "\xff\xfe"),
    };
    for (const QByteArray& text : bad) EXPECT_FALSE(Feed::parse(text).has_value()) << text.toStdString();
}

// Whether it is genuine

TEST(Feed, GenuineFeedIsRead) {
    const auto feed = read(key().signFeed(content()));
    ASSERT_TRUE(feed.has_value());
    EXPECT_EQ(feed->items.size(), 1U);
}

TEST(Feed, EitherOfTwoKeysMaySign) {
    const SigningKey fresh(2);
    for (const SigningKey* const signer : {&key(), &fresh})
        EXPECT_TRUE(Feed::read(signer->signFeed(content()), {key().publicKey(), fresh.publicKey()}).has_value());
}

TEST(Feed, ForgedChangedOrCutFeedsAreRefused) {
    const QByteArray text = content();
    const QByteArray genuine = key().signFeed(text);
    const QByteArray forged = SigningKey(2).signFeed(text);
    const QByteArray trailer = genuine.sliced(text.size());
    const QByteArray length = QByteArray::number(text.size());
    const struct {
        const char* what;
        QByteArray document;
    } attacks[] = {
        {"no signature", text},
        {"another's signature", forged},
        {"a changed version", QByteArray(genuine).replace("1.1.0", "9.1.0")},
        {"a changed date", QByteArray(genuine).replace("2026", "2027")},
        {"cut in the content", genuine.first(text.size() / 2)},
        {"cut in the signature", genuine.first(text.size() + 60)},
        {"cut before its last line feed", genuine.first(genuine.size() - 1)},
        {"text after the signature", genuine + "<item/>"},
        {"a blank after the signature", genuine + " "},
        {"text before the content", " " + genuine},
        {"text between content and signature", text + " " + trailer},
        {"a second signature, forged, after the true one", SigningKey(2).signFeed(genuine)},
        {"a second signature, forged, before the true one", forged + trailer},
        {"the true signature twice", genuine + trailer},
        {"a length that is too small", QByteArray(genuine).replace("length: " + length, "length: 1")},
        {"a length with a zero before", QByteArray(genuine).replace("length: " + length, "length: 0" + length)},
        {"no length", QByteArray(genuine).replace("length: " + length + "\n", "")},
        {"other line ends", QByteArray(genuine).replace("\n-->\n", "\r\n-->\r\n")},
        {"a comment in the signature", QByteArray(genuine).replace("\n-->\n", "\nnote: x\n-->\n")},
        {"a portal's page", "<html><body>Log in to the network</body></html>"},
        {"compressed", QByteArray::fromHex("1f8b0800000000000003") + genuine},
        {"nothing", ""},
        {"nothing but a signature", trailer},
        {"nothing, signed", key().signFeed("")},
        {"something else, signed", key().signFeed("hello")},
        {"a document type, signed", key().signFeed("<!DOCTYPE rss []>" + text)},
    };
    for (const auto& [what, document] : attacks) EXPECT_FALSE(read(document).has_value()) << what;
}

/// One of the changes that chance or an attacker might make to a text.
QByteArray mutate(const QByteArray& text, std::mt19937& random) {
    const auto below = [&random](qsizetype limit) {
        return std::uniform_int_distribution<qsizetype>(0, limit - 1)(random);
    };
    QByteArray result = text;
    const qsizetype at = below(result.size());
    const qsizetype size = std::min(result.size() - at, below(20) + 1);
    switch (below(7)) {
        case 0: result[at] = static_cast<char>(result[at] ^ (1 << below(8))); break;
        case 1: result[at] = static_cast<char>(below(256)); break;
        case 2: result.remove(at, size); break;
        case 3: result.insert(at, text.sliced(below(text.size() - 1), 1)); break;
        case 4: result.replace(at, size, text.sliced(at / 2, size)); break;
        case 5: result.truncate(at); break;
        default: result.append(text.sliced(at)); break;
    }
    return result;
}

TEST(Feed, NoneOf60000MutationsIsAccepted) {
    const QByteArray genuine = key().signFeed(content());
    std::mt19937 random(2026);  // NOLINT(cert-msc51-cpp): the same mutations in every run
    int refused = 0;
    while (refused < 60'000) {
        QByteArray mutation = genuine;
        do mutation = mutate(mutation, random);
        while (random() % 3 == 0 && !mutation.isEmpty() && mutation.size() > 1);
        if (mutation == genuine) continue;
        ASSERT_FALSE(read(mutation).has_value()) << mutation.toStdString();
        ++refused;
    }
}

}  // namespace
}  // namespace ravlin
