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
    , m_refresh(new ListRefresh(
          wording(), collaborators.state, collaborators.service, collaborators.alerts, listOwner(), this))
    , m_icons(new PackageIcons(collaborators.service, collaborators.dataFolder, this))
    , m_packages(collaborators.state)
    , m_statuses(
          new PackageStatuses(m_packages.records(), collaborators.plugins, collaborators.targets, this))
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
    if (!m_packages.records().byName().empty()) {
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

ListRefresh::Owner BrevokPackages::listOwner()
{
    return {.read =
                [this](const QJsonArray &list, const KeptList &as) {
                    return [this, list, as](const Task &taken) {
                        takeList(list, as);
                        taken();
                    };
                },
        .kept = [this] { return m_packages.kept(); },
        .keep =
            [this](const KeptList &as, const Task &taken) {
                m_packages.setKept(as);
                takeKept();
                taken();
            }};
}

void BrevokPackages::load()
{
    if (const int unusable = m_packages.load(); unusable > 0) {
        logLine(u"Stored packages: %1 unusable values left out."_s.arg(unusable));
    }
    const QStringList notified = m_state.entries(CatalogueKeys::notifiedPackages).keys();
    m_notified = {notified.cbegin(), notified.cend()};
    m_undecided = m_notified;
    for (const auto &[name, package] : m_packages.records().byName()) {
        m_undecided.insert(name);
    }
}

void BrevokPackages::loadStoredIcons()
{
    for (const auto &[name, package] : m_packages.records().byName()) {
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
    records.reserve(static_cast<qsizetype>(m_packages.records().byName().size()));
    for (const auto &[name, package] : m_packages.records().byName()) {
        records.append(package);
    }
    return records;
}

QList<Record> BrevokPackages::packagesWithPrefix(const QString &prefix) const
{
    QList<Record> records;
    const QStringList names = m_packages.records().namesWith(prefix);
    for (const QString &name : names) {
        records.append(m_packages.records().byName().at(name));
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
    takeList(list, {});
}

void BrevokPackages::takeList(const QJsonArray &list, const KeptList &as)
{
    Q_EMIT packagesWillChange();
    const ListedPackages listed = listedPackages(list);
    QSet<QString> names;
    for (const auto &[name, package] : listed.packages) {
        names.insert(name);
        enter(package, name);
    }
    m_packages.setKept(listed.mayBeKept ? as : KeptList(), names);
    Q_EMIT packagesChanged();
    save();
}

// What the same list does once more: each package loses the path of its icon, and gets its icon again.
void BrevokPackages::takeKept()
{
    Q_EMIT packagesWillChange();
    const QStringList names = m_packages.listed();
    for (const QString &name : names) {
        Record package = m_packages.records().byName().at(name);
        package.remove(PackageKeys::iconPath);
        enter(package, name);
    }
    Q_EMIT packagesChanged();
    save();
}

void BrevokPackages::enter(const Record &package, const QString &name)
{
    m_icons->ensureIcon(name);
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
    const auto known = m_packages.records().byName().find(name);
    if (known != m_packages.records().byName().end()) {
        Record package = known->second;
        package.insert(PackageKeys::iconPath, path);
        m_packages.put(name, package);
    }
}

void BrevokPackages::save()
{
    m_packages.save(!m_icons->idle());
}

void BrevokPackages::saveEverything()
{
    StateChanges changes = m_packages.everything();
    for (const QString &name : std::as_const(m_notified)) {
        changes.append({CatalogueKeys::notifiedPackages, name, Record()});
    }
    m_state.commit(changes);
}

void BrevokPackages::calculatePackageStatuses()
{
    m_statuses->calculate();
}

void BrevokPackages::statusesCalculated(const QStringList &prefixes)
{
    for (const QString &prefix : prefixes) {
        const QStringList names = m_packages.records().namesWith(prefix);
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

bool BrevokPackages::isSettled() const
{
    return m_statuses->isSettled();
}

void BrevokPackages::whenSettled(QObject *context, const Task &then)
{
    if (isSettled()) {
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
        const auto package = m_packages.records().byName().find(name);
        const bool waiting = package != m_packages.records().byName().end() && waits(package->second);
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
