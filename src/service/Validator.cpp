// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Validator.h"

#include "service/HttpDate.h"

#include <QLocale>
#include <QRegularExpression>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto ifNoneMatch = "If-None-Match";
constexpr auto ifModifiedSince = "If-Modified-Since";
constexpr qsizetype longestTag = 512;
// Dates tell seconds apart, and the clocks of a service's machines differ.
constexpr qint64 settledSeconds = 60;

bool isEntityTag(const QByteArray &text)
{
    static const QRegularExpression pattern(uR"(\A(?:W/)?"[\x21\x23-\x7e]*"\z)"_s);
    return text.size() <= longestTag && pattern.match(QString::fromLatin1(text)).hasMatch();
}

} // namespace

Validator validatorIn(const HeaderFields &headers, const QByteArray &scope)
{
    if (const QByteArray tag = headerValue(headers, "ETag"); isEntityTag(tag)) {
        return {.entityTag = tag, .lastModified = {}, .scope = scope};
    }
    const QDateTime modified = httpDate(headerValue(headers, "Last-Modified"));
    const QDateTime sent = httpDate(headerValue(headers, "Date"));
    if (modified.isValid() && sent.isValid() && modified.secsTo(sent) >= settledSeconds) {
        const QString text = QLocale::c().toString(modified, u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s);
        return {.entityTag = {}, .lastModified = text.toLatin1(), .scope = scope};
    }
    return {};
}

HeaderFields conditionOf(const Validator &validator)
{
    if (!validator.entityTag.isEmpty()) {
        return {{ifNoneMatch, validator.entityTag}};
    }
    return validator.lastModified.isEmpty() ? HeaderFields()
                                            : HeaderFields{{ifModifiedSince, validator.lastModified}};
}

bool isCondition(const QByteArray &name)
{
    return name == ifNoneMatch || name == ifModifiedSince;
}

} // namespace brevok
