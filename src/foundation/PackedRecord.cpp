// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/PackedRecord.h"

#include <QJsonDocument>

namespace brevok {

PackedRecord PackedRecord::fromJson(QByteArray json)
{
    PackedRecord packed;
    packed.m_json = std::move(json);
    return packed;
}

// Qt takes a mark of byte order at the start of a text away, and here it may be part of a name.
QByteArray PackedRecord::json() const
{
    return isPacked()
        ? m_json
        : QJsonDocument(m_record).toJson(QJsonDocument::Compact).replace("\xEF\xBB\xBF", "\\ufeff");
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
