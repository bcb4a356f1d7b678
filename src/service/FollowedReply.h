// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/Gzip.h"

#include <QNetworkReply>
#include <QSslError>
#include <QTimer>

#include <optional>

namespace brevok {

class Transport;

/// One exchange with all its hops: waits for the proxy look-up, follows redirects, decompresses, watches the
/// time and that the body is whole. See NetworkFactory::send().
class FollowedReply final : public QNetworkReply {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FollowedReply)

public:
    FollowedReply(Transport &transport, const QNetworkRequest &request, QByteArray method, QByteArray body);
    ~FollowedReply() override;

    void abort() override;
    [[nodiscard]] qint64 bytesAvailable() const override;
    void setReadBufferSize(qint64 size) override;

    /// What was wrong with the server's certificate; empty when nothing was.
    [[nodiscard]] const QList<QSslError> &certificateErrors() const { return m_certificateErrors; }

protected:
    qint64 readData(char *data, qint64 size) override;
    void sslConfigurationImplementation(QSslConfiguration &configuration) const override;

private:
    void startHop();
    void send();
    [[nodiscard]] QByteArray cookieHeader() const;
    void connectHop();
    void somethingMoved();
    void headArrived();
    void dataArrived();
    void hopEnded();
    void follow();
    [[nodiscard]] QNetworkRequest requestAfterRedirect(const QUrl &target) const;

    [[nodiscard]] qint64 readDecompressed(char *data, qint64 size);
    [[nodiscard]] bool decompressRest();
    void end(NetworkError error, const QString &text);
    void dropHop();

    Transport &m_transport;
    QNetworkRequest m_request; ///< of the current hop
    QByteArray m_method;
    QByteArray m_body;
    QNetworkReply *m_hop = nullptr;
    QTimer m_idle; ///< runs while nothing arrives
    QUrl m_redirectTarget; ///< of the current hop; empty when it is the last one
    qint64 m_discarded = 0; ///< bytes of the body of a redirect
    int m_redirects = 0;
    int m_closedConnections = 0; ///< found on the way
    bool m_newConnection = false; ///< the current hop opened its own
    std::optional<GzipReader> m_gzip; ///< when the body comes compressed
    QByteArray m_rest; ///< decompressed when the last hop ended, and not read yet
    QList<QSslError> m_certificateErrors;
    bool m_ended = false;
};

} // namespace brevok
