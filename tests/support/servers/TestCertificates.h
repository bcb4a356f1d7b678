// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QList>
#include <QSslCertificate>
#include <QSslKey>
#include <QStringList>

#include <memory>

namespace brevok::testing {

/// What a TLS server shows and proves.
struct TestIdentity {
    QSslCertificate certificate;
    QSslKey key;
};

/// A certificate authority of its own, made in memory. Nobody trusts it unless told to.
class TestCertificates final {
public:
    TestCertificates();
    ~TestCertificates();
    Q_DISABLE_COPY_MOVE(TestCertificates)

    /// One for all servers of a test program.
    static const TestCertificates &shared();

    [[nodiscard]] QSslCertificate ca() const;
    /// For ServiceConfiguration::extraAuthorities.
    [[nodiscard]] QByteArray authorities() const { return ca().toPem(); }

    /// A server certificate for @p hosts (names or addresses), signed by this authority.
    [[nodiscard]] TestIdentity leaf(const QStringList &hosts, const QDateTime &notBefore,
        const QDateTime &notAfter, const QByteArray &subject = {}) const;
    /// One for this machine, valid from yesterday to tomorrow.
    [[nodiscard]] TestIdentity valid() const;
    /// One for this machine that ran out an hour ago.
    [[nodiscard]] TestIdentity expired() const;
    /// A valid one whose subject is this machine and whose alternative names are another's.
    [[nodiscard]] TestIdentity onlySubject() const;
    /// A valid one for a host that is not this machine.
    [[nodiscard]] TestIdentity otherHost() const;

private:
    struct Authority;
    std::unique_ptr<Authority> m_authority;
};

} // namespace brevok::testing
