// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/StateStore.h"

#include "platform/SettingsStore.h"

namespace brevok {

namespace {

constexpr QLatin1StringView valueKey("Value");

} // namespace

StateStore::StateStore(QObject *parent)
    : QObject(parent)
{
}

StateStore::~StateStore() = default;

void StateStore::commit(StateChanges changes, QObject *context, Done done)
{
    add(std::move(changes), {context, std::move(done)});
}

QJsonValue StateStore::value(const QString &key)
{
    return entries(key).value(QString()).value(valueKey);
}

StateChange StateStore::valueChange(const QString &key, const QJsonValue &value)
{
    return {key, QString(), Record{{valueKey, value}}};
}

void StateStore::setValue(const QString &key, const QJsonValue &value)
{
    commit({valueChange(key, value)});
}

Record StateStore::dateRecord(const QDateTime &date)
{
    return {{valueKey, date.toUTC().toString(Qt::ISODateWithMs)}};
}

QDateTime StateStore::dateOf(const Record &record)
{
    const QDateTime date = QDateTime::fromString(record.value(valueKey).toString(), Qt::ISODateWithMs);
    return date.isValid() ? date : SettingsStore::distantPast();
}

QDateTime StateStore::date(const QString &key)
{
    return dateOf(entries(key).value(QString()));
}

void StateStore::setDate(const QString &key, const QDateTime &date)
{
    commit({{key, QString(), dateRecord(date)}});
}

} // namespace brevok
