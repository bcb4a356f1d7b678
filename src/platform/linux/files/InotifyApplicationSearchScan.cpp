// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/InotifyApplicationSearchScan.h"

#include "foundation/BoundedWork.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include <fnmatch.h>
#include <sys/inotify.h>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

namespace fs = std::filesystem;

constexpr quint32 selfEvents = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr quint32 entryEvents = selfEvents | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr quint32 folderEvents = entryEvents | IN_ATTRIB; // a folder may become readable
constexpr quint32 contentsEvents = entryEvents | IN_CLOSE_WRITE;
constexpr quint32 fileEvents = selfEvents | IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB;

constexpr auto pluginsName = "Plug-Ins"_L1;
constexpr auto bundleEnding = ".app"_L1;

QString parentPath(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash > 0 ? path.first(slash) : u"/"_s;
}

QString lastName(const QString &path)
{
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

bool isFolder(const QString &path)
{
    return QFileInfo(path).isDir();
}

class Scan final {
public:
    Scan(const InotifyQueue &queue, const SearchScope &scope, const QString &path, Pulse &pulse)
        : m_queue(queue)
        , m_pulse(pulse)
        , m_result{.scope = scope, .path = path}
    {
    }

    ScanResult run()
    {
        if (m_result.path == m_result.scope.root) {
            scanRoot();
        } else {
            scanEntry();
        }
        while (!m_folders.isEmpty() && !m_queue.isCancelled()) {
            scanFolder(m_folders.takeLast());
        }
        return std::move(m_result);
    }

private:
    /// @return false when nothing is there to be watched (any more)
    bool watch(SearchItem &item, const QString &path, quint32 events, bool folder, const QStringList &names)
    {
        const int watch = m_queue.watch(path, events);
        if (watch >= 0) {
            item.watches.append({.watch = watch, .folder = folder, .names = names});
        }
        m_result.watchesUsedUp |= watch == -ENOSPC;
        return watch != -ENOENT && watch != -ENOTDIR;
    }

    void scanRoot()
    {
        const QString &root = m_result.scope.root;
        // A folder on the way that vanishes between two looks makes the way worth another one.
        constexpr int attempts = 3;
        std::optional<bool> present;
        for (int attempt = 0; attempt < attempts && !present; ++attempt) {
            present = watchWayTo(root, m_result.items[root]);
        }
        if (present.value_or(false)) {
            m_folders.append(root);
        }
    }

    /// Watches the folders above @p root: for their own fate when the next one is there, for what appears in
    /// them when it is not, cannot be read, or is a link that may be turned elsewhere.
    /// @return whether @p root is a folder; nothing when the way changed meanwhile
    std::optional<bool> watchWayTo(const QString &root, SearchItem &item)
    {
        if (root == u"/"_s) {
            return true;
        }
        QString folder = u"/"_s;
        const QStringList names = root.split(u'/', Qt::SkipEmptyParts);
        for (const QString &name : names) {
            const QString next = childPath(folder, name);
            const QFileInfo info(next);
            const bool settled = info.isDir() && !info.isSymLink()
                && (next != root || (info.isReadable() && info.isExecutable()));
            if (!watch(item, folder, settled ? selfEvents : folderEvents, false, {name})) {
                return std::nullopt;
            }
            if (!isFolder(next)) {
                return settled ? std::nullopt : std::make_optional(false);
            }
            folder = next;
        }
        return true;
    }

    void scanEntry()
    {
        const QString &path = m_result.path;
        const QFileInfo info(path);
        if (!info.isDir()) {
            return;
        }
        if (isBundleName(lastName(path))) {
            scanBundle(path);
        } else if (!info.isSymLink()) {
            m_folders.append(path);
        }
    }

    void scanFolder(const QString &path)
    {
        SearchItem &item = m_result.items[path];
        if (!watch(item, path, folderEvents, true, {})) {
            return;
        }
        const bool deepest = m_result.scope.depth(path) >= deepestSearchedFolder;
        std::error_code error;
        const fs::path folder(QFile::encodeName(path).toStdString());
        for (fs::directory_iterator entry(folder, error), end; entry != end && !m_queue.isCancelled();
             entry.increment(error)) {
            m_pulse.beat();
            std::error_code unreadable;
            const bool link = entry->is_symlink(unreadable);
            if (!link && !entry->is_directory(unreadable)) {
                continue;
            }
            const QString name = QFile::decodeName(entry->path().filename().c_str());
            if (isBundleName(name)) {
                if (m_result.scope.matches(name) && entry->is_directory(unreadable)) {
                    scanBundle(childPath(path, name));
                }
            } else if (!link && !deepest && isSearchedFolderName(name)) {
                m_folders.append(childPath(path, name));
            }
        }
    }

    void scanBundle(const QString &path)
    {
        SearchItem &item = m_result.items[path];
        const QString contents = path + "/Contents"_L1;
        const QString information = contents + "/Info.plist"_L1;
        watch(item, path, entryEvents, false, {u"Contents"_s});
        watch(item, contents, contentsEvents, false, {u"Info.plist"_s});
        watch(item, information, fileEvents, false, {});

        QString realPath = QFileInfo(path).canonicalFilePath();
        if (realPath.isEmpty()) {
            return; // it vanished just now, which its folder's watch tells
        }
        const QString folder = parentPath(realPath);
        watch(item, folder, entryEvents, false, {pluginsName, lastName(realPath)});
        BundleState state{.realPath = realPath,
            .information = fileState(information).value_or(FileState()),
            .plugins = fileState(childPath(folder, pluginsName)).value_or(FileState())};
        // What happens inside the folder of plug-ins is nobody's business here.
        state.plugins.size = state.plugins.modified = state.plugins.changed = 0;
        item.bundle = state;
    }

    const InotifyQueue &m_queue;
    Pulse &m_pulse;
    ScanResult m_result;
    QStringList m_folders; ///< still to be read
};

} // namespace

InotifyQueue::InotifyQueue()
    : m_descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
}

int InotifyQueue::watch(const QString &path, quint32 events) const
{
    const int watch =
        ::inotify_add_watch(m_descriptor.get(), QFile::encodeName(path).constData(), events | IN_MASK_ADD);
    return watch >= 0 ? watch : -errno;
}

void InotifyQueue::forget(int watch) const
{
    ::inotify_rm_watch(m_descriptor.get(), watch);
}

bool SearchScope::matches(const QString &fileName) const
{
    const QByteArray name = QFile::encodeName(fileName.chopped(bundleEnding.size()));
    return std::any_of(patterns.cbegin(), patterns.cend(), [&name](const QString &pattern) {
        return ::fnmatch(QFile::encodeName(pattern).constData(), name.constData(), 0) == 0;
    });
}

qsizetype SearchScope::depth(const QString &path) const
{
    return path == root ? 0 : path.count(u'/') - (root == u"/"_s ? 0 : root.count(u'/'));
}

bool isBundleName(const QString &name)
{
    return name.endsWith(bundleEnding) && name.size() > bundleEnding.size() && !name.startsWith(u'.');
}

bool isSearchedFolderName(const QString &name)
{
    return !name.startsWith(u'.') && name != pluginsName;
}

QString childPath(const QString &folder, const QString &name)
{
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

ScanResult scanApplications(
    const InotifyQueue &queue, const SearchScope &scope, const QString &path, Pulse &pulse)
{
    return Scan(queue, scope, path, pulse).run();
}

} // namespace brevok
