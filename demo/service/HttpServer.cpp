// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "HttpServer.h"

#include "FileTransfer.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QHttpServerResponder>
#include <QSslSocket>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

using Status = QHttpServerResponse::StatusCode;

QByteArray mimeType(const QString &path)
{
    static const QHash<QString, QByteArray> types{
        {u"zip"_s, "application/zip"_ba}, {u"png"_s, "image/png"_ba}, {u"svg"_s, "image/svg+xml"_ba}};
    return types.value(QFileInfo(path).suffix(), "application/octet-stream"_ba);
}

} // namespace

HttpServer::HttpServer(QObject *parent)
    : QAbstractHttpServer(parent)
{
}

HttpServer::~HttpServer() = default;

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

QList<HttpServer::Header> HttpServer::headersOf(const Request &request)
{
    return request.headers().toListOfPairs();
}

HttpServer::Response HttpServer::redirection(const QByteArray &address)
{
    Response response(Status::Found);
    QHttpHeaders headers;
    headers.append(QHttpHeaders::WellKnownHeader::Location, address);
    response.setHeaders(headers);
    return response;
}

bool HttpServer::handleRequest(const Request &request, QHttpServerResponder &responder)
{
    if (std::unique_ptr<QFile> file = fileFor(request)) {
        const QByteArray type = mimeType(file->fileName());
        responder.write(file.release(), type); // which owns it from here
    } else {
        responder.sendResponse(answer(request));
    }
    return true;
}

void HttpServer::missingHandler(const Request &request, QHttpServerResponder &responder)
{
    responder.sendResponse(answer(request));
}

#else

QList<HttpServer::Header> HttpServer::headersOf(const Request &request)
{
    return request.headers();
}

HttpServer::Response HttpServer::redirection(const QByteArray &address)
{
    Response response(Status::Found);
    response.addHeader("Location"_ba, address);
    return response;
}

bool HttpServer::handleRequest(const Request &request, QTcpSocket *socket)
{
    auto *connection = qobject_cast<QSslSocket *>(socket);
    std::unique_ptr<QFile> file = connection ? fileFor(request) : nullptr;
    if (file) {
        QHttpServerResponder responder = makeResponder(request, socket);
        responder.writeStatusLine(Status::Ok);
        responder.writeHeader("Content-Type"_ba, mimeType(file->fileName()));
        responder.writeHeader("Content-Length"_ba, QByteArray::number(file->size()));
        responder.writeBody(QByteArray());
        new FileTransfer(std::move(file), connection); // owned by the connection
    } else {
        answer(request).write(makeResponder(request, socket));
    }
    return true;
}

void HttpServer::missingHandler(const Request &request, QTcpSocket *socket)
{
    answer(request).write(makeResponder(request, socket));
}

#endif

} // namespace brevok::demo
