#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>

#include <chrono>

namespace ravlin {

/// How much of a server's answer is accepted, and how long to wait for it.
struct DownloadLimits {
    qint64 byteSize = 0;
    std::chrono::milliseconds idle = std::chrono::seconds(30);  // without a byte
    std::chrono::milliseconds total = std::chrono::seconds(60);
};

/// Fetches one thing at a time into memory, from safe addresses only, even after a redirect. The server learns nothing
/// about the user: no cookies, no language, no compression, and "Ravlin/1.0.0" as the program's name.
class Downloader final : public QObject {
    Q_OBJECT

public:
    /// Servers are sent `version`.
    explicit Downloader(const QString& version, QObject* parent = nullptr);
    ~Downloader() override;

    /// Fetches what is at `url`; either `finished` or `failed` follows later. Abandons any fetch in progress.
    void start(const QUrl& url, const DownloadLimits& limits);

    /// Gives up. Nothing more is emitted.
    void cancel();

Q_SIGNALS:
    void progressed(qint64 receivedBytes);

    /// All of it has arrived. An answer that is not a plain "200 OK", or is larger than the limit, fails.
    void finished(const QByteArray& body);

    /// Why it failed, in words for developers.
    void failed(const QString& cause);

private:
    static constexpr int kMaxRedirects = 5;

    QNetworkRequest requestFor(const QUrl& url) const;
    void request(const QUrl& url);
    void followRedirect(const QUrl& location);
    void dropReply();
    void read();
    void finish();
    void fail(const QString& cause);

    QByteArray userAgent_;
    QNetworkAccessManager network_;
    QNetworkReply* reply_ = nullptr;
    QUrl address_;  // where the answer comes from, after redirects
    DownloadLimits limits_;
    int redirects_ = 0;
    QByteArray body_;
    QTimer deadline_;
    QString deadlineCause_;
};

}  // namespace ravlin
