// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

namespace brevok {

/// The method of a challenge that asks whether the server's certificate is trusted.
inline constexpr auto serverTrustMethod = "NSURLAuthenticationMethodServerTrust";

/// Who asks for a credential.
struct ProtectionSpace {
    QString realm{};
    bool receivesCredentialSecurely = false;
    bool isProxy = false;
    QString host{};
    int port = 0;
    QString proxyType{};
    QString protocol{};
    QString authenticationMethod{};
};

struct TrustChallenge {
    ProtectionSpace space{};
    int previousFailureCount = 0;
    bool hasProposedCredential = false;
    bool hasServerTrust = false;
};

enum class ChallengeAnswer { DefaultHandling, UseProposed, UseServerTrust, ContinueWithout, NoAnswer };

/// Whether a challenge of this kind is ours to answer.
[[nodiscard]] bool canAuthenticateAgainst(const ProtectionSpace &space);

/// What a challenge gets. @p serviceHost is the host of the service's base URL.
[[nodiscard]] ChallengeAnswer decide(const TrustChallenge &challenge, const QString &serviceHost);

/// The log lines that describe a protection space.
[[nodiscard]] QStringList protectionSpaceDump(const ProtectionSpace &space);

/// Logs the challenge and its answer the way every request of the program does: little, unless the detailed
/// log is wanted.
void logChallenge(
    const TrustChallenge &challenge, ChallengeAnswer answer, const QUrl &currentUrl, const QUrl &originalUrl);

/// Logs the challenge of a connection to @p currentUrl. Each connection's challenge is its first, which is
/// left to the default handling: the transport refuses every certificate it does not trust.
void logFirstChallenge(const QUrl &currentUrl, const QUrl &originalUrl, const QString &serviceHost);

} // namespace brevok
