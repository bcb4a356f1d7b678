// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/KeptList.h"

namespace brevok {

namespace {

constexpr QLatin1StringView markKey("Mark");
constexpr QLatin1StringView listedKey("Listed");
constexpr QLatin1StringView entityTagKey("ETag");
constexpr QLatin1StringView lastModifiedKey("LastModified");
constexpr QLatin1StringView scopeKey("Scope");

} // namespace

Record KeptList::toRecord(qsizetype records) const
{
    Record record{{markKey, QString::fromLatin1(mark)}, {listedKey, records}};
    const auto insert = [&record](QLatin1StringView key, const QByteArray &value) {
        if (!value.isEmpty()) {
            record.insert(key, QString::fromLatin1(value));
        }
    };
    insert(entityTagKey, validator.entityTag);
    insert(lastModifiedKey, validator.lastModified);
    insert(scopeKey, validator.scope);
    return record;
}

KeptList KeptList::fromRecord(const Record &record, qsizetype records)
{
    const auto value = [&record](QLatin1StringView key) {
        return record.value(key).toString().toLatin1();
    };
    KeptList list{.mark = value(markKey),
        .validator = {.entityTag = value(entityTagKey),
            .lastModified = value(lastModifiedKey),
            .scope = value(scopeKey)}};
    return record.value(listedKey).toInteger() == records && !list.mark.isEmpty() ? list : KeptList();
}

} // namespace brevok
