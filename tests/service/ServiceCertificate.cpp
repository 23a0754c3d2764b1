#include "service/ServiceCertificate.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <QFile>
#include <QSsl>

#include <memory>

namespace orvesa::service {

using namespace Qt::StringLiterals;

namespace {

template <auto freeFunction>
struct Freer {
    template <typename Object>
    void operator()(Object *object) const
    {
        freeFunction(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freer<X509_free>>;
using Output = std::unique_ptr<BIO, Freer<BIO_free_all>>;

void require(bool success)
{
    if (!success) {
        qFatal("The test certificate could not be made.");
    }
}

void addExtension(X509 *certificate, X509 *issuer, int identifier, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION *extension = X509V3_EXT_conf_nid(nullptr, &context, identifier, value);
    require(extension != nullptr);
    require(X509_add_ext(certificate, extension, -1) == 1);
    X509_EXTENSION_free(extension);
}

/// `issuer` empty: the certificate is signed by its own key.
[[nodiscard]] Certificate unsignedCertificate(const char *commonName, long serial, EVP_PKEY *key, X509 *issuer)
{
    constexpr long hour = 3600;
    Certificate certificate(X509_new());
    require(certificate != nullptr);
    constexpr long version3 = 2;
    X509_set_version(certificate.get(), version3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -hour);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 24 * hour);
    require(X509_set_pubkey(certificate.get(), key) == 1);
    X509_NAME *name = X509_get_subject_name(certificate.get());
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char *>(commonName),
                                       -1, -1, 0) == 1);
    X509_set_issuer_name(certificate.get(), issuer != nullptr ? X509_get_subject_name(issuer) : name);
    return certificate;
}

[[nodiscard]] QByteArray content(const Output &output)
{
    char *data = nullptr;
    const long length = BIO_get_mem_data(output.get(), &data);
    return QByteArray(data, static_cast<qsizetype>(length));
}

[[nodiscard]] QByteArray pem(X509 *certificate)
{
    const Output output(BIO_new(BIO_s_mem()));
    require(PEM_write_bio_X509(output.get(), certificate) == 1);
    return content(output);
}

[[nodiscard]] QByteArray pem(EVP_PKEY *key)
{
    const Output output(BIO_new(BIO_s_mem()));
    require(PEM_write_bio_PrivateKey(output.get(), key, nullptr, nullptr, 0, nullptr, nullptr) == 1);
    return content(output);
}

} // namespace

ServiceCertificate::ServiceCertificate(const QHostAddress &address)
{
    const Key authorityKey(EVP_EC_gen("P-256"));
    const Key key(EVP_EC_gen("P-256"));
    require(authorityKey != nullptr && key != nullptr);

    const Certificate authority = unsignedCertificate("Loopback test authority", 1, authorityKey.get(), nullptr);
    addExtension(authority.get(), authority.get(), NID_basic_constraints, "critical,CA:TRUE");
    addExtension(authority.get(), authority.get(), NID_key_usage, "critical,keyCertSign,cRLSign");
    addExtension(authority.get(), authority.get(), NID_subject_key_identifier, "hash");
    require(X509_sign(authority.get(), authorityKey.get(), EVP_sha256()) != 0);

    const QByteArray names = "DNS:localhost,DNS:service.test,IP:127.0.0.1,IP:::1,IP:" + address.toString().toLatin1();
    const Certificate certificate = unsignedCertificate("localhost", 2, key.get(), authority.get());
    addExtension(certificate.get(), authority.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(certificate.get(), authority.get(), NID_key_usage, "critical,digitalSignature");
    addExtension(certificate.get(), authority.get(), NID_ext_key_usage, "serverAuth");
    addExtension(certificate.get(), authority.get(), NID_subject_alt_name, names.constData());
    require(X509_sign(certificate.get(), authorityKey.get(), EVP_sha256()) != 0);

    m_authority = QSslCertificate(pem(authority.get()), QSsl::Pem);
    m_certificate = QSslCertificate(pem(certificate.get()), QSsl::Pem);
    m_privateKey = QSslKey(pem(key.get()), QSsl::Ec, QSsl::Pem, QSsl::PrivateKey);
    require(!m_authority.isNull() && !m_certificate.isNull() && !m_privateKey.isNull());

    QFile file(authorityPath());
    require(file.open(QIODevice::WriteOnly) && file.write(m_authority.toPem()) > 0);
}

QString ServiceCertificate::authorityPath() const
{
    return m_folder.filePath(u"authority.pem"_s);
}

} // namespace orvesa::service
