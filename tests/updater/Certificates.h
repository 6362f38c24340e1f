#pragma once

#include "Engine/Support/NonCopyable.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>

namespace ravlin::tests {

/// The tests' own certificate authority, new in each run.
class Authority {
public:
    Authority();

    /// The certificate of a server that this authority knows as `name`, for example "IP:127.0.0.1" or "DNS:localhost".
    QSslConfiguration serverFor(const char* name) const;

    const QSslCertificate& certificate() const { return certificate_; }

private:
    QSslKey key_;
    QSslCertificate certificate_;
};

/// During its lifetime, every connection of this process trusts `authority` as well.
class TrustIn : NonCopyable {
public:
    explicit TrustIn(const Authority& authority);
    ~TrustIn();

private:
    QSslConfiguration before_;
};

}  // namespace ravlin::tests
