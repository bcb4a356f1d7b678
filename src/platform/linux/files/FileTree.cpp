// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/FileTree.h"

#include "foundation/Log.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/SafePath.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok::filetree {

namespace {

constexpr mode_t permissionBits = 0777;

QByteArray below(const QByteArray &parent, const QByteArray &child)
{
    return parent + '/' + child;
}

bool failAt(QByteArray *where, const QByteArray &name, int code = errno)
{
    *where = name;
    errno = code;
    return false;
}

bool statEntry(int folder, const QByteArray &name, struct stat *facts)
{
    return ::fstatat(folder, name.constData(), facts, AT_SYMLINK_NOFOLLOW) == 0;
}

bool keepTimes(int file, const struct stat &facts)
{
    const std::array<timespec, 2> times{facts.st_atim, facts.st_mtim};
    return ::futimens(file, times.data()) == 0;
}

bool copyFile(int sourceFolder, const QByteArray &source, int targetFolder, const QByteArray &target)
{
    // Should a pipe have taken the file's place, opening it must not wait for its other end.
    const FileDescriptor from = safepath::openBeneath(sourceFolder, source, O_RDONLY | O_NONBLOCK);
    struct stat facts { };
    if (!from || ::fstat(from.get(), &facts) != 0) {
        return false;
    }
    if (!S_ISREG(facts.st_mode)) {
        errno = EINVAL;
        return false;
    }
    FileDescriptor to =
        safepath::openBeneath(targetFolder, target, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    return to && safepath::copyAll(from.get(), to.get(), facts.st_size)
        && ::fchmod(to.get(), facts.st_mode & permissionBits) == 0 && keepTimes(to.get(), facts)
        && to.close();
}

bool copyLink(int sourceFolder, const QByteArray &source, int targetFolder, const QByteArray &target)
{
    std::array<char, PATH_MAX + 1> text{};
    const ssize_t size = ::readlinkat(sourceFolder, source.constData(), text.data(), text.size() - 1);
    return size >= 0 && ::symlinkat(text.data(), targetFolder, target.constData()) == 0;
}

/// @p forbidden is the folder that is copied into: it is no part of its own copy.
bool copyEntry(int sourceFolder, const QByteArray &source, int targetFolder, const QByteArray &target,
    const struct stat &forbidden, QByteArray *where);

bool copyFolder(int sourceFolder, const QByteArray &source, int targetFolder, const QByteArray &target,
    const struct stat &forbidden, QByteArray *where)
{
    const FileDescriptor from = safepath::openBeneath(sourceFolder, source, O_RDONLY | O_DIRECTORY);
    struct stat facts { };
    if (!from || ::fstat(from.get(), &facts) != 0
        || ::mkdirat(targetFolder, target.constData(), S_IRWXU) != 0) {
        return failAt(where, source);
    }
    if (facts.st_dev == forbidden.st_dev && facts.st_ino == forbidden.st_ino) {
        return failAt(where, source, EINVAL);
    }
    const FileDescriptor to = safepath::openBeneath(targetFolder, target, O_RDONLY | O_DIRECTORY);
    const auto names = safepath::names(from.get());
    if (!to || !names) {
        return failAt(where, source);
    }
    for (const QByteArray &name : *names) {
        if (!copyEntry(from.get(), name, to.get(), name, forbidden, where)) {
            return failAt(where, below(source, *where));
        }
    }
    if (::fchmod(to.get(), facts.st_mode & permissionBits) != 0 || !keepTimes(to.get(), facts)) {
        return failAt(where, source);
    }
    return true;
}

bool copyEntry(int sourceFolder, const QByteArray &source, int targetFolder, const QByteArray &target,
    const struct stat &forbidden, QByteArray *where)
{
    struct stat facts { };
    if (!statEntry(sourceFolder, source, &facts)) {
        return failAt(where, source);
    }
    switch (facts.st_mode & S_IFMT) {
    case S_IFDIR:
        return copyFolder(sourceFolder, source, targetFolder, target, forbidden, where);
    case S_IFREG:
        return copyFile(sourceFolder, source, targetFolder, target) || failAt(where, source);
    case S_IFLNK:
        return copyLink(sourceFolder, source, targetFolder, target) || failAt(where, source);
    default:
        return failAt(where, source, EINVAL);
    }
}

/// Works on one entry that is held open, so that what was looked at is what is changed.
Change changeOpened(int entry, const Attributes &attributes, struct stat *facts)
{
    if (::fstat(entry, facts) != 0) {
        return Change::Missing;
    }
    const bool isLink = S_ISLNK(facts->st_mode);
    const bool isFile = S_ISREG(facts->st_mode);
    if (!isLink && !isFile && !S_ISDIR(facts->st_mode)) {
        errno = EINVAL;
        return Change::Failed;
    }
    if (facts->st_uid != attributes.user) {
        const mode_t reading = S_ISDIR(facts->st_mode) ? S_IROTH | S_IXOTH : S_IROTH;
        if (attributes.onlyReadable && (facts->st_mode & reading) != reading) {
            errno = EACCES;
            return Change::Failed;
        }
        // A second name of the file may stand in anybody's folder: giving it away would give that one away.
        if (isFile && facts->st_nlink > 1) {
            errno = EMLINK;
            return Change::Failed;
        }
        if (::fchownat(entry, "", attributes.user, static_cast<gid_t>(-1), AT_EMPTY_PATH) != 0) {
            return Change::Failed;
        }
    }
    const mode_t bits = facts->st_mode & 07777;
    if (isLink || (bits | attributes.permissions) == bits) {
        return Change::Done;
    }
    const QByteArray opened = "/proc/self/fd/" + QByteArray::number(entry);
    return ::chmod(opened.constData(), bits | attributes.permissions) == 0 ? Change::Done : Change::Failed;
}

FileDescriptor openEntry(int folder, const QByteArray &name)
{
    return FileDescriptor(::openat(folder, name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

/// Bounded, since whoever owns a tree decides how large and how broken it is.
class AttributeWalk final {
public:
    explicit AttributeWalk(const Attributes &attributes)
        : m_attributes(attributes)
    {
    }

    void visit(int folder, const QByteArray &name, int depth)
    {
        const qsizetype around = m_path.size();
        m_path += around == 0 ? name : '/' + name;
        const FileDescriptor entry = openEntry(folder, name);
        struct stat facts { };
        const Change change = entry ? changeOpened(entry.get(), m_attributes, &facts) : Change::Missing;
        if (change != Change::Done) {
            note(change);
        }
        if (change != Change::Missing && S_ISDIR(facts.st_mode)) {
            visitContents(entry.get(), depth + 1);
        }
        m_path.truncate(around);
    }

    [[nodiscard]] QList<Unchanged> takeUnchanged()
    {
        if (m_more > 0) {
            logLine(QStringLiteral("Attributes of %1 more items did not change").arg(m_more));
        }
        return std::move(m_unchanged);
    }

private:
    void visitContents(int folder, int depth)
    {
        const auto inside = safepath::names(folder, m_left + 1);
        if (!inside || (depth > maximumDepth && !inside->isEmpty()) || inside->size() > m_left) {
            note(Change::Failed);
            return;
        }
        m_left -= inside->size();
        for (const QByteArray &name : *inside) {
            visit(folder, name, depth);
        }
    }

    /// Names some, and counts the others.
    void note(Change change)
    {
        m_room -= m_path.size();
        if (m_unchanged.size() < mostNamed && m_room >= 0) {
            m_unchanged.append({m_path, change});
        } else {
            ++m_more;
        }
    }

    static constexpr int maximumDepth = 64; // that of archives
    static constexpr qsizetype mostEntries = 50'000;
    static constexpr qsizetype mostNamed = 20;
    static constexpr qsizetype roomForNames = qsizetype(16) * 1024;

    Attributes m_attributes;
    QByteArray m_path;
    QList<Unchanged> m_unchanged;
    qsizetype m_left = mostEntries;
    qsizetype m_room = roomForNames;
    qsizetype m_more = 0;
};

/// Removes an entry, and first what @p empty finds in it when it is a folder.
template <typename Empty>
bool removeEntry(int folder, const QByteArray &name, QByteArray *where, const Empty &empty)
{
    if (::unlinkat(folder, name.constData(), 0) == 0) {
        return true;
    }
    struct stat facts { };
    const int code = errno;
    if (!statEntry(folder, name, &facts) || !S_ISDIR(facts.st_mode)) {
        return failAt(where, name, code);
    }
    const FileDescriptor opened = safepath::openBeneath(folder, name, O_RDONLY | O_DIRECTORY);
    if (!opened) {
        return failAt(where, name);
    }
    if (!empty(opened.get())) {
        return failAt(where, where->isEmpty() ? name : below(name, *where));
    }
    return ::unlinkat(folder, name.constData(), AT_REMOVEDIR) == 0 || failAt(where, name);
}

/// Removes what is in a folder, a part of its names at a time. Every level on the way is held open, so
/// whatever lies deeper than some is moved up first. Else the owner of a tree could use up what the process
/// has.
class Removal final {
public:
    explicit Removal(int top)
        : m_top(top)
    {
    }

    [[nodiscard]] bool empty(int folder, int depth, QByteArray *where)
    {
        const auto inside = [&](int opened) {
            return depth < levels ? empty(opened, depth + 1, where) : raise(opened, where);
        };
        return clear(folder, where,
            [&](const QByteArray &entry) { return removeEntry(folder, entry, where, inside); });
    }

private:
    [[nodiscard]] bool raise(int folder, QByteArray *where)
    {
        return clear(folder, where, [&](const QByteArray &entry) {
            bool moved = false;
            do {
                const QByteArray fresh = ".tolvane-deep-" + QByteArray::number(++m_moved);
                moved = safepath::renameExclusively(folder, entry, m_top, fresh);
            } while (!moved && errno == EEXIST); // an earlier removal was cut short
            return moved || failAt(where, entry);
        });
    }

    /// Calls @p take, which takes its entry out of the folder, until there is none. Bounded, as somebody may
    /// go on putting more into it.
    template <typename Take> [[nodiscard]] static bool clear(int folder, QByteArray *where, const Take &take)
    {
        for (int part = 0; part < mostParts; ++part) {
            const auto entries = safepath::names(folder, namesAtOnce);
            if (!entries) {
                return failAt(where, QByteArray());
            }
            if (entries->isEmpty() || !std::ranges::all_of(*entries, take)) {
                return entries->isEmpty();
            }
        }
        return failAt(where, QByteArray(), ENOTEMPTY);
    }

    static constexpr int levels = 64;
    static constexpr int namesAtOnce = 1000;
    static constexpr int mostParts = 10'000;

    int m_top;
    int m_moved = 0;
};

} // namespace

bool removeContents(int folder, QByteArray *where)
{
    return Removal(folder).empty(folder, 0, where);
}

bool remove(int folder, const QByteArray &name, QByteArray *where)
{
    return removeEntry(folder, name, where, [where](int opened) { return removeContents(opened, where); });
}

bool copy(
    int sourceFolder, const QByteArray &source, int targetFolder, const QByteArray &target, QByteArray *where)
{
    struct stat forbidden { };
    if (::fstat(targetFolder, &forbidden) != 0) {
        return failAt(where, source);
    }
    return copyEntry(sourceFolder, source, targetFolder, target, forbidden, where);
}

Change addAttributes(int folder, const QByteArray &name, const Attributes &attributes)
{
    const FileDescriptor entry = openEntry(folder, name);
    struct stat facts { };
    return entry ? changeOpened(entry.get(), attributes, &facts) : Change::Missing;
}

QList<Unchanged> addAttributesToTree(int folder, const QByteArray &name, const Attributes &attributes)
{
    AttributeWalk walk(attributes);
    walk.visit(folder, name, 0);
    return walk.takeUnchanged();
}

} // namespace brevok::filetree
