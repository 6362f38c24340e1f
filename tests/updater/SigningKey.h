#pragma once

#include "Updater/Signature.h"

#include <QByteArray>

#include <openssl/evp.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace ravlin::tests {

/// The tests' own key, the same for the same `seed` in every run, and what its holder does with it.
class SigningKey {
public:
    explicit SigningKey(unsigned char seed = 1) {
        PublicKey secret{};
        secret.fill(seed);
        key_.reset(EVP_PKEY_new_raw_private_key(EVP_PKEY_ED25519, nullptr, secret.data(), secret.size()));
        if (key_ == nullptr) throw std::runtime_error("no key");
    }

    PublicKey publicKey() const {
        PublicKey key{};
        std::size_t size = key.size();
        if (EVP_PKEY_get_raw_public_key(key_.get(), key.data(), &size) != 1) throw std::runtime_error("no public key");
        return key;
    }

    /// As the settings have it.
    QByteArray publicKeyText() const {
        const PublicKey key = publicKey();
        return QByteArray(reinterpret_cast<const char*>(key.data()), static_cast<qsizetype>(key.size())).toBase64();
    }

    /// The signature in Base64.
    QByteArray sign(const QByteArray& message) const {
        const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
        QByteArray signature(64, '\0');
        std::size_t size = 64;
        const bool isSigned = EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, key_.get()) == 1 &&
                              EVP_DigestSign(context.get(), reinterpret_cast<unsigned char*>(signature.data()), &size,
                                             reinterpret_cast<const unsigned char*>(message.constData()),
                                             static_cast<std::size_t>(message.size())) == 1;
        if (!isSigned) throw std::runtime_error("cannot sign");
        return signature.toBase64();
    }

    /// `content` with the signature that a feed ends with.
    QByteArray signFeed(const QByteArray& content) const {
        return content + "<!-- sparkle-signatures:\nedSignature: " + sign(content) +
               "\nlength: " + QByteArray::number(content.size()) + "\n-->\n";
    }

private:
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key_{nullptr, &EVP_PKEY_free};
};

}  // namespace ravlin::tests
