// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/LinuxFileOperations.h"

#include "foundation/Texts.h"
#include "platform/linux/FileErrors.h"
#include "platform/linux/FileTree.h"
#include "platform/linux/SafePath.h"
#include "platform/linux/StagingFolder.h"
#include "platform/linux/ZipExtractor.h"

#include <QFile>

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok {

namespace {

bool allows(const QString &path, int mode)
{
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), mode, AT_EACCESS) == 0;
}

bool fail(FileOperations::ErrorSlot error, const QString &operation, const QString &path, int code)
{
    if (error != nullptr) {
        *error = fileError(operation, path, code);
    }
    return false;
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
    struct stat existing { };
    if (!folder) {
        return false;
    }
    if (::fstatat(folder.get(), target.name.constData(), &existing, AT_SYMLINK_NOFOLLOW) == 0) {
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

bool LinuxFileOperations::createFolder(const QString &path, ErrorSlot error)
{
    std::error_code failure;
    std::filesystem::create_directories(QFile::encodeName(path).toStdString(), failure);
    bool isFolder = false;
    // Somebody else may have made it meanwhile.
    if (fileExists(path, &isFolder) && isFolder) {
        return true;
    }
    return fail(error, Texts::tr("Could not create the folder \"%1\"").arg(path), path,
        failure ? failure.value() : ENOTDIR);
}

bool LinuxFileOperations::removeItem(const QString &path, ErrorSlot error)
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    QByteArray where = item.name;
    const FileDescriptor folder = openForLookUp(item.folder);
    if (folder && !item.name.isEmpty() && filetree::remove(folder.get(), item.name, &where)) {
        return true;
    }
    const int code = folder && item.name.isEmpty() ? EINVAL : errno;
    const QString failed = item.name.isEmpty() ? path : pathOf(item, where);
    return fail(error, Texts::tr("Could not remove \"%1\"").arg(failed), failed, code);
}

bool LinuxFileOperations::copyItem(const QString &source, const QString &target, ErrorSlot error)
{
    QString failed;
    if (copyThroughStaging(safepath::split(QFile::encodeName(source)),
            safepath::split(QFile::encodeName(target)), &failed)) {
        return true;
    }
    const int code = errno;
    return fail(error,
        failed == source || failed == target
            ? Texts::tr("Could not copy \"%1\" to \"%2\"").arg(source, target)
            : Texts::tr("Could not copy \"%1\" to \"%2\" (at \"%3\")").arg(source, target, failed),
        failed, code);
}

bool LinuxFileOperations::extractZip(const QString &archive, const QString &folder, ErrorSlot error)
{
    const FileDescriptor opened(
        ::open(QFile::encodeName(archive).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!opened) {
        return fail(error, Texts::tr("Could not open the archive \"%1\"").arg(archive), archive, errno);
    }
    const FileDescriptor into = safepath::openFolder(QFile::encodeName(folder));
    if (!into) {
        return fail(error, Texts::tr("Could not open the folder \"%1\"").arg(folder), folder, errno);
    }
    std::optional<BrevokError> failure = extractZipArchive(opened.get(), into.get(), archive, folder);
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
        fail(error, Texts::tr("Could not change the owner and permissions of \"%1\"").arg(path), path, errno);
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

} // namespace brevok
