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

/// The bytes behind `base64`, where it is exactly what encoding `size` bytes gives.
std::optional<QByteArray> decode(QByteArrayView base64, qsizetype size) {
    const QByteArray text = base64.toByteArray();
    const auto decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.size() != size || decoded.decoded.toBase64() != text) return std::nullopt;
    return decoded.decoded;
}

bool isSignedBy(const PublicKey& key, QByteArrayView message, QByteArrayView signature) {
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> publicKey(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, key.data(), key.size()), &EVP_PKEY_free);
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (publicKey == nullptr || context == nullptr) return false;
    // Ed25519 hashes by itself, hence no digest.
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
    return key;
}

bool Signature::isGenuine(QByteArrayView message, QByteArrayView base64, const std::vector<PublicKey>& keys) {
    const std::optional<QByteArray> signature = decode(base64, kSignatureSize);
    if (!signature) return false;
    return std::ranges::any_of(keys, [&](const PublicKey& key) { return isSignedBy(key, message, *signature); });
}

}  // namespace ravlin
