// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

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

    /// For ServiceConfiguration::extraAuthorities.
    [[nodiscard]] QByteArray authorities() const;

    /// A server certificate for @p hosts (names or addresses), signed by this authority, that runs out in
    /// some hours. Its subject is the first host, if no other is given.
    [[nodiscard]] TestIdentity leaf(
        const QStringList &hosts, int hours = 24, const QByteArray &subject = {}) const;
    /// For this machine.
    [[nodiscard]] TestIdentity valid() const { return leaf(thisMachine); }
    [[nodiscard]] TestIdentity expired() const { return leaf(thisMachine, -1); }

private:
    inline static const QStringList thisMachine{QStringLiteral("localhost"), QStringLiteral("127.0.0.1")};

    struct Authority;
    std::unique_ptr<Authority> m_authority;
};

} // namespace brevok::testing
