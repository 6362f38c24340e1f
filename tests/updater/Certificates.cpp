#include "tests/updater/Certificates.h"

#include <QByteArray>

#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>

namespace ravlin::tests {
namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;
using Memory = std::unique_ptr<BIO, decltype(&BIO_free)>;

constexpr long kLifetime = 24L * 60 * 60;  // s, in both directions

QByteArray contents(const Memory& memory) {
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &bytes);
    return {bytes, size};
}

QSslKey toQt(const Key& key) {
    const Memory memory(BIO_new(BIO_s_mem()), &BIO_free);
    PEM_write_bio_PrivateKey(memory.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    return QSslKey(contents(memory), QSsl::Ec);
}

QSslCertificate toQt(const Certificate& certificate) {
    const Memory memory(BIO_new(BIO_s_mem()), &BIO_free);
    PEM_write_bio_X509(memory.get(), certificate.get());
    return QSslCertificate(contents(memory));
}

Key fromQt(const QSslKey& key) {
    const QByteArray text = key.toPem();
    const Memory memory(BIO_new_mem_buf(text.constData(), static_cast<int>(text.size())), &BIO_free);
    return {PEM_read_bio_PrivateKey(memory.get(), nullptr, nullptr, nullptr), &EVP_PKEY_free};
}

Certificate fromQt(const QSslCertificate& certificate) {
    const QByteArray text = certificate.toPem();
    const Memory memory(BIO_new_mem_buf(text.constData(), static_cast<int>(text.size())), &BIO_free);
    return {PEM_read_bio_X509(memory.get(), nullptr, nullptr, nullptr), &X509_free};
}

void addExtension(X509* certificate, int kind, const char* value) {
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, nullptr, kind, value);
    if (extension == nullptr) throw std::runtime_error("no such extension");
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

/// A certificate for `key` that still lacks its issuer's name and signature.
Certificate unsignedCertificate(const Key& key, const char* name, long serial) {
    Certificate certificate(X509_new(), &X509_free);
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -kLifetime);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), kLifetime);
    X509_set_pubkey(certificate.get(), key.get());
    const auto* const bytes = reinterpret_cast<const unsigned char*>(name);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC, bytes, -1, -1, 0);
    return certificate;
}

void sign(X509* certificate, X509* issuer, const Key& key) {
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
    if (X509_sign(certificate, key.get(), EVP_sha256()) == 0) throw std::runtime_error("cannot sign a certificate");
}

}  // namespace

Authority::Authority() {
    const Key key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    const Certificate certificate = unsignedCertificate(key, "Tests", 1);
    addExtension(certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
    sign(certificate.get(), certificate.get(), key);
    key_ = toQt(key);
    certificate_ = toQt(certificate);
}

QSslConfiguration Authority::serverFor(const char* name) const {
    const Key key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    const Certificate certificate = unsignedCertificate(key, "Server", 2);
    addExtension(certificate.get(), NID_subject_alt_name, name);
    sign(certificate.get(), fromQt(certificate_).get(), fromQt(key_));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(toQt(certificate));
    configuration.setPrivateKey(toQt(key));
    return configuration;
}

TrustIn::TrustIn(const Authority& authority) : before_(QSslConfiguration::defaultConfiguration()) {
    QSslConfiguration configuration = before_;
    configuration.addCaCertificate(authority.certificate());
    QSslConfiguration::setDefaultConfiguration(configuration);
}

TrustIn::~TrustIn() {
    QSslConfiguration::setDefaultConfiguration(before_);
}

}  // namespace ravlin::tests
