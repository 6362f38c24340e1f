#include "Updater/Address.h"

namespace ravlin {
namespace {

constexpr QLatin1String kSecureScheme("https");
constexpr QLatin1String kPlainScheme("http");

bool isThisMachine(const QString& host) {
    return host == QLatin1String("127.0.0.1") || host == QLatin1String("::1") || host == QLatin1String("localhost");
}

}  // namespace

bool Address::isSafe(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo(QUrl::FullyEncoded).isEmpty()) return false;
    return url.scheme() == kSecureScheme || (url.scheme() == kPlainScheme && isThisMachine(url.host()));
}

bool Address::isSafeRedirect(const QUrl& from, const QUrl& to) {
    return isSafe(to) && (from.scheme() != kSecureScheme || to.scheme() == kSecureScheme);
}

}  // namespace ravlin
