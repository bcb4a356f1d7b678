// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/FileTree.h"

#include "platform/linux/SafePath.h"

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

bool failAt(QByteArray *where, const QByteArray &name)
{
    *where = name;
    return false;
}

bool failWith(int code)
{
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
        return failWith(EINVAL);
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
        return failAt(where, source) || failWith(EINVAL);
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
        return failAt(where, source) || failWith(EINVAL);
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

} // namespace

bool removeContents(int folder, QByteArray *where)
{
    const auto entries = safepath::names(folder);
    if (!entries) {
        return failAt(where, QByteArray());
    }
    return std::ranges::all_of(
        *entries, [folder, where](const QByteArray &entry) { return remove(folder, entry, where); });
}

bool remove(int folder, const QByteArray &name, QByteArray *where)
{
    if (::unlinkat(folder, name.constData(), 0) == 0) {
        return true;
    }
    struct stat facts { };
    const int code = errno;
    if (!statEntry(folder, name, &facts) || !S_ISDIR(facts.st_mode)) {
        return failAt(where, name) || failWith(code);
    }
    const FileDescriptor opened = safepath::openBeneath(folder, name, O_RDONLY | O_DIRECTORY);
    if (!opened) {
        return failAt(where, name);
    }
    if (!removeContents(opened.get(), where)) {
        return failAt(where, where->isEmpty() ? name : below(name, *where));
    }
    return ::unlinkat(folder, name.constData(), AT_REMOVEDIR) == 0 || failAt(where, name);
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

void addAttributesToTree(int folder, const QByteArray &name, const Attributes &attributes,
    const std::function<void(const QByteArray &, Change, int)> &failed)
{
    const FileDescriptor entry = openEntry(folder, name);
    struct stat facts { };
    const Change change = entry ? changeOpened(entry.get(), attributes, &facts) : Change::Missing;
    if (change != Change::Done) {
        failed(name, change, errno);
    }
    if (change == Change::Missing || !S_ISDIR(facts.st_mode)) {
        return;
    }
    for (const QByteArray &inside : safepath::names(entry.get()).value_or(QByteArrayList())) {
        addAttributesToTree(
            entry.get(), inside, attributes, [&](const QByteArray &where, Change result, int code) {
                failed(below(name, where), result, code);
            });
    }
}

} // namespace brevok::filetree
