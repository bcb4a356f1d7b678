// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "targets/BrevokTargetApps.h"

#include "foundation/Record.h"
#include "platform/PropertyLists.h"
#include "platform/StateStore.h"

#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

BrevokTargetApps *sharedTargetApps = nullptr;

constexpr std::array namePatterns{"*InDesign 20*"_L1, "*InDesign CS*"_L1, "*InDesign CC*"_L1,
    "*InCopy 20*"_L1, "*InCopy CS*"_L1, "*InCopy CC*"_L1};
// The search has four clauses, so the last two patterns find nothing: InCopy CS and CC are added by hand, on
// purpose.
constexpr size_t searchClauses = 4;

QStringList searchPatterns()
{
    return {namePatterns.begin(), namePatterns.begin() + searchClauses};
}

/// What a host application's bundle says of itself.
struct HostApplication {
    QString targetPath;
    QString name;
    QString version;
};

/// The host application at @p foundPath; nothing for any other application.
std::optional<HostApplication> hostApplication(const QString &foundPath)
{
    QString path = QFileInfo(foundPath).canonicalFilePath();
    if (path.isEmpty()) {
        path = foundPath;
    }
    const Record information = bundleInformation(path).value_or(Record());
    const QString version = nonEmptyString(information.value("CFBundleVersion"_L1));
    const QString type = nonEmptyString(information.value("CFBundlePackageType"_L1));
    const QString signature = nonEmptyString(information.value("CFBundleSignature"_L1));
    if (version.isEmpty() || type != "APPL"_L1 || (signature != "InDn"_L1 && signature != "InCp"_L1)) {
        return std::nullopt;
    }
    constexpr qint64 buildsPerVersion = 100;
    return HostApplication{.targetPath = path.first(path.lastIndexOf(u'/') + 1) + "Plug-Ins/"_L1,
        .name = information.value("CFBundleName"_L1).toString(),
        .version = QString::number(leadingInteger(version) / buildsPerVersion)};
}

bool isSet(const Record &record, QLatin1StringView flag)
{
    return record.value(flag).toString() == TargetKeys::yes;
}

bool isVisible(const Record &record)
{
    return !isSet(record, TargetKeys::removed) && !isSet(record, TargetKeys::invalid);
}

TargetRecords recordsWhere(const TargetRecords &records, bool (*wanted)(const Record &))
{
    TargetRecords found;
    for (auto record = records.cbegin(); record != records.cend(); ++record) {
        if (wanted(record.value())) {
            found.insert(record.key(), record.value());
        }
    }
    return found;
}

} // namespace

BrevokTargetApps::BrevokTargetApps(StateStore &state, ApplicationSearch &search, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_search(&search)
{
    if (sharedTargetApps == nullptr) {
        sharedTargetApps = this;
    }
    load();
    connect(&state, &StateStore::becameReadable, this, [this] {
        Q_EMIT targetsWillChange();
        load();
        Q_EMIT targetsChanged();
        getInstallTargets(ApplicationSearch::Notification::DidUpdate);
    });
    connect(&state, &StateStore::everythingWanted, this, &BrevokTargetApps::saveEverything);
    connect(&search, &ApplicationSearch::notification, this, &BrevokTargetApps::getInstallTargets);
    search.start(searchPatterns());
}

BrevokTargetApps::~BrevokTargetApps()
{
    if (m_search) {
        m_search->stop();
    }
    if (sharedTargetApps == this) {
        sharedTargetApps = nullptr;
    }
}

BrevokTargetApps *BrevokTargetApps::targetApps()
{
    return sharedTargetApps;
}

void BrevokTargetApps::load()
{
    m_records.clear();
    const StateEntries stored = m_state.entries(QLatin1StringView(TargetSettings::data));
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry) {
        m_records.insert(entry.key(), *entry);
    }
    m_gathered = m_state.value(QLatin1StringView(TargetSettings::gathered)).toBool();
}

void BrevokTargetApps::save(const QString &path)
{
    if (const auto record = m_records.constFind(path); record != m_records.cend()) {
        m_state.commit({{QLatin1StringView(TargetSettings::data), path, *record}});
    }
}

void BrevokTargetApps::saveEverything()
{
    StateChanges changes{StateStore::valueChange(QLatin1StringView(TargetSettings::gathered), m_gathered)};
    for (auto record = m_records.cbegin(); record != m_records.cend(); ++record) {
        changes.append({QLatin1StringView(TargetSettings::data), record.key(), *record});
    }
    m_state.commit(changes);
}

void BrevokTargetApps::getInstallTargets(std::optional<ApplicationSearch::Notification> notification)
{
    // What is found must not stand in the place of records that cannot be read yet.
    if (!m_state.isReadable()) {
        return;
    }
    checkExistence();
    if (notification && m_search) {
        const QStringList results = m_search->results();
        for (const QString &path : results) {
            takeIn(path);
        }
    }
    if (notification == ApplicationSearch::Notification::DidFinishGathering) {
        endFirstGathering();
    }
}

void BrevokTargetApps::checkExistence()
{
    const QStringList paths = m_records.keys();
    for (const QString &path : paths) {
        if (!QFileInfo::exists(path)) {
            change(path, TargetKeys::invalid, TargetKeys::yes);
        }
    }
}

void BrevokTargetApps::takeIn(const QString &foundPath)
{
    const std::optional<HostApplication> host = hostApplication(foundPath);
    if (!host) {
        return;
    }
    const auto existing = m_records.constFind(host->targetPath);
    const bool known = existing != m_records.constEnd();
    const bool otherVersion = known && existing->contains(TargetKeys::version)
        && existing->value(TargetKeys::version) != QJsonValue(host->version);
    if ((!known || otherVersion) && QFileInfo::exists(host->targetPath)) {
        insertTarget(host->targetPath, host->name, host->version);
    } else if (has(host->targetPath, TargetKeys::invalid)) {
        change(host->targetPath, TargetKeys::invalid, TargetKeys::no);
    }
}

void BrevokTargetApps::endFirstGathering()
{
    if (std::exchange(m_gathered, true)) {
        return;
    }
    if (m_records.size() != 1) {
        Q_EMIT reviewWanted();
    }
    m_state.setValue(QLatin1StringView(TargetSettings::gathered), true);
}

void BrevokTargetApps::insertTarget(const QString &path, const QString &type, const QString &version)
{
    Q_EMIT targetsWillChange();
    m_records.insert(path,
        Record{{TargetKeys::path, path}, {TargetKeys::type, type}, {TargetKeys::version, version},
            {TargetKeys::enabled, TargetKeys::yes}, {TargetKeys::removed, TargetKeys::no},
            {TargetKeys::invalid, TargetKeys::no}});
    Q_EMIT targetsChanged();
    save(path);
}

void BrevokTargetApps::removeTarget(const QString &path)
{
    change(path, TargetKeys::removed, TargetKeys::yes);
    save(path);
}

void BrevokTargetApps::setTarget(const QString &path, bool state)
{
    change(path, TargetKeys::enabled, state ? TargetKeys::yes : TargetKeys::no);
    save(path);
}

void BrevokTargetApps::change(const QString &path, QLatin1StringView key, QLatin1StringView value)
{
    Q_EMIT targetsWillChange();
    if (const auto record = m_records.find(path); record != m_records.end()) {
        record->insert(key, value);
    }
    Q_EMIT targetsChanged();
}

bool BrevokTargetApps::has(const QString &path, QLatin1StringView flag) const
{
    return isSet(m_records.value(path), flag);
}

bool BrevokTargetApps::targetState(const QString &path) const
{
    return has(path, TargetKeys::enabled);
}

TargetRecords BrevokTargetApps::targets() const
{
    return recordsWhere(m_records, isVisible);
}

TargetRecords BrevokTargetApps::validTargets() const
{
    return recordsWhere(m_records,
        [](const Record &record) { return isVisible(record) && isSet(record, TargetKeys::enabled); });
}

} // namespace brevok
