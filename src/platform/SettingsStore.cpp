// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/SettingsStore.h"

#include "foundation/Log.h"
#include "foundation/Settings.h"

namespace brevok {

using namespace Qt::StringLiterals;

SettingsStore::SettingsStore(QObject *parent)
    : QObject(parent)
{
}

SettingsStore::~SettingsStore() = default;

void SettingsStore::registerDefaults(const QVariantMap &defaults)
{
    m_defaults = defaults;
}

void SettingsStore::lock(const QVariantMap &values)
{
    m_locked = values;
}

QVariant SettingsStore::value(const QString &key) const
{
    if (isLocked(key)) {
        return m_locked.value(key);
    }
    const QVariant stored = storedValue(key);
    return stored.isValid() ? stored : m_defaults.value(key);
}

bool SettingsStore::boolValue(const QString &key) const
{
    const QVariant found = value(key);
    const int type = found.typeId();
    if (!found.isValid() || type == QMetaType::Bool || type == QMetaType::Int || type == QMetaType::Double) {
        return found.toBool();
    }
    if (const std::optional<bool> truth = truthOf(found.toString())) {
        return *truth;
    }
    if (!m_unusable.contains(key)) {
        m_unusable.insert(key);
        logLine(u"The setting \"%1\" is not a word for yes or no and counts as not set."_s.arg(key));
    }
    return m_defaults.value(key).toBool();
}

int SettingsStore::integerValue(const QString &key) const
{
    return value(key).toInt();
}

double SettingsStore::floatValue(const QString &key) const
{
    return value(key).toDouble();
}

QByteArray SettingsStore::dataValue(const QString &key) const
{
    const QVariant data = value(key);
    return data.typeId() == QMetaType::QByteArray ? data.toByteArray() : QByteArray();
}

QStringList SettingsStore::stringListValue(const QString &key) const
{
    return value(key).toStringList();
}

QDateTime SettingsStore::dateValue(const QString &key) const
{
    const QDateTime date = value(key).toDateTime();
    return date.isValid() ? date : distantPast();
}

void SettingsStore::setValue(const QString &key, const QVariant &value)
{
    if (!isLocked(key)) {
        store(key, value);
    }
    Q_EMIT changed(key);
}

void SettingsStore::remove(const QString &key)
{
    if (!isLocked(key)) {
        erase(key);
    }
    Q_EMIT changed(key);
}

void SettingsStore::synchronize(QObject *context, StoreDone done)
{
    write({context, std::move(done)});
}

QDateTime SettingsStore::distantPast()
{
    return QDateTime::fromString(QStringLiteral("0001-01-01T00:00:00Z"), Qt::ISODate);
}

} // namespace brevok
