// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SafePath.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brevok::safepath {

namespace {

/// The same promise on a kernel without openat2: one component at a time, none of them a link.
FileDescriptor openStepwise(int folder, const QByteArray &path, int flags, mode_t mode)
{
    QByteArrayList components = path.split('/');
    components.removeAll(QByteArray());
    components.removeAll(QByteArrayLiteral("."));
    if (components.isEmpty() || path.startsWith('/') || components.contains(QByteArrayLiteral(".."))) {
        errno = EXDEV;
        return {};
    }
    const QByteArray last = components.takeLast();
    FileDescriptor current;
    for (const QByteArray &component : std::as_const(components)) {
        current = FileDescriptor(::openat(current ? current.get() : folder, component.constData(),
            O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!current) {
            return {};
        }
    }
    return FileDescriptor(::openat(current ? current.get() : folder, last.constData(), flags, mode));
}

bool send(int from, int to, off_t *at, off_t end)
{
    while (*at < end) {
        constexpr off_t most = off_t(16) * 1024 * 1024;
        const ssize_t sent = ::sendfile(to, from, at, static_cast<size_t>(qMin(end - *at, most)));
        if (sent == 0) {
            errno = EIO;
        }
        if (sent == 0 || (sent < 0 && errno != EINTR)) {
            return false;
        }
    }
    return true;
}

} // namespace

SplitPath split(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/')) {
        path.chop(1);
    }
    const qsizetype slash = path.lastIndexOf('/');
    SplitPath result{slash < 0 ? QByteArrayLiteral(".")
            : slash == 0       ? QByteArrayLiteral("/")
                               : path.left(slash),
        path.mid(slash + 1)};
    if (result.name == "." || result.name == "..") {
        result.name.clear();
    }
    return result;
}

FileDescriptor openFolder(const QByteArray &path)
{
    return FileDescriptor(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

FileDescriptor openBeneath(int folder, const QByteArray &path, int flags, mode_t mode)
{
    open_how how{};
    how.flags = static_cast<__u64>(flags | O_CLOEXEC | O_NOFOLLOW);
    how.mode = (flags & O_CREAT) != 0 ? mode : 0;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
    long descriptor = -1;
    do {
        descriptor = ::syscall(SYS_openat2, folder, path.constData(), &how, sizeof how);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0 && errno == ENOSYS) {
        return openStepwise(folder, path, flags | O_CLOEXEC | O_NOFOLLOW, mode);
    }
    return FileDescriptor(static_cast<int>(descriptor));
}

std::optional<QByteArrayList> names(int folder, qsizetype most)
{
    // A descriptor of its own: reading moves the folder's position.
    FileDescriptor own(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto closeStream = [](DIR *stream) {
        ::closedir(stream);
    };
    const std::unique_ptr<DIR, decltype(closeStream)> stream(
        own ? ::fdopendir(own.get()) : nullptr, closeStream);
    if (!stream) {
        return std::nullopt;
    }
    (void)own.release(); // closed with the stream
    QByteArrayList result;
    // Nothing else tells the end from a failure.
    const int before = std::exchange(errno, 0);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): safe on a stream that nobody else reads
    while (const dirent *entry = result.size() < most ? ::readdir(stream.get()) : nullptr) {
        const QByteArray name(static_cast<const char *>(entry->d_name));
        if (name != "." && name != "..") {
            result.append(name);
        }
    }
    if (errno != 0) {
        return std::nullopt;
    }
    errno = before;
    std::sort(result.begin(), result.end());
    return result;
}

bool exists(int folder, const QByteArray &name)
{
    struct stat facts { };
    return ::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
}

bool renameExclusively(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to)
{
    if (::renameat2(fromFolder, from.constData(), toFolder, to.constData(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // A file system that cannot do both in one step: look first.
    if (exists(toFolder, to)) {
        errno = EEXIST;
        return false;
    }
    return ::renameat(fromFolder, from.constData(), toFolder, to.constData()) == 0;
}

bool exchange(int oneFolder, const QByteArray &one, int otherFolder, const QByteArray &other)
{
    return ::renameat2(oneFolder, one.constData(), otherFolder, other.constData(), RENAME_EXCHANGE) == 0;
}

bool sync(int folder)
{
    return ::syncfs(folder) == 0;
}

std::optional<QByteArray> readBytes(int file, off_t offset, qint64 size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    qsizetype length = 0;
    while (length < size) {
        const ssize_t count =
            ::pread(file, bytes.data() + length, static_cast<size_t>(size - length), offset + length);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            return std::nullopt;
        }
        length += std::max<ssize_t>(count, 0);
    }
    bytes.truncate(length);
    return bytes;
}

bool writeAll(int file, const char *bytes, size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(file, bytes, size);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            bytes += written;
            size -= static_cast<size_t>(written);
        }
    }
    return true;
}

bool copyAll(int from, int to, qint64 size)
{
    off_t at = 0;
    while (at < size) {
        // Where nothing was ever written, nothing is written either.
        const off_t data = ::lseek(from, at, SEEK_DATA);
        if (data < 0 && errno == ENXIO) {
            break;
        }
        const off_t start = qMin<off_t>(qMax(data, at), size);
        const off_t hole = ::lseek(from, start, SEEK_HOLE);
        if (::lseek(to, start - at, SEEK_CUR) < 0) {
            return false;
        }
        at = start;
        if (!send(from, to, &at, hole > start ? qMin<off_t>(hole, size) : size)) {
            return false;
        }
    }
    // A hole at the end counts as bytes, unless it is there because the source has become shorter.
    struct stat facts { };
    if (::fstat(from, &facts) != 0 || facts.st_size < size) {
        errno = EIO;
        return false;
    }
    const off_t end = ::lseek(to, size - at, SEEK_CUR);
    return end >= 0 && ::ftruncate(to, end) == 0;
}

} // namespace brevok::safepath
