#pragma once

#include <QByteArrayView>

#include <array>
#include <optional>
#include <vector>

namespace ravlin {

/// An Ed25519 public key (RFC 8032).
using PublicKey = std::array<unsigned char, 32>;

/// Ed25519 signatures. Keys and signatures are in Base64, as the feed and the settings have them.
namespace Signature {

/// Reads a key: the Base64 of exactly 32 bytes, or nothing. Also nothing if the key's point has a small order, as that
/// of 32 zeros does: "signatures" by those can be made without any secret.
std::optional<PublicKey> parsePublicKey(QByteArrayView base64);

/// Whether `base64` is a signature of `message` by one of `keys`; false as well if it is no signature at all.
bool isGenuine(QByteArrayView message, QByteArrayView base64, const std::vector<PublicKey>& keys);

}  // namespace Signature
}  // namespace ravlin
