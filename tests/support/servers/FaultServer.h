// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/servers/TestCertificates.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QUrl>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QTcpServer;
class QTcpSocket;
QT_END_NAMESPACE

namespace brevok::testing {

using RawHeaders = QList<QPair<QByteArray, QByteArray>>;

/// A request as it arrived, headers in their order and spelling.
struct Request {
    QByteArray method;
    QString path; ///< without the query
    QByteArray target; ///< as sent
    RawHeaders headers;
    QByteArray body;

    /// The value of the header @p name, whatever its letter case; null when absent.
    [[nodiscard]] QByteArray header(const QByteArray &name) const;
};

/// What is sent back, and how it goes wrong.
struct Response {
    enum class Framing {
        ContentLength,
        Chunked,
        UntilClose, ///< neither length nor chunks: the body ends with the connection
    };
    /// What happens once `faultAfter` bytes of the body (as sent) went out.
    enum class Fault {
        None,
        Close, ///< the connection is closed in order; with chunks, the last one is missing
        Reset, ///< the connection breaks
        Stall, ///< nothing more comes
    };

    int status = 200;
    RawHeaders headers{};
    QByteArray body{};
    qint64 repeat = 1; ///< the body is sent that often, without being held that often
    bool gzip = false; ///< the body is sent gzip-encoded, and says so
    Framing framing = Framing::ContentLength;
    qint64 lengthLie = 0; ///< added to the Content-Length that is told
    Fault fault = Fault::None;
    qint64 faultAfter = -1; ///< -1: before the head
    int delayMs = 0; ///< before the head
    int dripMs = 0; ///< the body comes byte by byte, each so late
    QByteArray raw{}; ///< sent in place of everything else, and what `fault` says follows; None closes

    static Response ok(const QByteArray &body) { return {.body = body}; }
    static Response of(int status, const QByteArray &body = {}) { return {.status = status, .body = body}; }
    static Response redirect(const QByteArray &location, int status = 302);
    static Response silent() { return {.fault = Fault::Stall}; }
    static Response reset() { return {.fault = Fault::Reset}; }
    static Response hangUp() { return {.fault = Fault::Close}; }
    static Response garbage(const QByteArray &bytes) { return {.raw = bytes}; }
};

/// An HTTP server on loopback, in the test's own event loop, that writes every byte itself and so can lie.
/// Connections are kept alive between requests, unless a response ends them. Unknown paths answer 404.
class FaultServer final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FaultServer)

public:
    struct Plain { };
    using Handler = std::function<Response(const Request &)>;

    /// A TLS server with @p identity; the authority of valid() is TestCertificates::shared().
    explicit FaultServer(const TestIdentity &identity = TestCertificates::shared().valid());
    /// A server without TLS.
    explicit FaultServer(Plain);
    ~FaultServer() override;

    void on(const QString &path, const Response &response);
    void on(const QString &path, const Handler &handler);

    /// "https://localhost:PORT" with @p path.
    [[nodiscard]] QUrl url(const QString &path = {}) const;
    [[nodiscard]] quint16 port() const { return m_port; }

    /// All requests so far, in order of arrival.
    [[nodiscard]] const QList<Request> &requests() const { return m_requests; }
    /// Those for @p path.
    [[nodiscard]] QList<Request> requests(const QString &path) const;
    /// Connections that are open now, answered or not.
    [[nodiscard]] qsizetype connections() const;

    /// Stops listening and breaks what is open: the port is closed from here on.
    void stop();

private:
    class Connection;

    void listen(QTcpServer *server);
    void accept();
    [[nodiscard]] Response answer(const Request &request);

    QTcpServer *m_server = nullptr;
    QString m_scheme;
    quint16 m_port = 0;
    QHash<QString, Handler> m_handlers;
    QList<Request> m_requests;
};

} // namespace brevok::testing
