// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/GuardedPath.h"

#include "platform/linux/files/SafePath.h"
#include "platform/linux/privileges/BorrowedRights.h"

#include <QByteArrayList>

#include <array>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace brevok::guardedpath {

namespace {

constexpr int maximumLinks = 16;
constexpr mode_t folderMode = 0755;
constexpr mode_t othersMayWrite = 022;
constexpr int lookUp = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

FileDescriptor refuse(int code)
{
    errno = code;
    return {};
}

QByteArrayList componentsOf(const QByteArray &path)
{
    QByteArrayList components = path.split('/');
    components.removeAll(QByteArray());
    components.removeAll(QByteArrayLiteral("."));
    return components;
}

/// The text of a link that only root can have put into @p folder; empty with errno otherwise.
QByteArray trustedLink(int folder, const QByteArray &name)
{
    struct stat around { };
    struct stat facts { };
    const FileDescriptor link(::openat(folder, name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!link || ::fstat(link.get(), &facts) != 0 || ::fstat(folder, &around) != 0) {
        return {};
    }
    if (!S_ISLNK(facts.st_mode)) {
        errno = ENOTDIR;
        return {};
    }
    if (facts.st_uid != 0 || around.st_uid != 0 || (around.st_mode & othersMayWrite) != 0) {
        errno = ELOOP;
        return {};
    }
    std::array<char, PATH_MAX> text{};
    const ssize_t size = ::readlinkat(link.get(), "", text.data(), text.size());
    return size > 0 ? QByteArray(text.data(), size) : QByteArray();
}

/// One folder after the other; the links among them become what they stand for.
class Walk final {
public:
    Walk(Missing missing, Folders folders, const UserRights *user = nullptr)
        : m_missing(missing)
        , m_folders(folders)
        , m_user(user)
    {
    }

    [[nodiscard]] FileDescriptor run(const QByteArray &path)
    {
        m_left = componentsOf(path);
        m_current = FileDescriptor(::open("/", lookUp));
        while (m_current && !m_left.isEmpty()) {
            if (!step(m_left.takeFirst())) {
                return {};
            }
        }
        return std::move(m_current);
    }

private:
    [[nodiscard]] bool step(const QByteArray &name)
    {
        FileDescriptor next(::openat(m_current.get(), name.constData(), lookUp));
        if (!next && errno == ENOENT && m_missing == Missing::Created) {
            next = make(name);
        }
        if (next && !mayLead(next.get())) {
            return false;
        }
        if (next) {
            m_current = std::move(next);
            return true;
        }
        return (errno == ENOTDIR || errno == ELOOP) && follow(name);
    }

    [[nodiscard]] bool mayLead(int folder) const
    {
        struct stat facts { };
        if (m_user != nullptr) {
            return ::fstat(folder, &facts) == 0 && (facts.st_uid == 0 || letsThrough(folder));
        }
        if (m_folders == Folders::Anybodys) {
            return true;
        }
        const bool trusted = ::fstat(folder, &facts) == 0
            && (facts.st_uid == 0 || facts.st_uid == ::geteuid())
            && ((facts.st_mode & S_IWOTH) == 0 || (facts.st_mode & S_ISVTX) != 0);
        errno = trusted ? errno : EPERM;
        return trusted;
    }

    [[nodiscard]] bool letsThrough(int folder) const
    {
        struct stat facts { };
        const BorrowedRights rights(*m_user);
        return rights && ::fstatat(folder, ".", &facts, AT_SYMLINK_NOFOLLOW) == 0;
    }

    [[nodiscard]] FileDescriptor make(const QByteArray &name)
    {
        if (::mkdirat(m_current.get(), name.constData(), folderMode) != 0 && errno != EEXIST) {
            return {};
        }
        return FileDescriptor(::openat(m_current.get(), name.constData(), lookUp));
    }

    [[nodiscard]] bool follow(const QByteArray &name)
    {
        const QByteArray text = trustedLink(m_current.get(), name);
        if (text.isEmpty()) {
            return false;
        }
        if (++m_links > maximumLinks) {
            errno = ELOOP;
            return false;
        }
        if (text.startsWith('/')) {
            m_current = FileDescriptor(::open("/", lookUp));
        }
        m_left = componentsOf(text) + m_left;
        return true;
    }

    Missing m_missing;
    Folders m_folders;
    const UserRights *m_user;
    FileDescriptor m_current;
    QByteArrayList m_left;
    int m_links = 0;
};

} // namespace

FileDescriptor openFolder(const QByteArray &path, Missing missing, Folders folders)
{
    if (!path.startsWith('/')) {
        return refuse(EINVAL);
    }
    const FileDescriptor found = Walk(missing, folders).run(path);
    // What was opened for look-ups only is opened for real by its own name in itself.
    return found ? FileDescriptor(::openat(found.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC))
                 : FileDescriptor();
}

bool isVisible(const QByteArray &path, const UserRights &user)
{
    const safepath::SplitPath item = safepath::split(path);
    const FileDescriptor folder = Walk(Missing::Refused, Folders::Anybodys, &user).run(item.folder);
    return folder && !item.name.isEmpty() && safepath::exists(folder.get(), item.name);
}

FileDescriptor openOwnFile(const QByteArray &path, uid_t owner)
{
    const safepath::SplitPath item = safepath::split(path);
    const FileDescriptor folder = openFolder(item.folder);
    if (!folder || item.name.isEmpty()) {
        return folder ? refuse(EINVAL) : FileDescriptor();
    }
    // Looked at before it is opened: opening alone can do something to a device.
    const FileDescriptor entry(
        ::openat(folder.get(), item.name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat facts { };
    if (!entry || ::fstat(entry.get(), &facts) != 0) {
        return {};
    }
    if (!S_ISREG(facts.st_mode) || facts.st_uid != owner) {
        return refuse(EACCES);
    }
    const QByteArray same = "/proc/self/fd/" + QByteArray::number(entry.get());
    return FileDescriptor(::open(same.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

FileDescriptor privateCopy(int file, qint64 size, const QByteArray &folder)
{
    FileDescriptor copy(folder.isEmpty()
            ? ::memfd_create("source", MFD_CLOEXEC)
            : ::open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!copy || !safepath::copyAll(file, copy.get(), size) || ::lseek(copy.get(), 0, SEEK_SET) != 0) {
        return {};
    }
    return copy;
}

} // namespace brevok::guardedpath
