// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageStore.h"

#include "catalogue/CatalogueKeys.h"

#include <QJsonArray>

#include <utility>

namespace brevok {

namespace {

constexpr QLatin1StringView unlistedKey("Unlisted");

} // namespace

PackageStore::PackageStore(StateStore &state)
    : m_state(state)
{
}

int PackageStore::load()
{
    m_records = {};
    m_unsaved.clear();
    int unusable = 0;
    const StateEntries stored = m_state.entries(CatalogueKeys::packagesData);
    for (const PackedRecord &kept : stored) {
        const Record package = kept;
        if (const QString name = nonEmptyString(package.value(PackageKeys::name)); !name.isNull()) {
            m_records.put(name, package);
        } else {
            ++unusable;
        }
    }
    const Record list = m_state.entries(CatalogueKeys::packageList).value(QString());
    m_kept = KeptList::fromRecord(list, static_cast<qsizetype>(m_records.byName().size()));
    m_unlisted.clear();
    m_listUnsaved = false;
    const QJsonArray unlisted = list.value(unlistedKey).toArray();
    for (const QJsonValue name : unlisted) {
        m_unlisted.insert(name.toString());
    }
    return unusable;
}

QStringList PackageStore::listed() const
{
    QStringList names;
    for (const auto &[name, package] : m_records.byName()) {
        if (!m_unlisted.contains(name)) {
            names.append(name);
        }
    }
    return names;
}

void PackageStore::put(const QString &name, const Record &package)
{
    const auto known = m_records.byName().find(name);
    if (!m_unsaved.contains(name)) {
        m_unsaved.insert(
            name, known == m_records.byName().end() ? std::nullopt : std::optional(known->second));
    }
    m_records.put(name, package);
}

void PackageStore::setKept(const KeptList &list, const QSet<QString> &listed)
{
    QSet<QString> unlisted;
    for (const auto &[name, package] : m_records.byName()) {
        if (!list.mark.isEmpty() && !listed.contains(name)) {
            unlisted.insert(name);
        }
    }
    m_listUnsaved = m_listUnsaved || list != m_kept || unlisted != m_unlisted;
    m_kept = list;
    m_unlisted = unlisted;
}

void PackageStore::setKept(const KeptList &list)
{
    m_listUnsaved = m_listUnsaved || list != m_kept;
    m_kept = list;
}

StateChange PackageStore::listChange()
{
    m_listUnsaved = false;
    if (m_kept.mark.isEmpty()) {
        return {CatalogueKeys::packageList, QString(), std::nullopt};
    }
    Record list = m_kept.toRecord(static_cast<qsizetype>(m_records.byName().size()));
    if (!m_unlisted.isEmpty()) {
        QStringList names(m_unlisted.cbegin(), m_unlisted.cend());
        names.sort();
        list.insert(unlistedKey, QJsonArray::fromStringList(names));
    }
    return {CatalogueKeys::packageList, QString(), list};
}

void PackageStore::save(bool iconsComing)
{
    StateChanges changes;
    for (auto entry = m_unsaved.begin(); entry != m_unsaved.end();) {
        const Record &now = m_records.byName().at(entry.key());
        Record before = entry->value_or(Record());
        const bool differs = now != before;
        before.remove(PackageKeys::iconPath);
        if (differs && now == before && iconsComing) {
            ++entry; // it lost its icon only to get it again
            continue;
        }
        if (differs) {
            changes.append({CatalogueKeys::packagesData, entry.key(), now});
        }
        entry = m_unsaved.erase(entry);
    }
    if (m_listUnsaved) {
        changes.append(listChange());
    }
    if (!changes.isEmpty()) {
        m_state.commit(changes);
    }
}

StateChanges PackageStore::everything()
{
    StateChanges changes{listChange()};
    for (const auto &[name, package] : m_records.byName()) {
        changes.append({CatalogueKeys::packagesData, name, package});
    }
    m_unsaved.clear();
    return changes;
}

} // namespace brevok
