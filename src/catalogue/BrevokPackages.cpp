// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPackages.h"

#include "catalogue/CatalogueKeys.h"
#include "catalogue/ListRefresh.h"
#include "catalogue/PackageStatuses.h"
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

BrevokPackages::BrevokPackages(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_state(collaborators.state)
    , m_refresh(new ListRefresh(wording(), collaborators.state, collaborators.service, collaborators.alerts,
          {.read =
                  [this](const QJsonArray &list, const QByteArray & /*mark*/) {
                      return [this, list](const Task &taken) {
                          updateWithArray(list);
                          taken();
                      };
                  }},
          this))
    , m_icons(new PackageIcons(
          collaborators.service, collaborators.dataFolder, std::move(collaborators.formsImage), this))
    , m_statuses(new PackageStatuses(m_packages, collaborators.plugins, collaborators.targets, this))
    , m_ownCheck(new OwnCheck(
          [&plugins = collaborators.plugins](const auto &ended) { plugins.checkForUpdates(ended); },
          [this](const auto &ended) { m_refresh->check(ended); }, this))
{
    if (sharedPackages == nullptr) {
        sharedPackages = this;
    }
    m_statusTimer.setSingleShot(true);
    connect(&m_statusTimer, &QTimer::timeout, this, [this] {
        notifyPackageStatuses();
        m_statuses->calculateRest();
    });
    connect(m_statuses, &PackageStatuses::calculated, this, &BrevokPackages::statusesCalculated);
    connect(m_statuses, &PackageStatuses::settled, this, &BrevokPackages::statusesSettled);
    connect(m_refresh, &ListRefresh::due, this, [this] { checkForUpdates(); });
    connect(m_refresh, &ListRefresh::finished, this, &BrevokPackages::checkFinished);
    connect(m_ownCheck, &OwnCheck::answered, this, &BrevokPackages::notifyPackageStatusesLazily);
    connect(m_ownCheck, &OwnCheck::failed, this,
        [this](const BrevokError &error) { Q_EMIT ownCheckFailed(error.description); });
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
    if (!m_packages.byName().empty()) {
        calculatePackageStatuses();
    }
    connect(this, &BrevokPackages::packagesChanged, this, &BrevokPackages::calculatePackageStatuses);
    connect(&collaborators.targets, &BrevokTargetApps::targetsChanged, this,
        &BrevokPackages::calculatePackageStatuses);
    connect(&collaborators.plugins, &BrevokPlugins::pluginsChanged, this, [this](const QStringList &plugins) {
        plugins.isEmpty() ? m_statuses->calculate() : m_statuses->calculateFor(plugins);
    });
    m_statuses->letNextBegin(); // a change from here on is calculated at once
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
    m_packages = {};
    m_unsaved.clear();
    const QStringList notified = m_state.entries(CatalogueKeys::notifiedPackages).keys();
    m_notified = {notified.cbegin(), notified.cend()};
    m_undecided = m_notified;
    int unusable = 0;
    const StateEntries stored = m_state.entries(CatalogueKeys::packagesData);
    for (const PackedRecord &kept : stored) {
        const Record package = kept;
        if (const QString name = nonEmptyString(package.value(PackageKeys::name)); !name.isNull()) {
            m_packages.put(name, package);
            m_undecided.insert(name);
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
    for (const auto &[name, package] : m_packages.byName()) {
        m_icons->ensureIcon(name);
        if (const QString path = nonEmptyString(package.value(PackageKeys::iconPath)); !path.isNull()) {
            m_icons->load(name, path);
        }
    }
    Q_EMIT packagesIconsChanged();
}

QList<Record> BrevokPackages::packageRecords() const
{
    QList<Record> records;
    records.reserve(static_cast<qsizetype>(m_packages.byName().size()));
    for (const auto &[name, package] : m_packages.byName()) {
        records.append(package);
    }
    return records;
}

QList<Record> BrevokPackages::packagesWithPrefix(const QString &prefix) const
{
    QList<Record> records;
    const QStringList names = m_packages.namesWith(prefix);
    for (const QString &name : names) {
        records.append(m_packages.byName().at(name));
    }
    return records;
}

const QHash<QString, PackageStatus> &BrevokPackages::packagesStatus() const
{
    return m_statuses->all();
}

bool BrevokPackages::updating() const
{
    return m_statuses->updating();
}

bool BrevokPackages::needUpdate() const
{
    return m_statuses->needUpdate();
}

QTimer *BrevokPackages::updateTimer() const
{
    return m_refresh->timer();
}

void BrevokPackages::checkForUpdates(bool automatically, const OwnCheck::Handler &ended)
{
    if (automatically) {
        m_refresh->check();
    } else {
        Q_EMIT updateProgressWanted();
        m_ownCheck->begin(ended);
    }
}

void BrevokPackages::checkQuietly(const ListRefresh::CheckHandler &ended)
{
    m_refresh->check(ended, ListRefresh::Voice::Quiet);
}

void BrevokPackages::updateWithArray(const QJsonArray &list)
{
    Q_EMIT packagesWillChange();
    const QList<ListedPackage> packages = listedPackages(list);
    for (const auto &[name, package] : packages) {
        enter(package, name);
    }
    Q_EMIT packagesChanged();
    save();
}

void BrevokPackages::enter(const Record &package, const QString &name)
{
    m_icons->ensureIcon(name);
    noteChange(name);
    m_packages.put(name, package);
    m_undecided.insert(name);
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
    const auto known = m_packages.byName().find(name);
    if (known != m_packages.byName().end()) {
        noteChange(name);
        Record package = known->second;
        package.insert(PackageKeys::iconPath, path);
        m_packages.put(name, package);
    }
}

void BrevokPackages::noteChange(const QString &name)
{
    if (!m_unsaved.contains(name)) {
        const auto known = m_packages.byName().find(name);
        m_unsaved.insert(
            name, known == m_packages.byName().end() ? std::nullopt : std::optional(known->second));
    }
}

void BrevokPackages::save()
{
    StateChanges changes;
    for (auto entry = m_unsaved.begin(); entry != m_unsaved.end();) {
        const Record &now = m_packages.byName().at(entry.key());
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
    for (const auto &[name, package] : m_packages.byName()) {
        changes.append({CatalogueKeys::packagesData, name, package});
    }
    for (const QString &name : std::as_const(m_notified)) {
        changes.append({CatalogueKeys::notifiedPackages, name, Record()});
    }
    m_unsaved.clear();
    m_state.commit(changes);
}

void BrevokPackages::calculatePackageStatuses()
{
    m_statuses->calculate();
}

void BrevokPackages::statusesCalculated(const QStringList &prefixes)
{
    for (const QString &prefix : prefixes) {
        const QStringList names = m_packages.namesWith(prefix);
        m_undecided.unite({names.cbegin(), names.cend()});
    }
    Q_EMIT packagesStatusChanged();
    notifyPackageStatusesLazily();
}

void BrevokPackages::notifyPackageStatusesLazily()
{
    constexpr int lazyMilliseconds = 1000;
    m_statusTimer.start(lazyMilliseconds);
}

bool BrevokPackages::waits(const Record &package) const
{
    return waitsForUpdate(
        packagesStatus().value(package.value(PackageKeys::prefix).toString(), PackageStatus::MissingData));
}

QList<Record> BrevokPackages::waitingPackages() const
{
    QList<Record> packages = packageRecords();
    packages.removeIf([this](const Record &package) { return !waits(package); });
    return packages;
}

void BrevokPackages::whenSettled(QObject *context, const Task &then)
{
    if (m_statuses->isSettled()) {
        then();
    } else {
        connect(this, &BrevokPackages::statusesSettled, context, then, Qt::SingleShotConnection);
    }
}

void BrevokPackages::notifyPackageStatuses()
{
    StateChanges changes;
    const QSet<QString> undecided = std::exchange(m_undecided, {});
    for (const QString &name : undecided) {
        const auto package = m_packages.byName().find(name);
        const bool waiting = package != m_packages.byName().end() && waits(package->second);
        if (waiting == m_notified.contains(name)) {
            continue;
        }
        changes.append(
            {CatalogueKeys::notifiedPackages, name, waiting ? std::optional(Record()) : std::nullopt});
        if (waiting) {
            m_notified.insert(name);
            m_ownCheck->add(name);
        } else {
            m_notified.remove(name);
        }
    }
    if (!changes.isEmpty()) {
        m_state.commit(changes);
    }
    m_updates = static_cast<int>(m_notified.size());
    Q_EMIT updatesChanged(m_updates);
    // What the lists brought is known when the statuses are.
    if (m_ownCheck->hasResult() && !updating() && !needUpdate()) {
        showUpdateResult();
    }
}

void BrevokPackages::forgetNotified(const QString &name)
{
    if (m_notified.remove(name)) {
        m_undecided.insert(name);
        m_state.commit({{CatalogueKeys::notifiedPackages, name, std::nullopt}});
    }
}

void BrevokPackages::showUpdateResult()
{
    QStringList newNames = m_ownCheck->takeResult();
    newNames.removeIf([this](const QString &name) { return !m_notified.contains(name); });
    newNames.removeDuplicates();
    QString title = Texts::tr("You're up-to-date!");
    QString label = Texts::tr("There are no new Plug-In updates available.");
    if (newNames.size() == 1) {
        title = Texts::tr("Plug-In update available!");
        label = Texts::tr("%1 Plug-In update is available.").arg(newNames.first());
    } else if (!newNames.isEmpty()) {
        title = Texts::tr("Plug-In updates available!");
        label = Texts::tr("You have %1 Plug-In updates available.").arg(newNames.size());
    }
    Q_EMIT updateResult(title, label);
}

} // namespace brevok
