// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/StateTakeOver.h"

#include "catalogue/CatalogueKeys.h"
#include "catalogue/DefinitionTables.h"
#include "foundation/Log.h"
#include "platform/SettingsStore.h"
#include "targets/BrevokTargetApps.h"
#include "updates/AutomaticChecks.h"

#include <QCryptographicHash>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// One entry for every key: a digest of what was taken over.
const QString takenOver = u"TakenOver"_s;
constexpr QLatin1StringView digestKey("Digest");

constexpr QLatin1StringView sessionData("OrlecSessionData");
constexpr QLatin1StringView sessionVersion("OrlecSessionVersion");
constexpr QLatin1StringView notificationDate("OrlecInstallNotificationDate"); // and the application's path

bool isState(const QString &key)
{
    static const QSet<QString> keys{sessionData, sessionVersion, TargetSettings::gathered,
        TargetSettings::data, CatalogueKeys::packagesData, CatalogueKeys::pluginsData,
        CatalogueKeys::pluginsUpdateDate, CatalogueKeys::productsUpdateDate, CatalogueKeys::notifiedPackages,
        AutomaticChecks::lastCheckKey};
    return keys.contains(key) || key.startsWith(notificationDate);
}

Record digestOf(const QVariant &value)
{
    const QByteArray bytes = value.typeId() == QMetaType::QStringList
        ? value.toStringList().join(QChar(0)).toUtf8()
        : value.toByteArray();
    const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
    return {{digestKey, QString::fromLatin1(digest.toHex())}};
}

} // namespace

StateTakeOver::StateTakeOver(SettingsStore &settings, StateStore &state, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_state(state)
{
    connect(&state, &StateStore::becameReadable, this, &StateTakeOver::run);
    run();
}

StateTakeOver::~StateTakeOver() = default;

void StateTakeOver::run()
{
    QStringList found;
    const QStringList keys = m_settings.keys();
    std::copy_if(keys.cbegin(), keys.cend(), std::back_inserter(found), isState);
    if (found.isEmpty()) {
        return;
    }
    const StateEntries taken = m_state.entries(takenOver);
    if (!m_state.isReadable()) {
        return; // run again when it is
    }
    StateChanges changes;
    for (const QString &key : std::as_const(found)) {
        const Record digest = digestOf(m_settings.value(key));
        if (taken.value(key) != digest) {
            changes += converted(key);
            changes.append({takenOver, key, digest});
        }
    }
    m_state.commit(changes, this, [this, found](const auto &error) {
        if (!error) {
            for (const QString &key : found) {
                m_settings.remove(key);
            }
        }
    });
}

StateChanges StateTakeOver::converted(const QString &key)
{
    if (key == sessionVersion) {
        return {StateStore::valueChange(key, m_settings.floatValue(key))};
    }
    if (key == TargetSettings::gathered) {
        return {StateStore::valueChange(key, m_settings.boolValue(key))};
    }
    if (key == CatalogueKeys::pluginsUpdateDate || key == CatalogueKeys::productsUpdateDate
        || key == AutomaticChecks::lastCheckKey) {
        return {{key, QString(), StateStore::dateRecord(m_settings.dateValue(key))}};
    }
    if (key.startsWith(notificationDate)) {
        return {{notificationDate, key.sliced(notificationDate.size()),
            StateStore::dateRecord(m_settings.dateValue(key))}};
    }
    return convertedRecords(key);
}

// What stood under the key before gives way.
StateChanges StateTakeOver::convertedRecords(const QString &key)
{
    const bool isList = key == CatalogueKeys::notifiedPackages;
    const QJsonValue value = isList ? QJsonValue() : unarchived(m_settings.dataValue(key));
    if (!isList && !value.isObject()) {
        m_settings.setAside(key, u"it is not an archived dictionary"_s);
        return {};
    }
    StateChanges changes;
    const auto clear = [&](const QString &group) {
        const QStringList entries = m_state.entries(group).keys();
        for (const QString &entry : entries) {
            changes.append({group, entry, std::nullopt});
        }
    };
    clear(key);
    if (isList) {
        const QStringList names = m_settings.stringListValue(key);
        for (const QString &name : names) {
            changes.append({key, wellFormed(name), Record()});
        }
        return changes;
    }
    const Record values = wellFormed(value).toObject();
    if (key == sessionData) {
        changes.append({key, QString(), values});
        return changes;
    }
    int unusable = 0;
    if (key == CatalogueKeys::pluginsData) {
        clear(CatalogueKeys::pluginPrefixes);
        DefinitionTables tables;
        unusable = tables.loadLists(values);
        changes += tables.changes();
    } else {
        for (auto entry = values.constBegin(); entry != values.constEnd(); ++entry) {
            unusable += entry.value().isObject() ? 0 : 1;
            if (entry.value().isObject()) {
                changes.append({key, entry.key(), entry.value().toObject()});
            }
        }
    }
    if (unusable > 0) {
        logLine(u"%1 of an earlier version: %2 unusable values left out."_s.arg(key).arg(unusable));
    }
    return changes;
}

} // namespace brevok
