// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPackages.h"

#include "catalogue/CatalogueSettings.h"
#include "catalogue/ListRefresh.h"
#include "catalogue/StatusRun.h"
#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "platform/SettingsStore.h"
#include "targets/BrevokTargetApps.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokPackages *sharedPackages = nullptr;

// Storing the whole catalogue after each icon may take at most this part of the time.
constexpr qint64 saveShare = 20;

ListRefresh::Wording wording()
{
    return {.path = u"/api/product/list"_s,
        .dateKey = CatalogueSettings::productsUpdateDate,
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
    , m_settings(collaborators.settings)
    , m_plugins(collaborators.plugins)
    , m_targets(collaborators.targets)
    , m_refresh(new ListRefresh(
          wording(), collaborators.settings, collaborators.service, collaborators.alerts,
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
    connect(m_icons, &PackageIcons::downloadEnded, this, &BrevokPackages::saveAfterIcon);

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
    int unusable = 0;
    const Record stored = storedDictionary(m_settings, CatalogueSettings::packagesData);
    for (auto entry = stored.constBegin(); entry != stored.constEnd(); ++entry) {
        const Record package = entry.value().toObject();
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
        const QString path = nonEmptyString(package.value(PackageKeys::iconPath));
        if (path.isNull() || !m_icons->load(name, path)) {
            m_icons->ensureIcon(name);
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
    m_settings.synchronize();
}

void BrevokPackages::enter(const Record &package, const QString &name)
{
    m_icons->ensureIcon(name);
    m_packages.insert_or_assign(name, package);
    const QString path = nonEmptyString(package.value(PackageKeys::iconPath));
    if (!path.isNull() && m_icons->load(name, path)) {
        return;
    }
    if (const QString address = nonEmptyString(package.value(PackageKeys::icon)); !address.isNull()) {
        m_icons->download(name, address);
    }
}

void BrevokPackages::iconCached(const QString &name, const QString &path)
{
    const auto package = m_packages.find(name);
    if (package != m_packages.end()) {
        package->second.insert(PackageKeys::iconPath, path);
        m_iconPathsUnsaved = true;
    }
}

void BrevokPackages::saveAfterIcon()
{
    const bool affordable = m_sinceSave.elapsed() >= saveShare * m_saveCost;
    if (m_iconPathsUnsaved && (m_icons->idle() || affordable)) {
        save();
    }
}

void BrevokPackages::save()
{
    m_sinceSave.start();
    Record stored;
    for (const auto &[name, package] : m_packages) {
        stored.insert(name, package);
    }
    m_settings.setValue(CatalogueSettings::packagesData, archived(stored));
    m_iconPathsUnsaved = false;
    m_saveCost = m_sinceSave.restart();
}

} // namespace brevok
