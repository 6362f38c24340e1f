#pragma once

#include <QByteArrayView>

#include <array>
#include <optional>
#include <vector>

namespace ravlin {

/// An Ed25519 public key (RFC 8032).
using PublicKey = std::array<unsigned char, 32>;

/// Ed25519 signatures. Keys and signatures are written in Base64, as the feed and the settings have them.
namespace Signature {

/// Reads a key: the Base64 of exactly 32 bytes, or nothing. Nor is it a key where the point behind it has a small
/// order, as that of 32 zeros has: "signatures" by those can be made without any secret.
std::optional<PublicKey> parsePublicKey(QByteArrayView base64);

/// Whether `base64` is a signature of `message` by one of `keys`. Anything that is no signature at all is not.
bool isGenuine(QByteArrayView message, QByteArrayView base64, const std::vector<PublicKey>& keys);

}  // namespace Signature
}  // namespace ravlin
