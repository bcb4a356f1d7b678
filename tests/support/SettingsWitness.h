// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSettings>
#include <QVariantMap>

#include <optional>

namespace brevok::testing {

/// A key of ours as the settings files of all versions have it: its slashes are no groups there.
inline QString keyInFile(QString key)
{
    return key.replace(u'%', QStringLiteral("%25"))
        .replace(u'/', QStringLiteral("%2F"))
        .replace(u'\\', QStringLiteral("%5C"));
}

inline QString keyOfFile(QString key)
{
    return key.replace(QStringLiteral("%5C"), QStringLiteral("\\"))
        .replace(QStringLiteral("%2F"), QStringLiteral("/"))
        .replace(QStringLiteral("%25"), QStringLiteral("%"));
}

/// What QSettings, which wrote the settings of earlier versions, reads in the file at @p path; nothing when
/// it finds it broken. It remembers files, so that each needs another path.
inline std::optional<QVariantMap> witnessedValues(const QString &path)
{
    const QSettings settings(path, QSettings::IniFormat);
    QVariantMap values;
    QStringList keys = settings.allKeys();
    keys.removeAll(QString()); // which nobody could ask for
    for (const QString &key : std::as_const(keys)) {
        const QVariant value = settings.value(key);
        const bool isList = value.typeId() == QMetaType::QVariantList;
        values.insert(keyOfFile(key), isList ? QVariant(value.toStringList()) : value);
    }
    return settings.status() == QSettings::NoError ? std::optional(values) : std::nullopt;
}

} // namespace brevok::testing
