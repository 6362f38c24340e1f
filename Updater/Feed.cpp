#include "Updater/Feed.h"

#include <QXmlStreamReader>

namespace ravlin {
namespace {

constexpr QByteArrayView kTrailerStart("<!-- sparkle-signatures:\nedSignature: ");
constexpr QByteArrayView kTrailerMiddle("\nlength: ");
constexpr QByteArrayView kTrailerEnd("\n-->\n");

constexpr QLatin1String kSparkle("http://www.andymatuschak.org/xml-namespaces/sparkle");
constexpr QLatin1String kRavlin("urn:ravlin:update");

QDateTime parseDate(const QString& text) {
    return QDateTime::fromString(text.trimmed(), Qt::RFC2822Date).toUTC();
}

/// Reads one feed and skips elements that it does not know.
class FeedReader {
public:
    explicit FeedReader(QByteArrayView xml) : xml_(xml.toByteArray()) {}

    std::optional<Feed> read();

private:
    bool is(QLatin1String space, QLatin1String name) const {
        return xml_.namespaceUri() == space && xml_.name() == name;
    }
    bool is(QLatin1String name) const { return xml_.namespaceUri().isEmpty() && xml_.name() == name; }
    QString text() { return xml_.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement).trimmed(); }
    QString attribute(QLatin1String name) const { return xml_.attributes().value(QString(), name).toString(); }
    QString sparkleAttribute(QLatin1String name) const { return xml_.attributes().value(kSparkle, name).toString(); }

    bool enter(QLatin1String name);
    void refuseDocumentType();
    void readChannel();
    void readItem();
    void readItemPart(FeedItem& item);
    void readNotes(FeedItem& item);
    void readEnclosure(FeedItem& item);

    QXmlStreamReader xml_;
    Feed feed_;
    QString version_;
    bool isProper_ = true;  // the item that is read
};

std::optional<Feed> FeedReader::read() {
    refuseDocumentType();
    if (xml_.name() != QLatin1String("rss") || !enter(QLatin1String("channel"))) return std::nullopt;
    readChannel();
    while (!xml_.atEnd()) xml_.readNext();
    if (xml_.hasError() || !feed_.buildDate.isValid()) return std::nullopt;
    if (feed_.expires && !feed_.expires->isValid()) return std::nullopt;
    return feed_;
}

/// Goes to the first element, which has to come before any declaration of a document type.
void FeedReader::refuseDocumentType() {
    while (!xml_.atEnd() && !xml_.isStartElement()) {
        xml_.readNext();
        if (xml_.isDTD()) xml_.raiseError();
    }
}

bool FeedReader::enter(QLatin1String name) {
    while (xml_.readNextStartElement()) {
        if (is(name)) return true;
        xml_.skipCurrentElement();
    }
    return false;
}

void FeedReader::readChannel() {
    while (xml_.readNextStartElement()) {
        if (is(QLatin1String("lastBuildDate"))) {
            feed_.buildDate = parseDate(text());
        } else if (is(kRavlin, QLatin1String("expires"))) {
            feed_.expires = parseDate(text());
        } else if (is(QLatin1String("item"))) {
            readItem();
        } else {
            xml_.skipCurrentElement();
        }
    }
}

void FeedReader::readItem() {
    FeedItem item;
    isProper_ = true;
    version_.clear();
    while (xml_.readNextStartElement()) readItemPart(item);
    const std::optional<Version> version = Version::parse(version_);
    if (!version || !isProper_) return;
    item.version = *version;
    if (item.displayVersion.isEmpty()) item.displayVersion = version_;
    feed_.items.push_back(std::move(item));
}

void FeedReader::readItemPart(FeedItem& item) {
    if (is(kSparkle, QLatin1String("version"))) {
        version_ = text();
    } else if (is(kSparkle, QLatin1String("shortVersionString"))) {
        item.displayVersion = text();
    } else if (is(kSparkle, QLatin1String("minimumSystemVersion"))) {
        // A release for an unknown system is for none.
        item.minimumSystem = Version::parse(text());
        isProper_ = isProper_ && item.minimumSystem.has_value();
    } else if (is(kSparkle, QLatin1String("criticalUpdate"))) {
        item.isCritical = true;
        xml_.skipCurrentElement();
    } else if (is(kSparkle, QLatin1String("channel"))) {
        item.isForAChannel = true;
        xml_.skipCurrentElement();
    } else if (is(QLatin1String("description"))) {
        readNotes(item);
    } else if (is(QLatin1String("link"))) {
        item.link = QUrl(text(), QUrl::StrictMode);
    } else if (is(QLatin1String("enclosure"))) {
        readEnclosure(item);
    } else {
        xml_.skipCurrentElement();
    }
}

void FeedReader::readNotes(FeedItem& item) {
    item.notesAreMarkdown = sparkleAttribute(QLatin1String("format")) == QLatin1String("markdown");
    item.notes = text();
}

void FeedReader::readEnclosure(FeedItem& item) {
    Enclosure enclosure;
    bool isNumber = false;
    enclosure.url = QUrl(attribute(QLatin1String("url")), QUrl::StrictMode);
    enclosure.byteSize = attribute(QLatin1String("length")).toLongLong(&isNumber);
    enclosure.signature = sparkleAttribute(QLatin1String("edSignature")).toLatin1();
    enclosure.os = sparkleAttribute(QLatin1String("os"));
    enclosure.installationType = sparkleAttribute(QLatin1String("installationType"));
    xml_.skipCurrentElement();
    const bool hasSize = isNumber && enclosure.byteSize > 0 && enclosure.byteSize <= Feed::kMaxEnclosureSize;
    if (enclosure.url.isValid() && hasSize && !enclosure.signature.isEmpty())
        item.enclosures.push_back(std::move(enclosure));
}

}  // namespace

std::optional<QByteArrayView> Feed::genuinePart(QByteArrayView document, const std::vector<PublicKey>& keys) {
    const qsizetype size = document.lastIndexOf(kTrailerStart);
    if (size <= 0) return std::nullopt;
    const QByteArrayView content = document.first(size);
    const QByteArrayView trailer = document.sliced(size);
    const qsizetype signatureEnd = trailer.indexOf(kTrailerMiddle);
    if (signatureEnd < kTrailerStart.size()) return std::nullopt;
    const QByteArrayView signature = trailer.sliced(kTrailerStart.size(), signatureEnd - kTrailerStart.size());
    // No signature covers the trailer, so there is one way to write it, and nothing can hide in it.
    QByteArray expected = kTrailerStart.toByteArray();
    expected.append(signature).append(kTrailerMiddle).append(QByteArray::number(size)).append(kTrailerEnd);
    if (trailer != expected || !Signature::isGenuine(content, signature, keys)) return std::nullopt;
    return content;
}

std::optional<Feed> Feed::parse(QByteArrayView xml) {
    return FeedReader(xml).read();
}

std::optional<Feed> Feed::read(QByteArrayView document, const std::vector<PublicKey>& keys) {
    const std::optional<QByteArrayView> content = genuinePart(document, keys);
    return content ? parse(*content) : std::nullopt;
}

}  // namespace ravlin
