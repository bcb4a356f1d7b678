// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/servers/TestCertificates.h"

#include <QHostAddress>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

namespace brevok::testing {

using namespace Qt::StringLiterals;

namespace {

template <auto free> struct Free {
    template <typename T> void operator()(T *object) const { free(object); }
};
using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Free<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Free<X509_EXTENSION_free>>;
using Memory = std::unique_ptr<BIO, Free<BIO_free_all>>;

Key makeKey()
{
    return Key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
}

Certificate makeCertificate(const QByteArray &name, EVP_PKEY *key, int hours)
{
    constexpr long hour = 3600;
    Certificate certificate(X509_new());
    X509_set_version(certificate.get(), X509_VERSION_3);
    quint32 serial = 0;
    RAND_bytes(reinterpret_cast<unsigned char *>(&serial), sizeof serial);
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), quint64(serial) + 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -48 * hour);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), hours * hour);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
        reinterpret_cast<const unsigned char *>(name.constData()), int(name.size()), -1, 0);
    return certificate;
}

void extend(X509 *certificate, X509 *issuer, int nid, const QByteArray &value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value.constData()));
    X509_add_ext(certificate, extension.get(), -1);
}

QSslCertificate converted(X509 *certificate)
{
    unsigned char *der = nullptr;
    const int size = i2d_X509(certificate, &der);
    const QSslCertificate result(QByteArray(reinterpret_cast<const char *>(der), size), QSsl::Der);
    OPENSSL_free(der);
    return result;
}

QSslKey converted(EVP_PKEY *key)
{
    const Memory memory(BIO_new(BIO_s_mem()));
    PEM_write_bio_PrivateKey(memory.get(), key, nullptr, nullptr, 0, nullptr, nullptr);
    char *pem = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &pem);
    return {QByteArray(pem, size), QSsl::Ec, QSsl::Pem};
}

QByteArray alternativeNames(const QStringList &hosts)
{
    QStringList names;
    for (const QString &host : hosts) {
        names << (QHostAddress(host).isNull() ? u"DNS:"_s : u"IP:"_s) + host;
    }
    return names.join(u',').toLatin1();
}

} // namespace

struct TestCertificates::Authority {
    Key key;
    Certificate certificate;
};

TestCertificates::TestCertificates()
    : m_authority(std::make_unique<Authority>())
{
    m_authority->key = makeKey();
    m_authority->certificate = makeCertificate("Test Authority", m_authority->key.get(), 48);
    X509 *certificate = m_authority->certificate.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
    extend(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE");
    extend(certificate, certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
    extend(certificate, certificate, NID_subject_key_identifier, "hash");
    X509_sign(certificate, m_authority->key.get(), EVP_sha256());
}

TestCertificates::~TestCertificates() = default;

const TestCertificates &TestCertificates::shared()
{
    static const TestCertificates certificates;
    return certificates;
}

QByteArray TestCertificates::authorities() const
{
    return converted(m_authority->certificate.get()).toPem();
}

TestIdentity TestCertificates::leaf(const QStringList &hosts, int hours, const QByteArray &subject) const
{
    const Key key = makeKey();
    const Certificate certificate =
        makeCertificate(subject.isEmpty() ? hosts.value(0).toUtf8() : subject, key.get(), hours);
    X509 *authority = m_authority->certificate.get();
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(authority));
    extend(certificate.get(), authority, NID_basic_constraints, "critical,CA:FALSE");
    extend(certificate.get(), authority, NID_key_usage, "critical,digitalSignature");
    extend(certificate.get(), authority, NID_ext_key_usage, "serverAuth");
    extend(certificate.get(), authority, NID_authority_key_identifier, "keyid");
    extend(certificate.get(), authority, NID_subject_alt_name, alternativeNames(hosts));
    X509_sign(certificate.get(), m_authority->key.get(), EVP_sha256());
    return {converted(certificate.get()), converted(key.get())};
}

} // namespace brevok::testing
