#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QLocale>

namespace ravlin::tests {

/// A feed as make-appcast writes it, with the parts that a test wants changed.
struct FeedText {
    QByteArray date = "Fri, 01 May 2026 12:00:00 +0000";
    QByteArray expires;
    QByteArray items;

    QByteArray text() const {
        QByteArray result =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\" "
            "xmlns:ravlin=\"urn:ravlin:update\">\n<channel>\n<title>Ravlin</title>\n";
        if (!date.isEmpty()) result += "<lastBuildDate>" + date + "</lastBuildDate>\n";
        if (!expires.isEmpty()) result += "<ravlin:expires>" + expires + "</ravlin:expires>\n";
        return result + items + "</channel>\n</rss>\n";
    }

    static QByteArray dateText(const QDateTime& time) {
        return QLocale::c().toString(time.toUTC(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss '+0000'")).toLatin1();
    }
};

struct EnclosureText {
    QByteArray url = "https://ravlin.example/Ravlin.AppImage";
    qint64 size = 1000;
    QByteArray signature = "c2lnbmF0dXJl";
    QByteArray os = "linux";
    QByteArray installationType = "appimage";

    QByteArray text() const {
        return "<enclosure url=\"" + url + "\" length=\"" + QByteArray::number(size) + "\" sparkle:edSignature=\"" +
               signature + "\" sparkle:os=\"" + os + "\" sparkle:installationType=\"" + installationType +
               "\" type=\"application/octet-stream\"/>\n";
    }
};

/// An item with `version` and whatever other `parts` it has.
inline QByteArray itemText(const QByteArray& version, const QByteArray& parts = EnclosureText{}.text()) {
    return "<item>\n<title>Ravlin</title>\n<sparkle:version>" + version + "</sparkle:version>\n" + parts + "</item>\n";
}

}  // namespace ravlin::tests
