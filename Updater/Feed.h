#pragma once

#include "Updater/Signature.h"
#include "Updater/Version.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace ravlin {

/// A file of a release.
struct Enclosure {
    QUrl url;
    qint64 byteSize = 0;
    QByteArray signature;  // Base64, of the whole file
    QString os;            // "linux", or with the processor: "linux-x86_64"
    QString installationType;
};

/// A release as the feed describes it.
struct FeedItem {
    Version version;
    QString displayVersion;                // what people call it
    std::optional<Version> minimumSystem;  // of the C library
    bool isCritical = false;
    bool isForAChannel = false;
    QString notes;
    bool notesAreMarkdown = false;
    QUrl link;  // empty if there is none
    std::vector<Enclosure> enclosures;
};

/// What the feed says.
struct Feed {
    QDateTime buildDate;
    std::optional<QDateTime> expires;
    std::vector<FeedItem> items;

    /// The largest plausible enclosure, in bytes.
    static constexpr qint64 kMaxEnclosureSize = qint64{512} << 20;

    /// Reads a feed that ends with a comment: a signature, by one of `keys`, of everything before it. Nothing else in
    /// `document` is read until that is verified. Returns nothing if it is not genuine or not a feed.
    static std::optional<Feed> read(QByteArrayView document, const std::vector<PublicKey>& keys);

    /// The part of `document` that is signed by one of `keys`.
    static std::optional<QByteArrayView> genuinePart(QByteArrayView document, const std::vector<PublicKey>& keys);

    /// Reads a feed without its signature: an RSS channel with a date. A document type declaration is refused, since
    /// entities could make a small document a huge one. An item without a proper version is left out, as is an
    /// incomplete enclosure.
    static std::optional<Feed> parse(QByteArrayView xml);
};

}  // namespace ravlin
