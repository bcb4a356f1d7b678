// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/StagingFolder.h"

#include "platform/linux/files/FileTree.h"
#include "platform/linux/files/SafePath.h"

#include <QRandomGenerator>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevok {

namespace {

constexpr auto prefix = ".tolvane-unpack-";
constexpr int attempts = 100;
constexpr qsizetype fewEntries = 30;
constexpr qsizetype mostNeighbours = 10'000; ///< that are looked through for what crashed runs left

bool stillNamed(int folder, const QByteArray &name, int opened)
{
    struct stat named { };
    struct stat held { };
    return ::fstatat(folder, name.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0
        && ::fstat(opened, &held) == 0 && named.st_dev == held.st_dev && named.st_ino == held.st_ino;
}

/// Whether nobody else has put anything into @p opened, or can. Its name says nothing: whoever owns the
/// folder around it may have given that to another one. Without root's rights there is nothing to gain by it,
/// and some file systems tell owners and modes of their own.
bool isPrivate(int opened)
{
    struct stat facts { };
    if (::geteuid() != 0) {
        return true;
    }
    const bool ours =
        ::fstat(opened, &facts) == 0 && facts.st_uid == 0 && (facts.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    const auto inside = ours ? safepath::names(opened) : std::nullopt;
    return inside && inside->isEmpty();
}

FileDescriptor openLocked(int folder, const QByteArray &name)
{
    FileDescriptor opened = safepath::openBeneath(folder, name, O_RDONLY | O_DIRECTORY);
    if (!opened || ::flock(opened.get(), LOCK_EX | LOCK_NB) != 0) {
        return {};
    }
    return opened;
}

/// Syncs every file and, after what is in it, every folder below @p folder, as long as there are no more than
/// @p left of them.
bool syncTree(int folder, qsizetype &left)
{
    const auto names = safepath::names(folder, left + 1);
    if (!names || (left -= names->size()) < 0) {
        return false;
    }
    for (const QByteArray &name : *names) {
        struct stat facts { };
        if (::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
            return false;
        }
        const bool isFolder = S_ISDIR(facts.st_mode);
        if (!isFolder && !S_ISREG(facts.st_mode)) {
            continue;
        }
        const FileDescriptor opened = safepath::openBeneath(folder, name, O_RDONLY | O_NONBLOCK);
        if (!opened || (isFolder && !syncTree(opened.get(), left)) || ::fsync(opened.get()) != 0) {
            return false;
        }
    }
    return true;
}

/// Every sync makes the disk empty its own memory, which takes its time whatever is in it. A few files are
/// synced one by one, so that nobody waits for what others have written; many with their whole file system.
bool contentsToDisk(int folder)
{
    qsizetype left = fewEntries;
    const bool synced = syncTree(folder, left) && ::fsync(folder) == 0;
    return left < 0 ? safepath::sync(folder) : synced;
}

QByteArray freshName()
{
    constexpr auto letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    QByteArray name(prefix);
    for (int i = 0; i < 6; ++i) {
        name += letters[QRandomGenerator::system()->bounded(62)];
    }
    return name;
}

} // namespace

// A folder that can be locked has lost its owner. Failures are left to the next time.
bool StagingFolder::removeStale(int folder)
{
    bool found = false;
    const QByteArrayList entries = safepath::names(folder, mostNeighbours).value_or(QByteArrayList());
    for (const QByteArray &name : entries) {
        if (!name.startsWith(prefix)) {
            continue;
        }
        const FileDescriptor stale = openLocked(folder, name);
        QByteArray where;
        if (stale && filetree::removeContents(stale.get(), &where)) {
            found = ::unlinkat(folder, name.constData(), AT_REMOVEDIR) == 0 || found;
        }
    }
    return found;
}

StagingFolder::StagingFolder(int folder)
    : m_folder(folder)
{
    removeStale(folder);
    for (int attempt = 0; attempt < attempts && !m_staging; ++attempt) {
        if (!make()) {
            return;
        }
    }
}

/// Makes and locks a folder. Between the two steps another process may take it for a stale one: then there is
/// no folder yet and another name is tried. @return false when there is no point in that
bool StagingFolder::make()
{
    m_name = freshName();
    if (::mkdirat(m_folder, m_name.constData(), S_IRWXU) != 0) {
        return errno == EEXIST;
    }
    FileDescriptor made = openLocked(m_folder, m_name);
    if (made && !isPrivate(made.get())) {
        errno = EPERM;
        return false;
    }
    if (made && stillNamed(m_folder, m_name, made.get())) {
        m_staging = std::move(made);
        return true;
    }
    return made || errno == ENOENT || errno == EWOULDBLOCK;
}

StagingFolder::~StagingFolder()
{
    // Why something failed is told after this is gone.
    const int code = errno;
    QByteArray where;
    if (m_staging && filetree::removeContents(m_staging.get(), &where)) {
        ::unlinkat(m_folder, m_name.constData(), AT_REMOVEDIR);
    }
    errno = code;
}

// A swap leaves what stood there in the staging folder, and swapping once more takes it back.
bool StagingFolder::move(const QByteArray &name, Existing existing)
{
    if (safepath::renameExclusively(m_staging.get(), name, m_folder, name)) {
        return true;
    }
    return errno == EEXIST && existing == Existing::Replaced
        && safepath::exchange(m_staging.get(), name, m_folder, name);
}

bool StagingFolder::publish(const QByteArrayList &names, Existing existing, QByteArray *where, Safe safe)
{
    // Without that a power cut could leave empty files under final names.
    if (safe == Safe::Before && !contentsToDisk(m_staging.get())) {
        return false;
    }
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (move(names[i], existing)) {
            continue;
        }
        const int code = errno;
        *where = names[i];
        for (qsizetype back = i - 1; back >= 0; --back) {
            // What cannot be taken back is whole at least.
            if (!safepath::exchange(m_staging.get(), names[back], m_folder, names[back])) {
                (void)safepath::renameExclusively(m_folder, names[back], m_staging.get(), names[back]);
            }
        }
        errno = code;
        return false;
    }
    // They are in place; that the folder remembers it after a power cut is a bonus.
    if (safe == Safe::Before) {
        ::fsync(m_folder);
    }
    return true;
}

} // namespace brevok
