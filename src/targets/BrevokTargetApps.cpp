// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "targets/BrevokTargetApps.h"

#include "foundation/Paths.h"
#include "foundation/Record.h"
#include "platform/StateStore.h"
#include "targets/TargetLook.h"

#include <QCoreApplication>
#include <QDir>

#include <array>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

BrevokTargetApps *sharedTargetApps = nullptr;

constexpr std::array namePatterns{"*InDesign 20*"_L1, "*InDesign CS*"_L1, "*InDesign CC*"_L1,
    "*InCopy 20*"_L1, "*InCopy CS*"_L1, "*InCopy CC*"_L1};
// The search has four clauses, so the last two patterns find nothing: InCopy CS and CC are added by hand.
constexpr size_t searchClauses = 4;

QStringList searchPatterns()
{
    return {namePatterns.begin(), namePatterns.begin() + searchClauses};
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

/// @p path without needless slashes and dots. What ".." leads to, only the disk knows.
QString plainPath(const QString &path)
{
    return path.contains("/.."_L1) ? path : withoutTrailingSlashes(QDir::cleanPath(path));
}

/// Which of two records of one folder is to stay, the better the higher: what the user sees, then what the
/// search finds.
int rank(const QString &path, const Record &record)
{
    return (isSet(record, TargetKeys::removed) ? 0 : 2) + (path.endsWith(u'/') ? 1 : 0);
}

/// What is to be done when a disk that was given up answers after all.
Task lookAgain(const QPointer<BrevokTargetApps> &targets)
{
    return [targets] {
        onMain(QCoreApplication::instance(), [targets] {
            if (targets) {
                targets->getInstallTargets(ApplicationSearch::Notification::DidUpdate);
            }
        });
    };
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
    connect(&search, &ApplicationSearch::volumesChanged, this,
        [this] { lookFor({.notification = std::nullopt, .volumes = true}); });
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
    const StateEntries stored = m_state.entries(TargetSettings::data);
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry) {
        m_records.insert(entry.key(), *entry);
    }
    m_gathered = m_state.value(TargetSettings::gathered).toBool();
}

void BrevokTargetApps::save(const QString &path)
{
    if (const std::optional<QString> known = recordPath(path)) {
        m_state.commit({{TargetSettings::data, *known, m_records[*known]}});
    }
}

void BrevokTargetApps::saveEverything()
{
    StateChanges changes{StateStore::valueChange(TargetSettings::gathered, m_gathered)};
    for (auto record = m_records.cbegin(); record != m_records.cend(); ++record) {
        changes.append({TargetSettings::data, record.key(), *record});
    }
    m_state.commit(changes);
}

void BrevokTargetApps::getInstallTargets(std::optional<ApplicationSearch::Notification> notification)
{
    lookFor({.notification = notification});
}

void BrevokTargetApps::lookFor(const Occasion &occasion)
{
    // What is found must not stand in the place of records that cannot be read yet.
    if (!m_state.isReadable()) {
        return;
    }
    m_occasions.append(occasion);
    if (!m_looking) {
        look();
    }
}

// The disk is asked in the background, once for all that was notified before.
void BrevokTargetApps::look()
{
    const QStringList folders = m_records.keys();
    const QStringList bundles = m_search ? m_search->results() : QStringList();
    const QList<Occasion> occasions = std::exchange(m_occasions, {});
    if (folders.isEmpty() && bundles.isEmpty()) {
        apply(occasions, {});
        return;
    }
    m_looking = true;
    inBackground([self = QPointer(this), occasions, folders, bundles] {
        onMain(QCoreApplication::instance(),
            [self, occasions, findings = lookAtTargets(folders, bundles, lookAgain(self))] {
                if (self) {
                    self->apply(occasions, findings);
                }
            });
    });
}

void BrevokTargetApps::apply(const QList<Occasion> &occasions, const TargetFindings &findings)
{
    m_looks.insert(findings.folders);
    m_looks.removeIf([this](auto look) { return !m_records.contains(look.key()); });
    mergeSpellings();
    for (const Occasion &occasion : occasions) {
        checkExistence(findings, occasion.volumes);
        if (occasion.notification) {
            for (const HostApplication &host : findings.hosts) {
                takeIn(host);
            }
        }
        if (occasion.notification == ApplicationSearch::Notification::DidFinishGathering) {
            endFirstGathering();
        }
    }
    m_looking = false;
    Q_EMIT looked();
    if (!m_occasions.isEmpty()) {
        look();
    }
}

// A folder that comes back with its volume is valid as it is after a start.
void BrevokTargetApps::checkExistence(const TargetFindings &findings, bool volumesChanged)
{
    const QStringList paths = m_records.keys();
    for (const QString &path : paths) {
        const auto look = findings.folders.constFind(path);
        if (look == findings.folders.cend()) {
            continue;
        }
        if (!look->exists) {
            change(path, TargetKeys::invalid, TargetKeys::yes);
        } else if (volumesChanged && has(path, TargetKeys::invalid)) {
            change(path, TargetKeys::invalid, TargetKeys::no);
        }
    }
}

// Earlier versions kept a record for every spelling.
void BrevokTargetApps::mergeSpellings()
{
    const QStringList paths = m_records.keys();
    QSet<QString> superfluous;
    for (const QString &path : paths) {
        for (const QString &other : paths) {
            if (path != other && rank(path, m_records[path]) >= rank(other, m_records[other])
                && !superfluous.contains(path) && isSame(path, other)) {
                superfluous.insert(other);
            }
        }
    }
    if (superfluous.isEmpty()) {
        return;
    }
    Q_EMIT targetsWillChange();
    StateChanges changes;
    for (const QString &path : std::as_const(superfluous)) {
        m_records.remove(path);
        m_looks.remove(path);
        changes.append({TargetSettings::data, path, std::nullopt});
    }
    Q_EMIT targetsChanged();
    m_state.commit(changes);
}

bool BrevokTargetApps::isSame(const QString &path, const QString &other) const
{
    const auto a = m_looks.constFind(path);
    const auto b = m_looks.constFind(other);
    const QString plain = plainPath(path);
    const QString otherPlain = plainPath(other);
    return plain == otherPlain || (a != m_looks.cend() && a->resolved == otherPlain)
        || (b != m_looks.cend() && b->resolved == plain)
        || (a != m_looks.cend() && b != m_looks.cend() && isSameFolder(*a, *b));
}

std::optional<QString> BrevokTargetApps::recordPath(const QString &path) const
{
    if (m_records.contains(path)) {
        return path;
    }
    for (auto record = m_records.cbegin(); record != m_records.cend(); ++record) {
        if (isSame(record.key(), path)) {
            return record.key();
        }
    }
    return std::nullopt;
}

void BrevokTargetApps::lookAt(
    const QString &path, QObject *context, std::function<void(const std::optional<FolderLook> &)> then)
{
    inBackground([self = QPointer(this), path, folders = QStringList(path) + m_records.keys(),
                     context = QPointer(context), then = std::move(then)]() mutable {
        TargetFindings findings = lookAtTargets(folders, {}, lookAgain(self));
        // Moved on, so that nothing of the caller's is destroyed on this thread.
        onMain(QCoreApplication::instance(),
            [self, path, context = std::move(context), then = std::move(then),
                findings = std::move(findings)] {
                if (!self || !context) {
                    return;
                }
                self->m_looks.insert(findings.folders);
                const auto look = findings.folders.constFind(path);
                then(look != findings.folders.cend() ? std::optional(*look) : std::nullopt);
            });
    });
}

QString BrevokTargetApps::resolvedPath(const QString &path) const
{
    const QString resolved = m_looks.value(path).resolved;
    return resolved.isEmpty() ? path : resolved;
}

QStringList BrevokTargetApps::searchedFolders() const
{
    return m_search ? m_search->folders() : QStringList();
}

void BrevokTargetApps::takeIn(const HostApplication &host)
{
    m_looks.insert(host.targetPath, host.folder);
    const QString path = recordPath(host.targetPath).value_or(host.targetPath);
    const auto existing = m_records.constFind(path);
    const bool known = existing != m_records.constEnd();
    const bool otherVersion = known && existing->contains(TargetKeys::version)
        && existing->value(TargetKeys::version) != QJsonValue(host.version);
    if ((!known || otherVersion) && host.folder.exists) {
        insertTarget(path, host.name, host.version);
    } else if (has(path, TargetKeys::invalid)) {
        change(path, TargetKeys::invalid, TargetKeys::no);
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
    m_state.setValue(TargetSettings::gathered, true);
}

void BrevokTargetApps::insertTarget(const QString &path, const QString &type, const QString &version)
{
    const QString key = recordPath(path).value_or(path);
    Q_EMIT targetsWillChange();
    m_records.insert(key,
        Record{{TargetKeys::path, key}, {TargetKeys::type, type}, {TargetKeys::version, version},
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
    if (const std::optional<QString> known = recordPath(path)) {
        m_records[*known].insert(key, value);
    }
    Q_EMIT targetsChanged();
}

bool BrevokTargetApps::has(const QString &path, QLatin1StringView flag) const
{
    return isSet(m_records.value(recordPath(path).value_or(path)), flag);
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
