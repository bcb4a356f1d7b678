// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "RequestLog.h"

#include "HttpServer.h"

#include <QDateTime>
#include <QHttpServerRequest>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>
#include <QRegularExpression>

#include <cstdio>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

const QRegularExpression &sessionPattern()
{
    static const QRegularExpression pattern(u"(?<=\\bSessionId=)[^;\\s]+"_s);
    return pattern;
}

/// Enough of @p value to tell two sessions apart, too little to use one.
QString masked(const QString &value)
{
    constexpr qsizetype kept = 4;
    return value.size() > 4 * kept ? value.first(kept) + u'…' + value.last(kept) : u"…"_s;
}

QString maskedHeader(const QString &name, QString value)
{
    if (name.endsWith(u"authorization"_s, Qt::CaseInsensitive)) {
        return u"…"_s;
    }
    if (name.compare(u"cookie"_s, Qt::CaseInsensitive) == 0) {
        const QString session = sessionPattern().match(value).captured();
        if (!session.isEmpty()) {
            value.replace(session, masked(session));
        }
    }
    return value;
}

QJsonObject headersOf(const QHttpServerRequest &request)
{
    QJsonObject headers;
    for (const auto &[rawName, rawValue] : HttpServer::headersOf(request)) {
        const QString name = QString::fromUtf8(rawName).toLower(); // as some versions of Qt hand them over
        const QString value = maskedHeader(name, QString::fromUtf8(rawValue));
        const QString before = headers[name].toString();
        headers[name] = before.isEmpty() ? value : before + u", "_s + value;
    }
    return headers;
}

QJsonValue withoutPasswords(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray cleaned;
        for (const QJsonValue element : value.toArray()) {
            cleaned.append(withoutPasswords(element));
        }
        return cleaned;
    }
    if (!value.isObject()) {
        return value;
    }
    QJsonObject cleaned = value.toObject();
    for (auto entry = cleaned.begin(); entry != cleaned.end(); ++entry) {
        const bool secret = entry.key().compare(u"password"_s, Qt::CaseInsensitive) == 0;
        *entry = secret ? QJsonValue(u"…"_s) : withoutPasswords(entry.value());
    }
    return cleaned;
}

} // namespace

RequestLog::RequestLog(const QString &path)
    : m_file(path)
{
}

QString RequestLog::open()
{
    const bool done = m_file.open(QIODevice::WriteOnly | QIODevice::Append)
        && m_file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return done ? QString() : u"cannot write '%1': %2"_s.arg(m_file.fileName(), m_file.errorString());
}

void RequestLog::append(const QHttpServerRequest &request, const QString &session)
{
    const QByteArray body = request.body();
    QJsonObject entry{{u"time"_s, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
        {u"method"_s, methodName(request)},
        {u"path"_s, request.url().toString(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::FullyEncoded)},
        {u"headers"_s, headersOf(request)}, {u"session"_s, session}, {u"bodyLength"_s, body.size()}};
    // A body that is no JSON stays out: it might be anything, a password included.
    if (const QJsonDocument document = QJsonDocument::fromJson(body); document.isObject()) {
        entry[u"body"_s] = withoutPasswords(document.object());
    } else if (document.isArray()) {
        entry[u"body"_s] = withoutPasswords(document.array());
    }
    const QByteArray line = QJsonDocument(entry).toJson(QJsonDocument::Compact) + '\n';
    if (m_file.write(line) != line.size() || !m_file.flush()) {
        const QString text = u"cannot write '%1': %2"_s.arg(m_file.fileName(), m_file.errorString());
        std::fprintf(stderr, "brevok-demo-service: %s\n", qUtf8Printable(text));
    }
}

QString methodName(const QHttpServerRequest &request)
{
    const auto methods = QMetaEnum::fromType<QHttpServerRequest::Method>();
    return QString::fromLatin1(methods.valueToKey(static_cast<int>(request.method()))).toUpper();
}

QString sessionCookie(const QHttpServerRequest &request)
{
    return sessionPattern().match(QString::fromUtf8(request.value("Cookie"))).captured();
}

} // namespace brevok::demo
