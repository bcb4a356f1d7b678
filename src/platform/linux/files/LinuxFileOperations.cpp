// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/LinuxFileOperations.h"

#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "platform/linux/files/FileErrors.h"
#include "platform/linux/files/FileTree.h"
#include "platform/linux/files/NewFolder.h"
#include "platform/linux/files/ReplacedItem.h"
#include "platform/linux/files/SafePath.h"
#include "platform/linux/files/SourceFile.h"
#include "platform/linux/files/StagingFolder.h"
#include "platform/linux/files/ZipExtractor.h"

#include <QFile>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok {

namespace {

bool allows(const QString &path, int mode)
{
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), mode, AT_EACCESS) == 0;
}

/// The folder of an entry, open for look-ups only: that asks for no right to read it.
FileDescriptor openForLookUp(const QByteArray &folder)
{
    return FileDescriptor(::open(folder.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

/// The path of something that failed inside an item whose own name @p where starts with.
QString pathOf(const safepath::SplitPath &item, const QByteArray &where)
{
    return QFile::decodeName(item.folder == "/" ? '/' + where : item.folder + '/' + where);
}

/// An entry, by its open folder.
struct Place {
    FileDescriptor folder;
    QByteArray name;

    explicit Place(const QString &path, FileDescriptor (*open)(const QByteArray &) = openForLookUp)
    {
        const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
        folder = open(item.folder);
        name = item.name;
        errno = folder && name.isEmpty() ? EINVAL : errno;
    }
    [[nodiscard]] explicit operator bool() const { return folder && !name.isEmpty(); }
};

/// Copies into a hidden folder beside the target first. @return false with errno and the path that failed
bool copyThroughStaging(
    const safepath::SplitPath &source, const safepath::SplitPath &target, QString *failedPath)
{
    *failedPath = pathOf(source, source.name);
    const FileDescriptor sourceFolder = openForLookUp(source.folder);
    if (source.name.isEmpty() || target.name.isEmpty() || !sourceFolder) {
        errno = sourceFolder ? EINVAL : errno;
        return false;
    }
    *failedPath = pathOf(target, target.name);
    const FileDescriptor folder = safepath::openFolder(target.folder);
    if (!folder) {
        return false;
    }
    if (safepath::exists(folder.get(), target.name)) {
        errno = EEXIST;
        return false;
    }
    StagingFolder staging(folder.get());
    if (!staging) {
        return false;
    }
    QByteArray where;
    if (!filetree::copy(sourceFolder.get(), source.name, staging.descriptor(), target.name, &where)) {
        *failedPath = pathOf(source, where);
        return false;
    }
    return staging.publish({target.name}, StagingFolder::Existing::Refused, &where);
}

} // namespace

bool LinuxFileOperations::fileExists(const QString &path, bool *isDirectory) const
{
    struct stat facts { };
    const bool exists = ::stat(QFile::encodeName(path).constData(), &facts) == 0;
    if (isDirectory != nullptr) {
        *isDirectory = exists && S_ISDIR(facts.st_mode);
    }
    return exists;
}

bool LinuxFileOperations::isReadable(const QString &path) const
{
    return allows(path, R_OK);
}

bool LinuxFileOperations::isWritable(const QString &path) const
{
    return allows(path, W_OK);
}

bool LinuxFileOperations::isExecutable(const QString &path) const
{
    return allows(path, X_OK);
}

bool LinuxFileOperations::isDeletable(const QString &path) const
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    const FileDescriptor folder = openForLookUp(item.folder);
    struct stat folderFacts { };
    struct stat facts { };
    if (item.name.isEmpty() || !folder || ::fstat(folder.get(), &folderFacts) != 0
        || ::fstatat(folder.get(), item.name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0
        || ::faccessat(folder.get(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
        return false;
    }
    const uid_t user = ::geteuid();
    return (folderFacts.st_mode & S_ISVTX) == 0 || user == 0 || user == facts.st_uid
        || user == folderFacts.st_uid;
}

bool LinuxFileOperations::prepareFolder(const QString &path, const QString &within, ErrorSlot error)
{
    const FileDescriptor above = openForLookUp(QFile::encodeName(within));
    const FileDescriptor folder = above
        ? newfolder::open(above.get(), QFile::encodeName(path.mid(within.size())), newfolder::Links::Followed)
        : FileDescriptor();
    if (!folder) {
        return failWith(error, Texts::tr("Could not create the folder \"%1\"").arg(path), path, errno);
    }
    replaceditem::repairAll(folder.get());
    return true;
}

bool LinuxFileOperations::removeItem(const QString &path, ErrorSlot error)
{
    using replaceditem::Removed;
    const Place place(path);
    const Removed removed = place ? replaceditem::remove(place.folder.get(), place.name) : Removed::No;
    if (removed != Removed::Whole) {
        failWith(error, Texts::tr("Could not remove \"%1\"").arg(path), path, errno);
    }
    return removed != Removed::No;
}

bool LinuxFileOperations::setAside(const QString &path, ErrorSlot error)
{
    const Place place(path);
    return (place && replaceditem::setAside(place.folder.get(), place.name))
        || failWith(error, Texts::tr("Could not remove \"%1\"").arg(path), path, errno);
}

bool LinuxFileOperations::bringBack(const QString &path)
{
    const Place place(path);
    return place && replaceditem::bringBack(place.folder.get(), place.name);
}

void LinuxFileOperations::discard(const QString &path)
{
    const Place place(path);
    if (place) {
        (void)replaceditem::discard(place.folder.get(), place.name);
    }
}

std::unique_ptr<QFile> LinuxFileOperations::openVerified(
    const QString &path, const QByteArray &checksum, ErrorSlot error)
{
    // A pipe in the file's place must not be waited for.
    FileDescriptor opened(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    return sourceOf(std::move(opened), path, checksum, error);
}

bool LinuxFileOperations::copyItem(const QString &source, const QString &target, ErrorSlot error)
{
    QString failed;
    if (copyThroughStaging(safepath::split(QFile::encodeName(source)),
            safepath::split(QFile::encodeName(target)), &failed)) {
        return true;
    }
    const int code = errno;
    return failWith(error,
        failed == source || failed == target
            ? Texts::tr("Could not copy \"%1\" to \"%2\"").arg(source, target)
            : Texts::tr("Could not copy \"%1\" to \"%2\" (at \"%3\")").arg(source, target, failed),
        failed, code);
}

bool LinuxFileOperations::extractZip(const QFile &archive, const QString &target, ErrorSlot error)
{
    const Place place(target, safepath::openFolder);
    if (!place) {
        const QString folder = deletingLastPathComponent(target);
        return failWith(error, Texts::tr("Could not open the folder \"%1\"").arg(folder), folder, errno);
    }
    std::optional<BrevokError> failure =
        extractZipArchive(archive, place.folder.get(), target, {.only = place.name});
    const bool extracted = !failure.has_value();
    if (failure && error != nullptr) {
        *error = std::move(failure);
    }
    return extracted;
}

bool LinuxFileOperations::addPermissionsAndOwner(
    const QString &path, quint32 permissions, quint32 user, ErrorSlot error)
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    const FileDescriptor folder = openForLookUp(item.folder);
    const filetree::Change change = !folder
        ? filetree::Change::Missing
        : filetree::addAttributes(
            folder.get(), item.name.isEmpty() ? QByteArrayLiteral(".") : item.name, {permissions, user});
    if (change == filetree::Change::Failed) {
        failWith(
            error, Texts::tr("Could not change the owner and permissions of \"%1\"").arg(path), path, errno);
    }
    return change != filetree::Change::Missing;
}

QList<FileOperations::AttributeFailure> LinuxFileOperations::addPermissionsAndOwnerToTree(
    const QString &path, quint32 permissions, quint32 user)
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    const FileDescriptor folder = openForLookUp(item.folder);
    if (!folder || item.name.isEmpty()) {
        return {{path, true}};
    }
    QList<AttributeFailure> failures;
    for (const filetree::Unchanged &entry :
        filetree::addAttributesToTree(folder.get(), item.name, {permissions, user})) {
        // Named as the caller named the item.
        failures.append({path + QFile::decodeName(entry.path.mid(item.name.size())),
            entry.change == filetree::Change::Missing});
    }
    return failures;
}

bool clearLeftovers(const QString &folder)
{
    const FileDescriptor opened = safepath::openFolder(QFile::encodeName(folder));
    return opened && replaceditem::repairAll(opened.get());
}

} // namespace brevok
