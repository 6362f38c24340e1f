#pragma once

#include <QUrl>

namespace ravlin::Address {

/// Whether anything may be fetched from `url`: over https, or, for tests, over http from this machine; never from an
/// address with a user name or a password.
bool isSafe(const QUrl& url);

/// Whether a server at `from` may redirect the program to `to`: only to a safe address, and never from https to http.
bool isSafeRedirect(const QUrl& from, const QUrl& to);

}  // namespace ravlin::Address
