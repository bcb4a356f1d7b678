// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QList>
#include <QString>
#include <QUrl>

#include <utility>

namespace brevok::testing {

using namespace Qt::StringLiterals;

/// How a service or a log may spell a secret: what each spelling is called, and the spelling. In base64 it
/// also stands between @p before and @p after.
inline QList<std::pair<const char *, QString>> spellingsOf(
    const QString &secret, const QByteArray &before = "xy", const QByteArray &after = "=z")
{
    const QByteArray utf8 = secret.toUtf8();
    const QString json = QString::fromUtf8(
        QJsonDocument(QJsonArray{secret}).toJson(QJsonDocument::Compact).chopped(2).sliced(2));
    const QString address = QString::fromLatin1(QUrl::toPercentEncoding(secret));
    QString units;
    for (const QChar unit : secret) {
        units += u"\\u%1"_s.arg(uint(unit.unicode()), 4, 16, QChar(u'0'));
    }
    QString html;
    QString shortHtml;
    const QList<uint> characters = secret.toUcs4();
    for (const uint code : characters) {
        html += u"&#%1;"_s.arg(code, 3, 10, QChar(u'0'));
        shortHtml += u"&#%1;"_s.arg(code);
    }
    return {
        {"raw", secret},
        {"JSON", json},
        {"JSON with slashes", QString(json).replace(u'/', u"\\/"_s)},
        {"JSON in numbers", units},
        {"JSON in large numbers", units.toUpper().replace(u"\\U"_s, u"\\u"_s)},
        {"HTML", secret.toHtmlEscaped()},
        {"HTML with apostrophes", secret.toHtmlEscaped().replace(u'\'', u"&#039;"_s)},
        {"HTML in numbers", html},
        {"HTML in short numbers", shortHtml},
        {"address", address},
        {"address in small letters",
            QString::fromLatin1(utf8.toPercentEncoding({}, secret.toLatin1())).toLower()},
        {"form", QString(address).replace(u"%20"_s, u"+"_s)},
        {"base64", QString::fromLatin1(utf8.toBase64())},
        {"base64 for addresses",
            QString::fromLatin1(
                utf8.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals))},
        {"base64 with a name", QString::fromLatin1(("ada@example.com:" + utf8).toBase64())},
        {"base64 in between", QString::fromLatin1((before + utf8 + after).toBase64())},
    };
}

} // namespace brevok::testing
