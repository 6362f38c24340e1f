#include "Updater/Downloader.h"

#include "Updater/Address.h"

#include <QNetworkRequest>

#include <utility>

namespace ravlin {
namespace {

constexpr qint64 kReadBufferSize = qint64{256} << 10;  // bytes; more than that waits in the connection
constexpr int kStatusOK = 200;

}  // namespace

Downloader::Downloader(const QString& version, QObject* parent)
    : QObject(parent), userAgent_("Ravlin/" + version.toUtf8()) {
    deadline_.setSingleShot(true);
    connect(&deadline_, &QTimer::timeout, this, [this] { fail(deadlineCause_); });
}

Downloader::~Downloader() {
    cancel();
}

QNetworkRequest Downloader::requestFor(const QUrl& url) const {
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", userAgent_);
    // Set explicitly, this keeps Qt from unpacking: no small answer becomes a huge one.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("Accept-Language", "en");  // the user's own would help to identify them
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setTransferTimeout(static_cast<int>(limits_.idle.count()));
    return request;
}

void Downloader::start(const QUrl& url, const DownloadLimits& limits) {
    cancel();
    limits_ = limits;
    redirects_ = 0;
    body_.clear();
    const bool isSafe = Address::isSafe(url);
    deadlineCause_ = isSafe ? QStringLiteral("it took too long") : QStringLiteral("its address is not safe");
    // The idle limit restarts with each byte, so a drip needs a separate limit.
    deadline_.start(isSafe ? limits.total : std::chrono::milliseconds(0));
    if (isSafe) request(url);
}

void Downloader::request(const QUrl& url) {
    address_ = url;
    reply_ = network_.get(requestFor(url));
    reply_->setReadBufferSize(kReadBufferSize);
    connect(reply_, &QNetworkReply::readyRead, this, &Downloader::read);
    connect(reply_, &QNetworkReply::finished, this, &Downloader::finish);
}

void Downloader::cancel() {
    deadline_.stop();
    dropReply();
}

void Downloader::dropReply() {
    if (reply_ == nullptr) return;
    QNetworkReply* const reply = std::exchange(reply_, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void Downloader::followRedirect(const QUrl& location) {
    const QUrl next = address_.resolved(location);
    if (++redirects_ > kMaxRedirects || !Address::isSafeRedirect(address_, next))
        return fail(QStringLiteral("the server sent it elsewhere"));
    dropReply();
    body_.clear();
    request(next);
}

void Downloader::read() {
    body_ += reply_->readAll();
    if (body_.size() > limits_.byteSize) return fail(QStringLiteral("it is too large"));
    Q_EMIT progressed(body_.size());
}

void Downloader::finish() {
    const QVariant location = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute);
    if (location.isValid()) return followRedirect(location.toUrl());
    if (reply_->error() == QNetworkReply::OperationCanceledError) return fail(QStringLiteral("the server was silent"));
    if (reply_->error() != QNetworkReply::NoError) return fail(reply_->errorString());
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != kStatusOK) return fail(QStringLiteral("the server answered %1").arg(status));
    body_ += reply_->readAll();
    if (body_.size() > limits_.byteSize) return fail(QStringLiteral("it is too large"));
    cancel();
    Q_EMIT finished(std::exchange(body_, {}));
}

void Downloader::fail(const QString& cause) {
    cancel();
    body_.clear();
    Q_EMIT failed(cause);
}

}  // namespace ravlin
