#include "tests/updater/Server.h"

#include <QSslServer>
#include <QTimer>

#include <stdexcept>

namespace ravlin::tests {
namespace {

constexpr int kDripInterval = 20;  // ms

QByteArray startOf(const QByteArray& status, const QByteArray& headers) {
    return "HTTP/1.1 " + status + "\r\nConnection: close\r\n" + headers;
}

}  // namespace

Server::Server() : server_(std::make_unique<QTcpServer>()), isSecure_(false) {
    listen();
}

Server::Server(const QSslConfiguration& certificate) : isSecure_(true) {
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(certificate);
    server_ = std::move(server);
    listen();
}

void Server::listen() {
    if (!server_->listen(QHostAddress::LocalHost)) throw std::runtime_error("cannot listen");
    QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(), [this] { accept(); });
}

QUrl Server::url(const QByteArray& path, const char* host) const {
    const QByteArray scheme = isSecure_ ? "https://" : "http://";
    return QUrl::fromEncoded(scheme + host + ":" + QByteArray::number(server_->serverPort()) + path);
}

void Server::accept() {
    while (QTcpSocket* const socket = server_->nextPendingConnection()) {
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        const auto request = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, request] { hear(*socket, *request); });
        if (socket->bytesAvailable() > 0) hear(*socket, *request);
    }
}

void Server::hear(QTcpSocket& socket, QByteArray& request) {
    request += socket.readAll();
    if (!request.endsWith("\r\n\r\n")) return;
    requests_.push_back(request);
    const auto answer = answers_.find(request.split(' ').value(1));
    (answer == answers_.end() ? page("nothing here", "404 Not Found") : answer->second)(socket);
    request.clear();
}

Server::Answer Server::bytes(const QByteArray& everything, bool thenClose) {
    return [everything, thenClose](QTcpSocket& socket) {
        socket.write(everything);
        if (thenClose) socket.disconnectFromHost();
    };
}

Server::Answer Server::page(const QByteArray& body, const QByteArray& status, const QByteArray& headers) {
    return bytes(startOf(status, headers) + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

Server::Answer Server::redirect(const QByteArray& location) {
    return page("elsewhere", "302 Found", "Location: " + location + "\r\n");
}

Server::Answer Server::silence() {
    return [](QTcpSocket&) {};
}

Server::Answer Server::endless(const QByteArray& headers, qint64& sentBytes) {
    return [headers, &sentBytes](QTcpSocket& socket) {
        socket.write(startOf("200 OK", headers) + "\r\n");
        const auto more = [&socket, &sentBytes] {
            const QByteArray block(16384, 'x');
            if (socket.bytesToWrite() < block.size()) sentBytes += socket.write(block);
        };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
        more();
    };
}

Server::Answer Server::drip(const QByteArray& start) {
    return [start](QTcpSocket& socket) {
        socket.write(start);
        auto* const timer = new QTimer(&socket);
        QObject::connect(timer, &QTimer::timeout, &socket, [&socket] {
            socket.write("x");
            socket.flush();
        });
        timer->start(kDripInterval);
    };
}

}  // namespace ravlin::tests
