// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/PackedRecord.h"

#include <QJsonDocument>

#include <algorithm>

namespace brevok {

namespace {

// Qt takes a mark of byte order at the start of a text away, and here it may be part of a name.
QByteArray textOf(const QJsonDocument &document)
{
    return document.toJson(QJsonDocument::Compact).replace("\xEF\xBB\xBF", "\\ufeff");
}

} // namespace

QByteArray jsonString(const QString &text)
{
    const bool plain = std::all_of(text.cbegin(), text.cend(),
        [](QChar c) { return c >= u' ' && c < u'\x7f' && c != u'"' && c != u'\\'; });
    if (!plain) {
        return textOf(QJsonDocument(QJsonArray{text})).sliced(1).chopped(1);
    }
    QByteArray json(text.size() + 2, '"');
    std::transform(text.cbegin(), text.cend(), json.begin() + 1, [](QChar c) { return c.toLatin1(); });
    return json;
}

PackedRecord PackedRecord::fromJson(QByteArray json)
{
    PackedRecord packed;
    packed.m_json = std::move(json);
    return packed;
}

QByteArray PackedRecord::json() const
{
    return isPacked() ? m_json : textOf(QJsonDocument(m_record));
}

Record PackedRecord::record() const
{
    return isPacked() ? QJsonDocument::fromJson(m_json).object() : m_record;
}

Record &PackedRecord::unpacked()
{
    if (isPacked()) {
        m_record = record();
        m_json.clear();
    }
    return m_record;
}

} // namespace brevok
