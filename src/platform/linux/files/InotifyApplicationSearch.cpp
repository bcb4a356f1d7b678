// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/InotifyApplicationSearch.h"

#include "foundation/BoundedWork.h"
#include "foundation/Log.h"
#include "platform/linux/files/MountWatch.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

/// Events come in bursts; what comes within this time of the first is looked at together.
constexpr std::chrono::milliseconds settlingTime(200);

QString prefixOf(const QString &path)
{
    return childPath(path, QString());
}

/// Whether one of the folders above @p path, up to the root, is in @p changed.
bool isBelowAny(const QSet<QString> &changed, const QString &path, const QString &root)
{
    QString above = path;
    while (above.size() > root.size()) {
        const qsizetype slash = above.lastIndexOf(u'/');
        above = slash > 0 ? above.first(slash) : u"/"_s;
        if (changed.contains(above)) {
            return true;
        }
    }
    return false;
}

using Items = QMap<QString, SearchItem>;

/// Whether an application came, went or changed, or a folder went, with which a target may have gone.
bool isNews(const Items &before, const Items &now)
{
    const auto bundleIn = [](const Items &items, const QString &path) {
        return items.value(path).bundle;
    };
    const auto isOld = [&](const QString &path) {
        return now.contains(path) && bundleIn(now, path) == bundleIn(before, path);
    };
    const auto isNew = [&](const QString &path) {
        return !before.contains(path) && bundleIn(now, path);
    };
    return !std::all_of(before.keyBegin(), before.keyEnd(), isOld)
        || std::any_of(now.keyBegin(), now.keyEnd(), isNew);
}

} // namespace

InotifyApplicationSearch::InotifyApplicationSearch(const QStringList &folders, QObject *parent)
    : ApplicationSearch(parent)
{
    for (const QString &folder : folders) {
        const QString root = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
        const bool known = std::any_of(m_scopes.cbegin(), m_scopes.cend(),
            [&root](const SearchScope &scope) { return scope.root == root; });
        if (!folder.isEmpty() && !known) {
            m_scopes.append({.root = root});
        }
    }
    m_items.resize(m_scopes.size());
    m_changed.resize(m_scopes.size());
    m_settling.setSingleShot(true);
    m_settling.setInterval(settlingTime);
    connect(&m_settling, &QTimer::timeout, this, &InotifyApplicationSearch::scanChanges);
}

InotifyApplicationSearch::~InotifyApplicationSearch()
{
    InotifyApplicationSearch::stop();
}

QStringList InotifyApplicationSearch::folders() const
{
    QStringList roots;
    for (const SearchScope &scope : m_scopes) {
        roots.append(scope.root);
    }
    return roots;
}

void InotifyApplicationSearch::start(const QStringList &namePatterns)
{
    for (SearchScope &scope : m_scopes) {
        scope.patterns = namePatterns;
    }
    m_queue = std::make_shared<InotifyQueue>();
    if (m_queue->descriptor() >= 0) {
        m_notifier = std::make_unique<QSocketNotifier>(m_queue->descriptor(), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &InotifyApplicationSearch::readEvents);
    } else {
        logOnce(u"Application search: folders cannot be watched, changes will not be noticed"_s);
    }
    m_mounts = std::make_unique<MountWatch>();
    connect(m_mounts.get(), &MountWatch::changed, this, &InotifyApplicationSearch::noticeVolumes);
    onMain(this, [this] {
        if (m_queue) {
            Q_EMIT notification(Notification::DidStartGathering);
        }
    });
    markEverything();
    scanChanges();
}

void InotifyApplicationSearch::stop()
{
    m_settling.stop();
    m_mounts.reset();
    m_notifier.reset();
    if (m_queue) {
        m_queue->cancel();
        m_queue.reset();
    }
}

void InotifyApplicationSearch::readEvents()
{
    constexpr size_t room = 65536;
    alignas(inotify_event) std::array<char, room> buffer;
    const ssize_t length = ::read(m_queue->descriptor(), buffer.data(), buffer.size());
    ssize_t at = 0;
    while (at < length) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        const char *name = buffer.data() + at + sizeof event;
        handleEvent(event, event.len > 0 ? QFile::decodeName(name) : QString());
        at += static_cast<ssize_t>(sizeof event + event.len);
    }
    settle();
}

// Nothing tells a watched folder that a volume now covers it.
void InotifyApplicationSearch::noticeVolumes()
{
    m_volumesChanged = true;
    markEverything();
    settle();
}

void InotifyApplicationSearch::settle()
{
    const bool changed = std::any_of(
        m_changed.cbegin(), m_changed.cend(), [](const QSet<QString> &paths) { return !paths.isEmpty(); });
    if ((changed || m_volumesChanged) && !m_scanning && !m_settling.isActive()) {
        m_settling.start();
    }
}

void InotifyApplicationSearch::handleEvent(const inotify_event &event, const QString &name)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        markEverything();
        return;
    }
    if ((event.mask & IN_IGNORED) != 0) {
        m_holders.remove(event.wd);
        return;
    }
    const QList<Holder> holders = m_holders.value(event.wd);
    for (const Holder &holder : holders) {
        if (name.isEmpty() || holder.names.contains(name)) {
            markChanged(holder.root, holder.path);
        } else if (holder.folder) {
            handleFolderEntry(holder, name, (event.mask & IN_ISDIR) != 0);
        }
    }
}

void InotifyApplicationSearch::handleFolderEntry(const Holder &holder, const QString &name, bool isFolder)
{
    const SearchScope &scope = m_scopes[holder.root];
    const QString path = childPath(holder.path, name);
    const bool concerned = isBundleName(name)
        ? scope.matches(name)
        : isFolder && isSearchedFolderName(name) && scope.depth(path) <= deepestSearchedFolder;
    if (concerned) {
        markChanged(holder.root, path);
    }
}

void InotifyApplicationSearch::markChanged(qsizetype root, const QString &path)
{
    m_changed[root].insert(path);
}

void InotifyApplicationSearch::markEverything()
{
    for (qsizetype root = 0; root < m_scopes.size(); ++root) {
        markChanged(root, m_scopes[root].root);
    }
}

void InotifyApplicationSearch::scanChanges()
{
    if (std::exchange(m_volumesChanged, false)) {
        Q_EMIT volumesChanged();
    }
    QList<ScanResult> wanted;
    for (qsizetype root = 0; root < m_scopes.size(); ++root) {
        const SearchScope &scope = m_scopes[root];
        const QSet<QString> changed = std::exchange(m_changed[root], {});
        for (const QString &path : changed) {
            if (!isBelowAny(changed, path, scope.root)) {
                wanted.append({.scope = scope, .path = path});
            }
        }
    }
    if (m_notifier) {
        m_notifier->setEnabled(false);
    }
    m_scanning = true;
    inBackground([search = QPointer<InotifyApplicationSearch>(this), queue = m_queue, wanted] {
        const auto lookAgain = [search] {
            onMain(QCoreApplication::instance(), [search] {
                if (search && search->m_queue) {
                    search->markEverything();
                    search->settle();
                }
            });
        };
        QList<ScanResult> results;
        for (const ScanResult &place : wanted) {
            const auto scan = [queue, place](Pulse &pulse) {
                return scanApplications(*queue, place.scope, place.path, pulse);
            };
            if (auto result = bounded<ScanResult>(place.scope.root, scan, lookAgain)) {
                results.append(std::move(*result));
            }
        }
        onMain(QCoreApplication::instance(), [search, results] {
            if (search) {
                search->take(results);
            }
        });
    });
}

void InotifyApplicationSearch::take(const QList<ScanResult> &results)
{
    m_scanning = false;
    if (!m_queue) {
        return;
    }
    bool changed = false;
    bool watchesUsedUp = false;
    QSet<int> touched;
    for (const ScanResult &result : results) {
        const auto scope = std::find_if(m_scopes.cbegin(), m_scopes.cend(),
            [&result](const SearchScope &candidate) { return candidate.root == result.scope.root; });
        const qsizetype root = std::distance(m_scopes.cbegin(), scope);
        changed |= isNews(removeItems(root, result.path, touched), result.items);
        insertItems(root, result);
        watchesUsedUp |= result.watchesUsedUp;
    }
    forgetUnheld(touched);
    if (changed) {
        listResults();
    }
    if (watchesUsedUp) {
        logOnce(u"Application search: no more folders can be watched, some changes will not be noticed"_s);
    }
    if (m_notifier) {
        m_notifier->setEnabled(true);
    }
    settle(); // a volume may have come while this scan ran
    if (m_gathered) {
        if (changed) {
            Q_EMIT notification(Notification::DidUpdate);
        }
        return;
    }
    m_gathered = true;
    if (!m_results.isEmpty()) {
        Q_EMIT notification(Notification::GatheringProgress);
    }
    if (m_queue) {
        Q_EMIT notification(Notification::DidFinishGathering);
    }
}

InotifyApplicationSearch::Items InotifyApplicationSearch::removeItems(
    qsizetype root, const QString &path, QSet<int> &touched)
{
    Items removed;
    Items &items = m_items[root];
    const auto remove = [&](Items::iterator item) {
        for (const ItemWatch &watch : item->watches) {
            m_holders[watch.watch].removeIf(
                [&](const Holder &holder) { return holder.root == root && holder.path == item.key(); });
            touched.insert(watch.watch);
        }
        removed.insert(item.key(), *item);
        return items.erase(item);
    };
    if (const auto item = items.find(path); item != items.end()) {
        remove(item);
    }
    const QString prefix = prefixOf(path);
    auto item = items.lowerBound(prefix);
    while (item != items.end() && item.key().startsWith(prefix)) {
        item = remove(item);
    }
    return removed;
}

void InotifyApplicationSearch::insertItems(qsizetype root, const ScanResult &result)
{
    for (auto item = result.items.cbegin(); item != result.items.cend(); ++item) {
        for (const ItemWatch &watch : item->watches) {
            m_holders[watch.watch].append(
                {.root = root, .path = item.key(), .folder = watch.folder, .names = watch.names});
        }
        m_items[root].insert(item.key(), item.value());
    }
}

void InotifyApplicationSearch::forgetUnheld(const QSet<int> &watches)
{
    for (const int watch : watches) {
        const auto holders = m_holders.constFind(watch);
        if (holders != m_holders.constEnd() && holders->isEmpty()) {
            m_holders.erase(holders);
            m_queue->forget(watch);
        }
    }
}

void InotifyApplicationSearch::listResults()
{
    m_results.clear();
    for (const Items &items : std::as_const(m_items)) {
        for (auto item = items.cbegin(); item != items.cend(); ++item) {
            if (item->bundle) {
                m_results.append(item.key());
            }
        }
    }
    m_results.sort();
    m_results.removeDuplicates();
}

void InotifyApplicationSearch::logOnce(const QString &line)
{
    if (!std::exchange(m_complained, true)) {
        logLine(line);
    }
}

} // namespace brevok
