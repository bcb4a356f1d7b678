// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/RootFile.h"

#include "foundation/Texts.h"
#include "platform/linux/files/FileErrors.h"
#include "platform/linux/files/GuardedPath.h"
#include "platform/linux/files/SafePath.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok::rootfile {

namespace {

constexpr mode_t fileMode = 0644;
constexpr mode_t programMode = 0755;

FileDescriptor openAround(const safepath::SplitPath &item, guardedpath::Missing missing)
{
    return guardedpath::openFolder(item.folder, missing, guardedpath::Folders::Roots);
}

bool fail(ErrorSlot error, const QString &operation, const QString &path)
{
    return failWith(error, operation.arg(path), path, errno);
}

/// Makes the file under another name, lets @p fill write it, and gives it its own name when it is on the
/// disk.
template <typename Fill> bool place(const QString &path, mode_t mode, const Fill &fill)
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    const FileDescriptor folder = openAround(item, guardedpath::Missing::Created);
    if (!folder || item.name.isEmpty()) {
        return false;
    }
    const QByteArray unfinished = "." + item.name + ".new";
    ::unlinkat(folder.get(), unfinished.constData(), 0);
    FileDescriptor file =
        safepath::openBeneath(folder.get(), unfinished, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (file && fill(file.get()) && ::fchmod(file.get(), mode) == 0 && ::fsync(file.get()) == 0
        && file.close()
        && ::renameat(folder.get(), unfinished.constData(), folder.get(), item.name.constData()) == 0) {
        return ::fsync(folder.get()) == 0;
    }
    const int code = errno;
    ::unlinkat(folder.get(), unfinished.constData(), 0);
    errno = code;
    return false;
}

bool copyThisProgram(int to)
{
    const FileDescriptor from(::open("/proc/self/exe", O_RDONLY | O_CLOEXEC));
    struct stat facts { };
    return from && ::fstat(from.get(), &facts) == 0 && safepath::copyAll(from.get(), to, facts.st_size);
}

} // namespace

bool write(const QString &path, const QByteArray &bytes, ErrorSlot error)
{
    return place(path, fileMode, [&](int file) {
        return safepath::writeAll(file, bytes.constData(), static_cast<size_t>(bytes.size()));
    }) || fail(error, Texts::tr("Could not write \"%1\""), path);
}

bool writeThisProgram(const QString &path, ErrorSlot error)
{
    return place(path, programMode, &copyThisProgram)
        || fail(error, Texts::tr("Could not write \"%1\""), path);
}

bool remove(const QString &path, ErrorSlot error)
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    const FileDescriptor folder = openAround(item, guardedpath::Missing::Refused);
    return (folder && ::unlinkat(folder.get(), item.name.constData(), 0) == 0) || errno == ENOENT
        || fail(error, Texts::tr("Could not remove \"%1\""), path);
}

bool makePrivateFolder(const QString &path, ErrorSlot error)
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    const FileDescriptor around = openAround(item, guardedpath::Missing::Created);
    struct stat facts { };
    if (!around || item.name.isEmpty()
        || (::mkdirat(around.get(), item.name.constData(), S_IRWXU) != 0 && errno != EEXIST)
        || ::fstatat(around.get(), item.name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        return fail(error, Texts::tr("Could not create the folder \"%1\""), path);
    }
    errno = EPERM;
    return (S_ISDIR(facts.st_mode) && facts.st_uid == ::geteuid() && (facts.st_mode & 022) == 0)
        || fail(error, Texts::tr("Could not create the folder \"%1\""), path);
}

bool isRootsPlace(const QString &path)
{
    return static_cast<bool>(
        openAround(safepath::split(QFile::encodeName(path)), guardedpath::Missing::Refused));
}

void terminate(qint64 id)
{
    if (id > 1) {
        ::kill(static_cast<pid_t>(id), SIGTERM);
    }
}

} // namespace brevok::rootfile
