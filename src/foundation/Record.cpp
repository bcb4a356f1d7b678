// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Record.h"

#include <QJsonDocument>
#include <QtEndian>

#include <cmath>
#include <limits>

#include <zlib.h>

namespace brevok {

namespace {

// The packed form is the size of the content in four bytes, then the content compressed (RFC 1950).
constexpr qsizetype headerSize = 4;

// As qUncompress(), which would warn: a damaged archive is an answer here, not a fault of the program.
QByteArray unpacked(const QByteArray &packed)
{
    constexpr quint32 largest = 512 * 1024 * 1024;
    const quint32 size = packed.size() > headerSize ? qFromBigEndian<quint32>(packed.constData()) : 0;
    // A damaged size must not make us allocate; nothing compresses better than this.
    if (size > largest || size / 1100 > static_cast<size_t>(packed.size())) {
        return {};
    }
    QByteArray content(size, Qt::Uninitialized);
    uLongf length = size;
    const auto *source = reinterpret_cast<const Bytef *>(packed.constData() + headerSize);
    const int result = ::uncompress(reinterpret_cast<Bytef *>(content.data()), &length, source,
        static_cast<uLong>(packed.size() - headerSize));
    return result == Z_OK && length == size ? content : QByteArray();
}

} // namespace

QString nonEmptyString(const QJsonValue &value)
{
    if (!value.isString()) {
        return {};
    }
    QString text = value.toString();
    return text.isEmpty() ? QString() : text;
}

bool isNumber(const QJsonValue &value)
{
    return value.isDouble() || value.isBool();
}

qint64 integerValue(const QJsonValue &value)
{
    if (value.isBool()) {
        return value.toBool() ? 1 : 0;
    }
    if (value.isString()) {
        return leadingInteger(value.toString());
    }
    if (!value.isDouble()) {
        return 0;
    }
    constexpr auto unset = std::numeric_limits<qint64>::min();
    if (const qint64 whole = value.toInteger(unset); whole != unset) {
        return whole;
    }
    constexpr double limit = 9.2e18;
    const double number = value.toDouble();
    if (std::isnan(number)) {
        return 0;
    }
    if (number >= limit) {
        return std::numeric_limits<qint64>::max();
    }
    return number <= -limit ? unset : static_cast<qint64>(number);
}

qint64 leadingInteger(QStringView text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace()) {
        ++i;
    }
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        negative = text[i] == u'-';
        ++i;
    }
    constexpr auto highest = std::numeric_limits<qint64>::max();
    qint64 number = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        const qint64 digit = text[i].unicode() - u'0';
        if (number > (highest - digit) / 10) {
            return negative ? std::numeric_limits<qint64>::min() : highest;
        }
        number = number * 10 + digit;
    }
    return negative ? -number : number;
}

float leadingFloat(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    qsizetype end = 0;
    if (end < trimmed.size() && (trimmed[end] == u'-' || trimmed[end] == u'+')) {
        ++end;
    }
    bool point = false;
    while (end < trimmed.size()) {
        const QChar c = trimmed[end];
        if (c == u'.' && !point) {
            point = true;
        } else if (c < u'0' || c > u'9') {
            break;
        }
        ++end;
    }
    return trimmed.first(end).toFloat();
}

QString displayText(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QJsonValue::Double: {
        const double number = value.toDouble();
        if (number == std::trunc(number) && std::abs(number) < 9e18) {
            return QString::number(value.toInteger(static_cast<qint64>(number)));
        }
        return QString::number(number, 'g', QLocale::FloatingPointShortest);
    }
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array:
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    case QJsonValue::Object:
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("(null)");
}

QString wellFormed(const QString &text)
{
    if (text.isValidUtf16()) {
        return text;
    }
    QString mended = text;
    for (qsizetype i = 0; i < mended.size(); ++i) {
        if (mended[i].isHighSurrogate() && i + 1 < mended.size() && mended[i + 1].isLowSurrogate()) {
            ++i;
        } else if (mended[i].isSurrogate()) {
            mended[i] = QChar::ReplacementCharacter;
        }
    }
    return mended;
}

QJsonValue wellFormed(const QJsonValue &value)
{
    if (value.isString()) {
        return wellFormed(value.toString());
    }
    if (value.isArray()) {
        QJsonArray mended;
        const QJsonArray elements = value.toArray();
        for (const QJsonValue element : elements) {
            mended.append(wellFormed(element));
        }
        return mended;
    }
    if (value.isObject()) {
        QJsonObject mended;
        const QJsonObject object = value.toObject();
        for (auto entry = object.constBegin(); entry != object.constEnd(); ++entry) {
            mended.insert(wellFormed(entry.key()), wellFormed(QJsonValue(entry.value())));
        }
        return mended;
    }
    return value;
}

bool mayHoldHalfCharacters(const QByteArray &json)
{
    // Most lists hold no escape at all, and one character is found fast.
    for (qsizetype at = json.indexOf('\\'); at >= 0; at = json.indexOf('\\', at + 2)) {
        const QByteArrayView escape = QByteArrayView(json).sliced(at);
        if (escape.startsWith("\\ud") || escape.startsWith("\\uD")) {
            return true;
        }
    }
    return false;
}

QString orDash(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("-") : text;
}

QJsonValue unarchived(const QByteArray &data)
{
    const auto packed = QByteArray::fromBase64Encoding(data, QByteArray::AbortOnBase64DecodingErrors);
    if (!packed) {
        return {QJsonValue::Undefined};
    }
    const QJsonDocument document = QJsonDocument::fromJson(unpacked(*packed));
    if (document.isNull()) {
        return {QJsonValue::Undefined};
    }
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

} // namespace brevok
