// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/Output.h"

#include "foundation/UntrustedText.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>

namespace brevok::client {

using namespace Qt::StringLiterals;

namespace {

bool print(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const auto size = static_cast<size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

} // namespace

bool printResult(const QString &text)
{
    if (print(stdout, text)) {
        return true;
    }
    printComplaint(u"standard output cannot be written: %1"_s.arg(qt_error_string(errno)));
    return false;
}

void printNote(const QString &text)
{
    print(stderr, text);
}

void printComplaint(const QString &reason)
{
    printNote(u"brevokctl: %1\n"_s.arg(severalLines(reason)));
}

QString documentText(const QJsonObject &document)
{
    return documentText(QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact)));
}

QString documentText(const QString &json)
{
    QString text;
    text.reserve(json.size() + 1);
    for (const QChar character : json) {
        if (character == u'\n' || character.isSurrogate() || isHarmless(character)) {
            text += character;
        } else {
            text += u"\\u%1"_s.arg(static_cast<uint>(character.unicode()), 4, 16, QChar(u'0'));
        }
    }
    return text + u'\n';
}

QString failuresText(const QStringList &failures, const std::optional<QJsonArray> &outcome)
{
    QJsonObject document{
        {u"ok"_s, failures.isEmpty()}, {u"failures"_s, QJsonArray::fromStringList(failures)}};
    if (outcome) {
        document.insert(u"outcome"_s, *outcome);
    }
    return documentText(document);
}

} // namespace brevok::client
