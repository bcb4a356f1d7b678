// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "HttpServer.h"

#include "FileTransfer.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QHttpServerResponder>
#include <QSslSocket>

#include <algorithm>

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

HttpServer::Response HttpServer::redirection(const QByteArray &address)
{
    Response response(Status::Found);
    addHeader(response, "Location"_ba, address);
    return response;
}

QByteArray HttpServer::entityTagOf(const QByteArray &body)
{
    return '"' + QCryptographicHash::hash(body, QCryptographicHash::Sha256).first(16).toHex() + '"';
}

QByteArray HttpServer::entityTagOf(const QFile &file)
{
    const qint64 changed = QFileInfo(file).lastModified().toMSecsSinceEpoch();
    return '"' + QByteArray::number(file.size(), 16) + '-' + QByteArray::number(changed, 16) + '"';
}

bool HttpServer::has(const Request &request, const QByteArray &entityTag)
{
    const QList<QByteArray> known = request.value("If-None-Match"_ba).split(',');
    return std::any_of(known.cbegin(), known.cend(), [&entityTag](const QByteArray &tag) {
        const QByteArray trimmed = tag.trimmed();
        return trimmed == entityTag || trimmed == "W/" + entityTag || trimmed == "*";
    });
}

HttpServer::Response HttpServer::notModified(const QByteArray &entityTag)
{
    return tagged(Response(Status::NotModified), entityTag);
}

HttpServer::Response HttpServer::tagged(Response response, const QByteArray &entityTag)
{
    addHeader(response, "ETag"_ba, entityTag);
    return response;
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

QList<HttpServer::Header> HttpServer::headersOf(const Request &request)
{
    return request.headers().toListOfPairs();
}

void HttpServer::addHeader(Response &response, const QByteArray &name, const QByteArray &value)
{
    QHttpHeaders headers = response.headers();
    headers.append(name, value);
    response.setHeaders(headers);
}

bool HttpServer::handleRequest(const Request &request, QHttpServerResponder &responder)
{
    if (std::unique_ptr<QFile> file = fileFor(request)) {
        QHttpHeaders headers;
        headers.append(QHttpHeaders::WellKnownHeader::ContentType, mimeType(file->fileName()));
        headers.append(QHttpHeaders::WellKnownHeader::ETag, entityTagOf(*file));
        responder.write(file.release(), headers); // which owns it from here
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

void HttpServer::addHeader(Response &response, const QByteArray &name, const QByteArray &value)
{
    response.addHeader(name, value);
}

bool HttpServer::handleRequest(const Request &request, QTcpSocket *socket)
{
    auto *connection = qobject_cast<QSslSocket *>(socket);
    std::unique_ptr<QFile> file = connection ? fileFor(request) : nullptr;
    if (file) {
        QHttpServerResponder responder = makeResponder(request, socket);
        responder.writeStatusLine(Status::Ok);
        responder.writeHeader("Content-Type"_ba, mimeType(file->fileName()));
        responder.writeHeader("ETag"_ba, entityTagOf(*file));
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
