// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractHttpServer>
#include <QHttpServerRequest>
#include <QHttpServerResponse>

#include <memory>
#include <utility>

QT_BEGIN_NAMESPACE
class QFile;
QT_END_NAMESPACE

namespace brevok::demo {

/// Qt's HTTP server, behind one interface: what a server overrides, and how headers are read and written, is
/// not the same in the versions of Qt that Debian 12 and Debian 13 have.
class HttpServer : public QAbstractHttpServer {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HttpServer)

public:
    using Request = QHttpServerRequest;
    using Response = QHttpServerResponse;
    using Header = std::pair<QByteArray, QByteArray>;

    /// Headers of @p request, in their order where Qt keeps it.
    [[nodiscard]] static QList<Header> headersOf(const Request &request);

protected:
    explicit HttpServer(QObject *parent);
    ~HttpServer() override;

    /// @return the open file that @p request asks for, which is then sent piece by piece; null: answer() is
    /// asked
    virtual std::unique_ptr<QFile> fileFor(const Request &request) = 0;
    /// Called for every request for which there is no file.
    virtual Response answer(const Request &request) = 0;

    static Response redirection(const QByteArray &address);
    /// What distinguishes this state of something from all others, as the header "ETag" has it.
    static QByteArray entityTagOf(const QByteArray &body);
    static QByteArray entityTagOf(const QFile &file);
    /// Whether the client has what bears this tag already: notModified() is all that it needs to be sent.
    static bool has(const Request &request, const QByteArray &entityTag);
    static Response notModified(const QByteArray &entityTag);
    static Response tagged(Response response, const QByteArray &entityTag);

private:
    static void addHeader(Response &response, const QByteArray &name, const QByteArray &value);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    bool handleRequest(const Request &request, QHttpServerResponder &responder) final;
    void missingHandler(const Request &request, QHttpServerResponder &responder) final;
#else
    bool handleRequest(const Request &request, QTcpSocket *socket) final;
    void missingHandler(const Request &request, QTcpSocket *socket) final;
#endif
};

} // namespace brevok::demo
