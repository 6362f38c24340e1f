#include "Engine/Digests.h"

#include "Engine/Support/Bytes.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <array>
#include <new>

namespace ravlin::TextTransforms {
namespace {

/// An algorithm of OpenSSL's default provider. It comes from a library context of our own, since the system's
/// configuration may leave MD5 out of the default one, as it does on machines bound to FIPS.
///
/// Context and algorithm live as long as the process: at exit OpenSSL cleans up by itself, perhaps before us.
const EVP_MD* fetch(const char* name) {
    static OSSL_LIB_CTX* const context = [] {
        OSSL_LIB_CTX* const created = OSSL_LIB_CTX_new();
        if (created != nullptr) OSSL_PROVIDER_load(created, "default");
        return created;
    }();
    // Without a context of our own, "nullptr" would mean the default one.
    return context == nullptr ? nullptr : EVP_MD_fetch(context, name, nullptr);
}

/// Fails only for lack of memory.
std::string digest(const EVP_MD* algorithm, std::string_view text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes = {};
    unsigned size = 0;
    if (algorithm == nullptr || EVP_Digest(text.data(), text.size(), bytes.data(), &size, algorithm, nullptr) != 1)
        throw std::bad_alloc();
    return Bytes::toHex({reinterpret_cast<const char*>(bytes.data()), size});
}

}  // namespace

std::string md5(std::string_view text) {
    static const EVP_MD* const algorithm = fetch("MD5");
    return digest(algorithm, text);
}

std::string sha1(std::string_view text) {
    static const EVP_MD* const algorithm = fetch("SHA1");
    return digest(algorithm, text);
}

std::string sha256(std::string_view text) {
    static const EVP_MD* const algorithm = fetch("SHA2-256");
    return digest(algorithm, text);
}

}  // namespace ravlin::TextTransforms
