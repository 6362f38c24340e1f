#pragma once

#include "Engine/Support/NonCopyable.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>

namespace ravlin::tests {

/// A certificate authority of the tests' own, made anew in each run.
class Authority {
public:
    Authority();

    /// What a server shows that this authority knows as `name`, for example "IP:127.0.0.1" or "DNS:localhost".
    QSslConfiguration serverFor(const char* name) const;

    const QSslCertificate& certificate() const { return certificate_; }

private:
    QSslKey key_;
    QSslCertificate certificate_;
};

/// For its life, every connection of this process trusts `authority`, too.
class TrustIn : NonCopyable {
public:
    explicit TrustIn(const Authority& authority);
    ~TrustIn();

private:
    QSslConfiguration before_;
};

}  // namespace ravlin::tests
