// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "Certificates.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <array>
#include <ctime>
#include <memory>

#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

constexpr long secondsPerDay = 24L * 60 * 60;
constexpr long validDays = 800; // clients refuse server certificates that live much longer

template <auto release> struct Release {
    template <typename T> void operator()(T *object) const { release(object); }
};
using Bio = std::unique_ptr<BIO, Release<BIO_free_all>>;
using Certificate = std::unique_ptr<X509, Release<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Release<X509_EXTENSION_free>>;
using Key = std::unique_ptr<EVP_PKEY, Release<EVP_PKEY_free>>;
using Number = std::unique_ptr<BIGNUM, Release<BN_free>>;

struct Identity {
    Certificate certificate;
    Key key;
};

QByteArray contents(const Bio &bio)
{
    char *data = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &data);
    return {data, size};
}

Bio readFile(const QString &path)
{
    QFile file(path);
    const QByteArray data = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    Bio bio(BIO_new(BIO_s_mem()));
    BIO_write(bio.get(), data.constData(), static_cast<int>(data.size()));
    return bio;
}

Certificate readCertificate(const QString &path)
{
    return Certificate(PEM_read_bio_X509(readFile(path).get(), nullptr, nullptr, nullptr));
}

/// Valid now and for another day.
bool isCurrent(const Certificate &certificate)
{
    std::time_t tomorrow = std::time(nullptr) + secondsPerDay;
    return X509_cmp_current_time(X509_get0_notBefore(certificate.get())) < 0
        && X509_cmp_time(X509_get0_notAfter(certificate.get()), &tomorrow) > 0;
}

bool areUsable(const CertificateFiles &files)
{
    const Certificate authority = readCertificate(files.authority);
    const Certificate certificate = readCertificate(files.certificate);
    const Key key(PEM_read_bio_PrivateKey(readFile(files.key).get(), nullptr, nullptr, nullptr));
    return authority && certificate && key && isCurrent(authority) && isCurrent(certificate)
        && X509_verify(certificate.get(), X509_get0_pubkey(authority.get())) == 1
        && X509_check_private_key(certificate.get(), key.get()) == 1;
}

bool addExtension(X509 *certificate, X509 *issuer, int kind, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

bool setRandomSerial(X509 *certificate)
{
    const Number number(BN_new());
    return number && BN_rand(number.get(), 64, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) == 1
        && BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate)) != nullptr;
}

struct NamedExtension {
    int kind;
    const char *value;
};

/// A certificate named @p name, signed by @p issuer or, when there is none, by itself.
template <std::size_t count>
Identity issue(const char *name, const Identity *issuer, const std::array<NamedExtension, count> &extensions)
{
    Identity made{.certificate = Certificate(X509_new()), .key = Key(EVP_EC_gen("P-256"))};
    X509 *certificate = made.certificate.get();
    if (!certificate || !made.key) {
        return {};
    }
    const Identity &signer = issuer ? *issuer : made;
    X509_NAME *subject = X509_get_subject_name(certificate);
    bool done = X509_set_version(certificate, X509_VERSION_3) == 1 && setRandomSerial(certificate)
        && X509_gmtime_adj(X509_getm_notBefore(certificate), -secondsPerDay) != nullptr
        && X509_gmtime_adj(X509_getm_notAfter(certificate), validDays * secondsPerDay) != nullptr
        && X509_set_pubkey(certificate, made.key.get()) == 1
        && X509_NAME_add_entry_by_NID(subject, NID_commonName, MBSTRING_UTF8,
               reinterpret_cast<const unsigned char *>(name), -1, -1, 0)
            == 1
        && X509_set_issuer_name(certificate, X509_get_subject_name(signer.certificate.get())) == 1;
    for (const NamedExtension &extension : extensions) {
        done = done && addExtension(certificate, signer.certificate.get(), extension.kind, extension.value);
    }
    done = done && X509_sign(certificate, signer.key.get(), EVP_sha256()) > 0;
    return done ? std::move(made) : Identity{};
}

Identity makeAuthority()
{
    return issue("Tolvane Brevok demo service authority", nullptr,
        std::to_array<NamedExtension>({{NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
            {NID_key_usage, "critical,keyCertSign,cRLSign"}, {NID_subject_key_identifier, "hash"}}));
}

Identity makeServer(const Identity &authority)
{
    return issue("localhost", &authority,
        std::to_array<NamedExtension>({{NID_basic_constraints, "critical,CA:FALSE"},
            {NID_key_usage, "critical,digitalSignature"}, {NID_ext_key_usage, "serverAuth"},
            {NID_subject_key_identifier, "hash"}, {NID_authority_key_identifier, "keyid"},
            {NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1,IP:::1"}}));
}

QString write(const QString &path, const QByteArray &data, QFileDevice::Permissions permissions)
{
    QSaveFile file(path);
    const bool done = file.open(QIODevice::WriteOnly) && file.setPermissions(permissions)
        && file.write(data) == data.size() && file.commit();
    return done ? QString() : u"cannot write '%1': %2"_s.arg(path, file.errorString());
}

QByteArray pem(const Certificate &certificate)
{
    const Bio bio(BIO_new(BIO_s_mem()));
    PEM_write_bio_X509(bio.get(), certificate.get());
    return contents(bio);
}

QByteArray pem(const Key &key)
{
    const Bio bio(BIO_new(BIO_s_mem()));
    PEM_write_bio_PrivateKey(bio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    return contents(bio);
}

} // namespace

CertificateFiles CertificateFiles::in(const QString &folder)
{
    return {.authority = folder + u"/ca.pem"_s,
        .certificate = folder + u"/cert.pem"_s,
        .key = folder + u"/key.pem"_s};
}

QString ensureCertificates(const QString &folder)
{
    const CertificateFiles files = CertificateFiles::in(folder);
    if (areUsable(files)) {
        return {};
    }
    if (!QDir().mkpath(folder)) {
        return u"cannot make the folder '%1'"_s.arg(folder);
    }
    const Identity authority = makeAuthority();
    const Identity server = authority.key ? makeServer(authority) : Identity{};
    if (!server.key) {
        return u"cannot make certificates for '%1'"_s.arg(folder);
    }
    constexpr QFileDevice::Permissions secret = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    constexpr QFileDevice::Permissions open = secret | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    // The authority last: what a client reads is there only once the rest fits it.
    for (const auto &[path, data, permissions] : {std::tuple(files.key, pem(server.key), secret),
             std::tuple(files.certificate, pem(server.certificate), open),
             std::tuple(files.authority, pem(authority.certificate), open)}) {
        if (QString problem = write(path, data, permissions); !problem.isEmpty()) {
            return problem;
        }
    }
    return {};
}

} // namespace brevok::demo
