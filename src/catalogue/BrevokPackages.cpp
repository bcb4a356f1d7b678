// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPackages.h"

#include "catalogue/CatalogueKeys.h"
#include "catalogue/ListRefresh.h"
#include "catalogue/StatusRun.h"
#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "targets/BrevokTargetApps.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokPackages *sharedPackages = nullptr;

ListRefresh::Wording wording()
{
    return {.path = u"/api/product/list"_s,
        .dateKey = CatalogueKeys::productsUpdateDate,
        .alertTitle = Texts::tr("Failed to update Products data"),
        .failedWithError = u"Packages update failed with error"_s,
        .failedWithResponse = u"Packages update failed with response: "_s,
        .failedWithContent = u"Packages definitions update failed!"_s};
}

} // namespace

bool BrevokPackages::ByName::operator()(const QString &a, const QString &b) const
{
    const int order = a.compare(b, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a < b;
}

BrevokPackages::BrevokPackages(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_state(collaborators.state)
    , m_plugins(collaborators.plugins)
    , m_targets(collaborators.targets)
    , m_refresh(new ListRefresh(
          wording(), collaborators.state, collaborators.service, collaborators.alerts,
          [this](const QJsonArray &list) { updateWithArray(list); }, this))
    , m_icons(new PackageIcons(
          collaborators.service, collaborators.dataFolder, std::move(collaborators.formsImage), this))
    , m_known(std::make_unique<StatusMemory>())
{
    if (sharedPackages == nullptr) {
        sharedPackages = this;
    }
    m_statusTimer.setSingleShot(true);
    connect(&m_statusTimer, &QTimer::timeout, this, &BrevokPackages::notifyPackageStatuses);
    connect(m_refresh, &ListRefresh::due, this, [this] { checkForUpdates(); });
    connect(m_refresh, &ListRefresh::finished, this, &BrevokPackages::checkFinished);
    connect(m_icons, &PackageIcons::iconChanged, this, &BrevokPackages::packagesIconsChanged);
    connect(m_icons, &PackageIcons::cached, this, &BrevokPackages::iconCached);
    connect(m_icons, &PackageIcons::downloadEnded, this, &BrevokPackages::save);
    connect(&m_state, &StateStore::becameReadable, this, [this] {
        Q_EMIT packagesWillChange();
        load();
        Q_EMIT packagesChanged();
        start();
    });
    connect(&m_state, &StateStore::everythingWanted, this, &BrevokPackages::saveEverything);

    load();
    if (!m_packages.empty()) {
        calculatePackageStatuses();
    }
    observe();
    // A change from here on is calculated at once, beside the calculation that may be under way.
    m_updating = false;
}

BrevokPackages::~BrevokPackages()
{
    if (sharedPackages == this) {
        sharedPackages = nullptr;
    }
}

void BrevokPackages::start()
{
    loadStoredIcons();
    checkForUpdates();
}

BrevokPackages *BrevokPackages::packages()
{
    return sharedPackages;
}

void BrevokPackages::load()
{
    m_packages.clear();
    m_unsaved.clear();
    m_notified = m_state.entries(CatalogueKeys::notifiedPackages).keys();
    int unusable = 0;
    const StateEntries stored = m_state.entries(CatalogueKeys::packagesData);
    for (const Record &package : stored) {
        if (const QString name = nonEmptyString(package.value(PackageKeys::name)); !name.isNull()) {
            m_packages.insert_or_assign(name, package);
        } else {
            ++unusable;
        }
    }
    if (unusable > 0) {
        logLine(u"Stored packages: %1 unusable values left out."_s.arg(unusable));
    }
}

void BrevokPackages::loadStoredIcons()
{
    for (const auto &[name, package] : m_packages) {
        m_icons->ensureIcon(name);
        if (const QString path = nonEmptyString(package.value(PackageKeys::iconPath)); !path.isNull()) {
            m_icons->load(name, path);
        }
    }
    Q_EMIT packagesIconsChanged();
}

void BrevokPackages::observe()
{
    connect(this, &BrevokPackages::packagesChanged, this, &BrevokPackages::calculatePackageStatuses);
    connect(&m_plugins, &BrevokPlugins::pluginsChanged, this, &BrevokPackages::calculatePackageStatuses);
    connect(&m_targets, &BrevokTargetApps::targetsChanged, this, &BrevokPackages::calculatePackageStatuses);
}

QList<Record> BrevokPackages::packageRecords() const
{
    QList<Record> records;
    records.reserve(static_cast<qsizetype>(m_packages.size()));
    for (const auto &entry : m_packages) {
        records.append(entry.second);
    }
    return records;
}

QTimer *BrevokPackages::updateTimer() const
{
    return m_refresh->timer();
}

void BrevokPackages::checkForUpdates(bool automatically, const std::function<void(bool ok)> &ended)
{
    m_showNotifications = automatically;
    if (!automatically) {
        Q_EMIT updateProgressWanted();
    }
    m_refresh->check(ended);
}

void BrevokPackages::updateWithArray(const QJsonArray &list)
{
    Q_EMIT packagesWillChange();
    for (const QJsonValue element : list) {
        if (!element.isObject()) {
            logLine(u"package is not nsdirectory!"_s);
            continue;
        }
        const Record package = element.toObject();
        if (package.value(PackageKeys::platform).toString() != PluginKeys::mac) {
            continue;
        }
        const QString name = nonEmptyString(package.value(PackageKeys::name));
        if (name.isNull() || nonEmptyString(package.value(PackageKeys::published)).isNull()
            || nonEmptyString(package.value(PackageKeys::version)).isNull()) {
            logLine(u"package data do not containe name!"_s);
            continue;
        }
        enter(package, name);
    }
    Q_EMIT packagesChanged();
    save();
}

void BrevokPackages::enter(const Record &package, const QString &name)
{
    m_icons->ensureIcon(name);
    noteChange(name);
    m_packages.insert_or_assign(name, package);
    const QString path = nonEmptyString(package.value(PackageKeys::iconPath));
    const QString address = nonEmptyString(package.value(PackageKeys::icon));
    if (!path.isNull()) {
        m_icons->load(name, path, address);
    } else if (!address.isNull()) {
        m_icons->download(name, address);
    }
}

void BrevokPackages::iconCached(const QString &name, const QString &path)
{
    const auto package = m_packages.find(name);
    if (package != m_packages.end()) {
        noteChange(name);
        package->second.insert(PackageKeys::iconPath, path);
    }
}

void BrevokPackages::noteChange(const QString &name)
{
    if (!m_unsaved.contains(name)) {
        const auto known = m_packages.find(name);
        m_unsaved.insert(name, known == m_packages.end() ? std::nullopt : std::optional(known->second));
    }
}

void BrevokPackages::save()
{
    StateChanges changes;
    for (auto entry = m_unsaved.begin(); entry != m_unsaved.end();) {
        const Record &now = m_packages[entry.key()];
        Record before = entry->value_or(Record());
        const bool differs = now != before;
        before.remove(PackageKeys::iconPath);
        if (differs && now == before && !m_icons->idle()) {
            ++entry; // it lost its icon only to get it again
            continue;
        }
        if (differs) {
            changes.append({CatalogueKeys::packagesData, entry.key(), now});
        }
        entry = m_unsaved.erase(entry);
    }
    if (!changes.isEmpty()) {
        m_state.commit(changes);
    }
}

void BrevokPackages::saveEverything()
{
    StateChanges changes;
    for (const auto &[name, package] : m_packages) {
        changes.append({CatalogueKeys::packagesData, name, package});
    }
    for (const QString &name : std::as_const(m_notified)) {
        changes.append({CatalogueKeys::notifiedPackages, name, Record()});
    }
    m_unsaved.clear();
    m_state.commit(changes);
}

} // namespace brevok
