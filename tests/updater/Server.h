#pragma once

#include <QByteArray>
#include <QObject>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace ravlin::tests {

/// A web server on this machine, in the test's own thread: it answers while the test waits.
class Server {
public:
    /// What happens to a client that asked for a page. The socket closes with the client, or with the server.
    using Answer = std::function<void(QTcpSocket&)>;

    Server();                                               // http
    explicit Server(const QSslConfiguration& certificate);  // https

    /// What it does to clients that ask for `path`; for others there is nothing.
    void serve(const QByteArray& path, Answer answer) { answers_[path] = std::move(answer); }

    QUrl url(const QByteArray& path, const char* host = "127.0.0.1") const;

    /// All that clients have sent so far, one text for each request.
    const std::vector<QByteArray>& requests() const { return requests_; }

    // Answers.
    static Answer page(const QByteArray& body, const QByteArray& status = "200 OK", const QByteArray& headers = {});
    static Answer bytes(const QByteArray& everything, bool thenClose = true);
    static Answer redirect(const QByteArray& location);
    static Answer silence();
    static Answer endless(const QByteArray& headers, qint64& sentBytes);  // chunks forever
    static Answer drip(const QByteArray& start);                          // a byte now and then, forever

private:
    void listen();
    void accept();
    void hear(QTcpSocket& socket, QByteArray& request);

    std::unique_ptr<QTcpServer> server_;
    bool isSecure_;
    std::map<QByteArray, Answer> answers_;
    std::vector<QByteArray> requests_;
};

}  // namespace ravlin::tests
