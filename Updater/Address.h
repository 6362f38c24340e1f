#pragma once

#include <QUrl>

namespace ravlin::Address {

/// Whether something may be fetched from `url`: over https, or, for tests, over http from this machine. An address with
/// a user name or a password never may.
bool isSafe(const QUrl& url);

/// Whether a server at `from` may send the program on to `to`: only to a safe address, and never from https to http.
bool isSafeRedirect(const QUrl& from, const QUrl& to);

}  // namespace ravlin::Address
