// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "DemoService.h"

#include "Certificates.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>

#include <array>
#include <cstdio>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

using Method = QHttpServerRequest::Method;
using Status = QHttpServerResponse::StatusCode;

// The service's error codes, as its clients know them.
enum ErrorCode {
    Success = 0,
    UnreadableRequest = 1,
    WrongCredentials = 2,
    UnknownSession = 3,
    InternalError = 99
};

QHttpServerResponse reply(ErrorCode code, const QString &message, Status status = Status::Ok)
{
    QJsonObject body{{u"ErrorCode"_s, code}};
    if (!message.isEmpty()) {
        body[u"ErrorMessage"_s] = message;
    }
    return {body, status};
}

QHttpServerResponse page(const QString &title, const QString &text)
{
    const QString html =
        u"<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>%1</title></head>"
        u"<body><h1>%1</h1><p>%2</p></body></html>\n"_s.arg(title.toHtmlEscaped(), text.toHtmlEscaped());
    return {"text/html; charset=utf-8"_ba, html.toUtf8()};
}

QHttpServerResponse plain(const QByteArray &text, Status status = Status::Ok)
{
    return {"text/plain; charset=utf-8"_ba, text, status};
}

QHttpServerResponse notFound()
{
    return plain("Not found\n"_ba, Status::NotFound);
}

struct JsonFile {
    QJsonDocument document;
    QString problem; ///< empty when the document was read
};

JsonFile readJson(const QString &path)
{
    QFile file(path);
    JsonFile read;
    QJsonParseError error{};
    if (!file.open(QIODevice::ReadOnly)) {
        read.problem = u"%1: %2"_s.arg(QFileInfo(path).fileName(), file.errorString());
    } else if (read.document = QJsonDocument::fromJson(file.readAll(), &error); read.document.isNull()) {
        read.problem =
            u"%1: %2 at byte %3"_s.arg(QFileInfo(path).fileName(), error.errorString()).arg(error.offset);
    }
    if (!read.problem.isEmpty()) {
        std::fprintf(stderr, "brevok-demo-service: %s\n", qUtf8Printable(read.problem));
    }
    return read;
}

QString newSessionId()
{
    std::array<quint32, 4> words{};
    QRandomGenerator::system()->fillRange(words.data(), static_cast<qsizetype>(words.size()));
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(words.data()), sizeof words).toHex());
}

} // namespace

DemoService::DemoService(QString root, QObject *parent)
    : HttpServer(parent)
    , m_root(std::move(root))
    , m_log(m_root + u"/requests.jsonl"_s)
{
}

DemoService::~DemoService() = default;

QString DemoService::start(quint16 port, const CertificateFiles &certificates)
{
    if (QString problem = m_log.open(); !problem.isEmpty()) {
        return problem;
    }
    QFile keyFile(certificates.key);
    const bool opened = keyFile.open(QIODevice::ReadOnly);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificateChain(QSslCertificate::fromPath(certificates.certificate));
    configuration.setPrivateKey(opened ? QSslKey(&keyFile, QSsl::Ec) : QSslKey());
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    auto *server = new QSslServer(this);
    server->setSslConfiguration(configuration);
    if (!server->listen(QHostAddress::LocalHost, port)) {
        return u"cannot listen on port %1: %2"_s.arg(port).arg(server->errorString());
    }
    m_url = u"https://localhost:%1"_s.arg(server->serverPort());
    bind(server);
    return {};
}

void DemoService::log(const Request &request)
{
    const QString session = sessionCookie(request);
    m_log.append(request,
        session.isEmpty()                  ? u"none"_s
            : m_sessions.contains(session) ? u"known"_s
                                           : u"unknown"_s);
}

// Asked first for every request, which makes it the place to write them down.
std::unique_ptr<QFile> DemoService::fileFor(const Request &request)
{
    log(request);
    const QString path = storedFile(request.url().path(QUrl::FullyDecoded));
    auto file = std::make_unique<QFile>(path);
    const bool found = request.method() == Method::Get && !path.isEmpty() && file->open(QIODevice::ReadOnly);
    return found && !has(request, entityTagOf(*file)) ? std::move(file) : nullptr;
}

DemoService::Response DemoService::answer(const Request &request)
{
    struct Route {
        Request::Methods methods;
        QStringView path; ///< with a slash at its end, all paths that begin so
        Response (DemoService::*handler)(const Request &);
    };
    const std::array routes{
        Route{Method::Get | Method::Post, u"/", &DemoService::homePage},
        Route{Method::Post, u"/api/machine/signin", &DemoService::signIn},
        Route{Method::Post, u"/api/machine/signout", &DemoService::signOut},
        Route{Method::Post, u"/api/machine/report", &DemoService::acceptReport},
        Route{Method::Post, u"/api/stats/plugins", &DemoService::acceptReport},
        Route{Method::Get, u"/api/plugin/list", &DemoService::pluginList},
        Route{Method::Get, u"/api/product/list", &DemoService::productList},
        Route{Method::Get, u"/appcast.xml", &DemoService::updateFeed},
        Route{Method::Get, u"/account/", &DemoService::accountPage},
        Route{Method::Get, u"/packages/", &DemoService::packagePage},
        Route{Method::Get, u"/download/", &DemoService::redirect},
    };
    const QString path = request.url().path(QUrl::FullyDecoded);
    if (const QString file = storedFile(path); !file.isEmpty() && request.method() == Method::Get) {
        if (const QByteArray tag = entityTagOf(QFile(file)); has(request, tag)) {
            return notModified(tag);
        }
    }
    for (const Route &route : routes) {
        const bool isFolder = route.path.size() > 1 && route.path.endsWith(u'/');
        if (path == route.path || (isFolder && path.startsWith(route.path))) {
            return route.methods.testFlag(request.method())
                ? (this->*route.handler)(request)
                : plain("Method not allowed\n"_ba, Status::MethodNotAllowed);
        }
    }
    return notFound();
}

DemoService::Response DemoService::signIn(const Request &request)
{
    const QJsonDocument sent = QJsonDocument::fromJson(request.body());
    if (!sent.isObject()) {
        return reply(UnreadableRequest, u"The request is not a JSON object."_s, Status::BadRequest);
    }
    const JsonFile accounts = readJson(m_root + u"/accounts.json"_s);
    if (!accounts.problem.isEmpty()) {
        return reply(InternalError, accounts.problem, Status::InternalServerError);
    }
    const QString email = sent[u"email"_s].toString();
    const QString password = sent[u"password"_s].toString();
    for (const QJsonValue account : accounts.document.array()) {
        if (!password.isEmpty() && account[u"password"_s].toString() == password
            && account[u"email"_s].toString().compare(email, Qt::CaseInsensitive) == 0) {
            const QString session = newSessionId();
            m_sessions.insert(session, email);
            return {QJsonObject{{u"ErrorCode"_s, Success}, {u"SessionId"_s, session}}};
        }
    }
    return reply(WrongCredentials, u"Unknown account or wrong password."_s);
}

DemoService::Response DemoService::signOut(const Request &request)
{
    return m_sessions.remove(sessionCookie(request)) ? reply(Success, {})
                                                     : reply(UnknownSession, u"Unknown session."_s);
}

DemoService::Response DemoService::list(const Request &request, const QString &fileName) const
{
    const JsonFile read = readJson(m_root + u'/' + fileName);
    if (!read.problem.isEmpty()) {
        return reply(InternalError, read.problem, Status::InternalServerError);
    }
    if (!read.document.isArray()) { // for clients that want to meet a list of the wrong shape
        return {"application/json"_ba, read.document.toJson(QJsonDocument::Compact)};
    }
    QJsonArray elements;
    for (const QJsonValue element : read.document.array()) {
        elements.append(withAddresses(element));
    }
    Response response(elements);
    const QByteArray tag = entityTagOf(response.data());
    return has(request, tag) ? notModified(tag) : tagged(std::move(response), tag);
}

/// The addresses of a list element as clients need them: what the file gives as a path lies on this service.
QJsonValue DemoService::withAddresses(const QJsonValue &element) const
{
    if (!element.isObject()) {
        return element;
    }
    QJsonObject completed = element.toObject();
    for (const QString &key : {u"Link"_s, u"Icon"_s, u"Info"_s}) {
        if (const QString address = completed.value(key).toString(); address.startsWith(u'/')) {
            completed[key] = m_url + address;
        }
    }
    return completed;
}

DemoService::Response DemoService::pluginList(const Request &request)
{
    return list(request, u"plugins.json"_s);
}

DemoService::Response DemoService::productList(const Request &request)
{
    return list(request, u"products.json"_s);
}

/// The root's feed of updates of the application; packages that it gives as a path lie on this service.
DemoService::Response DemoService::updateFeed(const Request &)
{
    QFile file(m_root + u"/appcast.xml"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        return notFound();
    }
    return {"application/rss+xml; charset=utf-8"_ba,
        file.readAll().replace("\"/archives/", '"' + m_url.toLatin1() + "/archives/")};
}

DemoService::Response DemoService::acceptReport(const Request &)
{
    return reply(Success, {});
}

DemoService::Response DemoService::homePage(const Request &)
{
    return plain("Tolvane Brevok demo service\n"_ba);
}

DemoService::Response DemoService::accountPage(const Request &request)
{
    const QString path = request.url().path();
    if (path == u"/account/register"_s) {
        return page(u"Create an account"_s, u"The accounts of this service stand in its accounts.json."_s);
    }
    return path == u"/account/signin"_s
        ? page(u"Your account"_s, u"Sign in from the panel of Tolvane Brevok."_s)
        : notFound();
}

DemoService::Response DemoService::packagePage(const Request &request)
{
    const JsonFile products = readJson(m_root + u"/products.json"_s);
    for (const QJsonValue product : products.document.array()) {
        if (product[u"Info"_s].toString() == request.url().path()) {
            return page(product[u"Name"_s].toString(), u"Version %1"_s.arg(product[u"Version"_s].toString()));
        }
    }
    return notFound();
}

DemoService::Response DemoService::redirect(const Request &request)
{
    static const QString folder = u"/download"_s;
    const QString target = request.url().path(QUrl::FullyEncoded).sliced(folder.size());
    return redirection((m_url + u"/archives"_s + target).toLatin1());
}

/// The regular file of the root's archives or icons that @p path (decoded) asks for; empty when there is
/// none. Neither ".." nor a link leads out of these folders.
QString DemoService::storedFile(const QString &path) const
{
    for (const QString &folder : {u"/archives/"_s, u"/icons/"_s}) {
        if (path.startsWith(folder)) {
            const QString allowed = QFileInfo(m_root + folder).canonicalFilePath() + u'/';
            const QFileInfo wanted(QFileInfo(m_root + path).canonicalFilePath());
            return wanted.isFile() && wanted.filePath().startsWith(allowed) ? wanted.filePath() : QString();
        }
    }
    return {};
}

} // namespace brevok::demo
