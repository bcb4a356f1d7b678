// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/SystemProxies.h"

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <optional>

namespace brevok {

/// What all requests share: connections, cookies, proxies, and whom to trust. Sends one request to one host;
/// FollowedReply makes a whole exchange of it. Main thread.
class Transport final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Transport)

public:
    /// @p extraAuthorities, certificates in PEM form, are trusted beside the system's.
    explicit Transport(QByteArray extraAuthorities);
    ~Transport() override;

    /// Calls @p then, at once or later, when send() can start for @p url. Not at all when @p context is gone.
    void prepare(const QUrl &url, QObject *context, Task then);

    /// Starts the request; prepare() went before. The caller owns the reply. Redirects are not followed.
    [[nodiscard]] QNetworkReply *send(
        QNetworkRequest request, const QByteArray &method, const QByteArray &body);

    /// The Cookie header of what the hosts gave us before, for @p url; empty when there is nothing.
    [[nodiscard]] QByteArray storedCookies(const QUrl &url) const;

Q_SIGNALS:
    /// The transport goes: replies end now.
    void closing();

private:
    struct Waiting {
        QUrl url;
        QPointer<QObject> context;
        Task then;
    };

    void loadTls();
    void begin(const QSslConfiguration &tls);

    SystemProxies m_proxies;
    QNetworkAccessManager m_manager;
    std::optional<QSslConfiguration> m_tls; ///< nothing until the library is loaded
    QByteArray m_extraAuthorities; ///< not yet part of m_tls
    QList<Waiting> m_waiting; ///< for the library
};

} // namespace brevok
