// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/SettingsText.h"

#include <QDateTime>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// QSettings keeps what it once read under a path; a path of its own for every text keeps them apart. A folder
// that nobody else may enter hides the files that QSettings makes on its way, which are not private from the
// start.
std::optional<QString> pathOfNewFile(const QTemporaryDir &folder, const QByteArray &text)
{
    QString path = folder.filePath("settings.ini"_L1);
    QFile file(path);
    const bool written = folder.isValid() && file.open(QIODevice::WriteOnly)
        && file.write(text) == text.size() && file.flush();
    return written ? std::optional(std::move(path)) : std::nullopt;
}

QString encodedKey(QString key)
{
    return key.replace(u'%', "%25"_L1).replace(u'/', "%2F"_L1).replace(u'\\', "%5C"_L1);
}

QString decodedKey(QString key)
{
    return key.replace("%5C"_L1, "\\"_L1).replace("%2F"_L1, "/"_L1).replace("%25"_L1, "%"_L1);
}

QVariant textForm(const QVariant &value)
{
    return value.typeId() == QMetaType::QDateTime
        ? QVariant(value.toDateTime().toUTC().toString(Qt::ISODateWithMs))
        : value;
}

bool holds(const QByteArray &text, const QVariantMap &values)
{
    const std::optional<QVariantMap> found = settingsValues(text);
    if (!found) {
        return false;
    }
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        if (!sameInSettings(found->value(value.key()), *value)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool sameInSettings(const QVariant &found, const QVariant &value)
{
    const QVariant wanted = textForm(value);
    return wanted.typeId() == QMetaType::QStringList ? found.toStringList() == wanted.toStringList()
                                                     : textForm(found).toByteArray() == wanted.toByteArray();
}

std::optional<QByteArray> settingsText(const QVariantMap &values)
{
    const QTemporaryDir folder;
    const std::optional<QString> path = pathOfNewFile(folder, {});
    if (!path) {
        return std::nullopt;
    }
    {
        QSettings settings(*path, QSettings::IniFormat);
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            settings.setValue(encodedKey(value.key()), textForm(*value));
        }
    }
    QFile written(*path);
    if (!written.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    // QSettings does not notice a disk that fills up while it writes.
    QByteArray text = written.readAll();
    return holds(text, values) ? std::optional(text) : std::nullopt;
}

std::optional<QVariantMap> settingsValues(const QByteArray &text)
{
    const QTemporaryDir folder;
    const std::optional<QString> path = text.contains('\0') ? std::nullopt : pathOfNewFile(folder, text);
    if (!path) {
        return std::nullopt;
    }
    const QSettings settings(*path, QSettings::IniFormat);
    QVariantMap values;
    const QStringList keys = settings.allKeys(); // parses: the status says more only after this
    if (settings.status() != QSettings::NoError) {
        return std::nullopt;
    }
    for (const QString &key : keys) {
        values.insert(decodedKey(key), settings.value(key));
    }
    return values;
}

} // namespace brevok
