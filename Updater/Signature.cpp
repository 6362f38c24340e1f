#include "Updater/Signature.h"

#include <QByteArray>

#include <openssl/evp.h>

#include <algorithm>
#include <memory>

namespace ravlin {
namespace {

constexpr qsizetype kSignatureSize = 64;  // bytes

const unsigned char* bytesOf(QByteArrayView view) {
    return reinterpret_cast<const unsigned char*>(view.data());
}

/// The bytes that `base64` encodes, if it is exactly the encoding of `size` bytes.
std::optional<QByteArray> decode(QByteArrayView base64, qsizetype size) {
    const QByteArray text = base64.toByteArray();
    const auto decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.size() != size || decoded.decoded.toBase64() != text) return std::nullopt;
    return decoded.decoded;
}

/// Fills the bytes between the first and the last.
consteval PublicKey withEnds(unsigned char first, unsigned char middle, unsigned char last) {
    PublicKey key{};
    key.fill(middle);
    key.front() = first;
    key.back() = last;
    return key;
}

constexpr unsigned char kSignOfX = 0x80;  // in the last byte

/// The y of the eight points whose multiples hide no secret, in every way to write them: 0, 1 and -1, the first two
/// also with the prime 2^255 - 19 added, and the two y of the points of order eight: d y^4 + 2 y^2 = 1 (from the
/// doubling of RFC 8032, section 5.1.4, whose result has y = 0 then).
constexpr std::array<PublicKey, 7> kSmallOrder = {
    withEnds(0, 0, 0),
    withEnds(1, 0, 0),
    withEnds(0xEC, 0xFF, 0x7F),  // -1
    withEnds(0xED, 0xFF, 0x7F),  // 0
    withEnds(0xEE, 0xFF, 0x7F),  // 1
    PublicKey{0x26, 0xE8, 0x95, 0x8F, 0xC2, 0xB2, 0x27, 0xB0, 0x45, 0xC3, 0xF4, 0x89, 0xF2, 0xEF, 0x98, 0xF0,
              0xD5, 0xDF, 0xAC, 0x05, 0xD3, 0xC6, 0x33, 0x39, 0xB1, 0x38, 0x02, 0x88, 0x6D, 0x53, 0xFC, 0x05},
    PublicKey{0xC7, 0x17, 0x6A, 0x70, 0x3D, 0x4D, 0xD8, 0x4F, 0xBA, 0x3C, 0x0B, 0x76, 0x0D, 0x10, 0x67, 0x0F,
              0x2A, 0x20, 0x53, 0xFA, 0x2C, 0x39, 0xCC, 0xC6, 0x4E, 0xC7, 0xFD, 0x77, 0x92, 0xAC, 0x03, 0x7A},
};

bool isOfSmallOrder(PublicKey key) {
    key.back() &= static_cast<unsigned char>(~kSignOfX);
    return std::ranges::find(kSmallOrder, key) != kSmallOrder.end();
}

bool isSignedBy(const PublicKey& key, QByteArrayView message, QByteArrayView signature) {
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> publicKey(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, key.data(), key.size()), &EVP_PKEY_free);
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (publicKey == nullptr || context == nullptr) return false;
    // Ed25519 does its own hashing, hence no digest.
    if (EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, publicKey.get()) != 1) return false;
    return EVP_DigestVerify(context.get(), bytesOf(signature), static_cast<std::size_t>(signature.size()),
                            bytesOf(message), static_cast<std::size_t>(message.size())) == 1;
}

}  // namespace

std::optional<PublicKey> Signature::parsePublicKey(QByteArrayView base64) {
    PublicKey key{};
    const std::optional<QByteArray> bytes = decode(base64, static_cast<qsizetype>(key.size()));
    if (!bytes) return std::nullopt;
    std::ranges::copy(*bytes, key.begin());
    return isOfSmallOrder(key) ? std::nullopt : std::optional(key);
}

bool Signature::isGenuine(QByteArrayView message, QByteArrayView base64, const std::vector<PublicKey>& keys) {
    const std::optional<QByteArray> signature = decode(base64, kSignatureSize);
    if (!signature) return false;
    return std::ranges::any_of(keys, [&](const PublicKey& key) { return isSignedBy(key, message, *signature); });
}

}  // namespace ravlin
