// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/GuardedFileOperations.h"

#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "platform/linux/files/FileDigest.h"
#include "platform/linux/files/FileErrors.h"
#include "platform/linux/files/FileTree.h"
#include "platform/linux/files/GuardedPath.h"
#include "platform/linux/files/NewFolder.h"
#include "platform/linux/files/SafePath.h"
#include "platform/linux/files/SourceFile.h"
#include "platform/linux/files/StagingFolder.h"
#include "platform/linux/files/ZipExtractor.h"

#include <QFile>

#include <atomic>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t fileMode = 0644;

/// An entry, by its open folder.
struct Place {
    FileDescriptor folder;
    QByteArray name;

    [[nodiscard]] explicit operator bool() const { return folder && !name.isEmpty(); }
};

Place placeOf(const QString &path)
{
    const safepath::SplitPath item = safepath::split(QFile::encodeName(path));
    return {guardedpath::openFolder(item.folder), item.name};
}

bool allows(const QString &path, int mode)
{
    const Place place = placeOf(path);
    return place
        && ::faccessat(place.folder.get(), place.name.constData(), mode, AT_EACCESS | AT_SYMLINK_NOFOLLOW)
        == 0;
}

/// A share of the memory that sources may take up all together; nothing when there is too little left.
std::shared_ptr<void> reserveMemory(qint64 size)
{
    constexpr qint64 all = qint64(256) * 1024 * 1024;
    static std::atomic<qint64> taken = 0;
    if (taken.fetch_add(size) + size > all) {
        taken.fetch_sub(size);
        return nullptr;
    }
    return {&taken, [size](std::atomic<qint64> *counter) {
                counter->fetch_sub(size);
            }};
}

} // namespace

GuardedFileOperations::GuardedFileOperations(uid_t caller, QString target, Source source)
    : m_caller(caller)
    , m_target(std::move(target))
    , m_source(std::move(source))
{
}

std::optional<GuardedFileOperations::Source> GuardedFileOperations::openSource(
    const QString &path, uid_t caller, qint64 longest, Bytes bytes, ErrorSlot error)
{
    Source source{path, guardedpath::openOwnFile(QFile::encodeName(path), caller)};
    struct stat facts { };
    bool good = source.file && ::fstat(source.file.get(), &facts) == 0;
    if (good && facts.st_size > longest) {
        errno = EFBIG;
        good = false;
    }
    // A file's times tell nothing: who can write to it can do so without changing them.
    if (good && bytes == Bytes::AsSeen) {
        source.digest = sha256Of(source.file.get(), facts.st_size);
        good = !source.digest.isEmpty();
    }
    if (!good) {
        failWith(error, Texts::tr("Could not read the file \"%1\"").arg(path), path, errno);
        return std::nullopt;
    }
    return source;
}

bool GuardedFileOperations::takeSource(Source &source, const QString &scratch, ErrorSlot error)
{
    struct stat facts { };
    FileDescriptor copy;
    if (::fstat(source.file.get(), &facts) == 0) {
        source.reservation = reserveMemory(facts.st_size);
        copy = guardedpath::privateCopy(
            source.file.get(), facts.st_size, source.reservation ? QByteArray() : QFile::encodeName(scratch));
    }
    if (copy && !source.digest.isEmpty() && sha256Of(copy.get(), facts.st_size) != source.digest) {
        copy.close();
        errno = ESTALE;
    }
    source.file = std::move(copy);
    return source.file
        || failWith(error, Texts::tr("Could not read the file \"%1\"").arg(source.path), source.path, errno);
}

replaceditem::Repair GuardedFileOperations::repair(
    const QString &target, const replaceditem::Interrupted &what)
{
    const Place place = placeOf(target);
    return place ? replaceditem::repair(place.folder.get(), place.name, what)
                 : replaceditem::Repair::NothingToDo;
}

// The old item stays until its successor is safe, and is looked for where it was set aside, should its folder
// have been taken elsewhere meanwhile.
bool GuardedFileOperations::finish()
{
    m_source = {};
    Place place = placeOf(m_target);
    const bool aside = static_cast<bool>(m_aside);
    if (aside) {
        place.folder = std::move(m_aside);
    }
    if (!place) {
        return true;
    }
    const int folder = place.folder.get();
    const bool stands = safepath::exists(folder, place.name);
    if (aside && !stands) {
        return replaceditem::bringBack(folder, place.name);
    }
    if (m_placed && stands ? !safepath::sync(folder) : ::fsync(folder) != 0) {
        logLine(u"what was done could not be brought to the disk: %1"_s.arg(qt_error_string(errno)));
        return !aside;
    }
    const bool discarded = replaceditem::discard(folder, place.name) && (!aside || ::fsync(folder) == 0);
    if (!discarded) {
        logLine(u"the replaced item could not be deleted: %1"_s.arg(qt_error_string(errno)));
    }
    return discarded;
}

// A link counts as what it is: what it points at is not looked at for somebody else. A disk that reports an
// error, or says nothing about it for want of something, does not say that there is nothing.
bool GuardedFileOperations::fileExists(const QString &path, bool *isDirectory) const
{
    struct stat facts { };
    const Place place = placeOf(path);
    const bool exists = place
        ? ::fstatat(place.folder.get(), place.name.constData(), &facts, AT_SYMLINK_NOFOLLOW) == 0
        : errno != ENOENT && errno != ENOTDIR && errno != ELOOP && errno != EINVAL;
    if (isDirectory != nullptr) {
        *isDirectory = exists && S_ISDIR(facts.st_mode);
    }
    return exists;
}

bool GuardedFileOperations::isReadable(const QString &path) const
{
    return allows(path, R_OK);
}

bool GuardedFileOperations::isWritable(const QString &path) const
{
    return allows(path, W_OK);
}

bool GuardedFileOperations::isExecutable(const QString &path) const
{
    return allows(path, X_OK);
}

bool GuardedFileOperations::isDeletable(const QString &path) const
{
    const Place place = placeOf(path);
    return fileExists(path) && ::faccessat(place.folder.get(), ".", W_OK | X_OK, AT_EACCESS) == 0;
}

// What is in the folder is not looked through: what killed runs of the helper left there, its journal knows.
bool GuardedFileOperations::prepareFolder(const QString &path, const QString &within, ErrorSlot error)
{
    if (guardedpath::openFolder(QFile::encodeName(path))) {
        return true;
    }
    const FileDescriptor above = guardedpath::openFolder(QFile::encodeName(within));
    return (above
               && newfolder::open(
                   above.get(), QFile::encodeName(path.mid(within.size())), newfolder::Links::Refused))
        || failWith(error, Texts::tr("Could not create the folder \"%1\"").arg(path), path, errno);
}

bool GuardedFileOperations::removeItem(const QString &path, ErrorSlot error)
{
    using replaceditem::Removed;
    const Place place = placeOf(path);
    const Removed removed =
        place && path == m_target ? replaceditem::remove(place.folder.get(), place.name) : Removed::No;
    if (removed != Removed::Whole) {
        failWith(error, Texts::tr("Could not remove \"%1\"").arg(path), path, errno);
    }
    return removed != Removed::No;
}

bool GuardedFileOperations::setAside(const QString &path, ErrorSlot error)
{
    Place place = placeOf(path);
    if (!place || path != m_target || !replaceditem::setAside(place.folder.get(), place.name)) {
        return failWith(error, Texts::tr("Could not remove \"%1\"").arg(path), path, errno);
    }
    m_aside = std::move(place.folder);
    return true;
}

bool GuardedFileOperations::bringBack(const QString &path)
{
    const Place place = placeOf(path);
    const int folder = m_aside ? m_aside.get() : place.folder.get();
    const bool back = path == m_target && replaceditem::bringBack(folder, place.name);
    if (back) {
        m_aside.close();
    }
    return back;
}

// That can wait until the caller is answered: finish() does it.
void GuardedFileOperations::discard(const QString & /*path*/) { }

std::unique_ptr<QFile> GuardedFileOperations::openVerified(
    const QString &path, const QByteArray &checksum, ErrorSlot error)
{
    FileDescriptor opened;
    errno = EINVAL;
    if (path == m_source.path && m_source.file) {
        opened = FileDescriptor(::fcntl(m_source.file.get(), F_DUPFD_CLOEXEC, 0));
    }
    return sourceOf(std::move(opened), path, checksum, error);
}

bool GuardedFileOperations::copySource(int folder, const QByteArray &name) const
{
    if (safepath::exists(folder, name)) {
        errno = EEXIST;
        return false;
    }
    StagingFolder staging(folder);
    if (!staging) {
        return false;
    }
    struct stat facts { };
    FileDescriptor file =
        safepath::openBeneath(staging.descriptor(), name, O_WRONLY | O_CREAT | O_EXCL, fileMode);
    if (!file || ::fstat(m_source.file.get(), &facts) != 0
        || !safepath::copyAll(m_source.file.get(), file.get(), facts.st_size)) {
        return false;
    }
    QByteArray where;
    return ::fchown(file.get(), m_caller, static_cast<gid_t>(-1)) == 0 && ::fchmod(file.get(), fileMode) == 0
        && file.close()
        && staging.publish({name}, StagingFolder::Existing::Refused, &where, StagingFolder::Safe::Later);
}

bool GuardedFileOperations::copyItem(const QString &source, const QString &target, ErrorSlot error)
{
    const Place place = placeOf(target);
    const bool asked = source == m_source.path && target == m_target && m_source.file;
    m_placed = asked && place && copySource(place.folder.get(), place.name);
    const int code = asked ? errno : EINVAL;
    return m_placed
        || failWith(error, Texts::tr("Could not copy \"%1\" to \"%2\"").arg(source, target), target, code);
}

bool GuardedFileOperations::extractZip(const QFile &archive, const QString &target, ErrorSlot error)
{
    const Place place = placeOf(target);
    if (!place || target != m_target) {
        return failWith(error, Texts::tr("Could not open the folder \"%1\"").arg(target), target, errno);
    }
    std::optional<BrevokError> failure = extractZipArchive(
        archive, place.folder.get(), target, {.only = place.name, .owner = m_caller, .safeLater = true});
    m_placed = !failure.has_value();
    if (failure && error != nullptr) {
        *error = std::move(failure);
    }
    return m_placed;
}

bool GuardedFileOperations::addPermissionsAndOwner(
    const QString &path, quint32 permissions, quint32 user, ErrorSlot error)
{
    const Place place = placeOf(path);
    const filetree::Change change = place
        ? filetree::addAttributes(place.folder.get(), place.name, {permissions, user, true})
        : filetree::Change::Missing;
    if (change == filetree::Change::Failed) {
        failWith(
            error, Texts::tr("Could not change the owner and permissions of \"%1\"").arg(path), path, errno);
    }
    return change != filetree::Change::Missing;
}

// What was put in place by this request is the caller's since before it got its name, and nothing that has
// taken that name meanwhile is given away.
QList<FileOperations::AttributeFailure> GuardedFileOperations::addPermissionsAndOwnerToTree(
    const QString &path, quint32 permissions, quint32 user)
{
    if (m_placed && path == m_target) {
        return {};
    }
    const Place place = placeOf(path);
    if (!place) {
        return {{path, true}};
    }
    QList<AttributeFailure> failures;
    for (const filetree::Unchanged &entry :
        filetree::addAttributesToTree(place.folder.get(), place.name, {permissions, user, true})) {
        failures.append({path + QFile::decodeName(entry.path.mid(place.name.size())),
            entry.change == filetree::Change::Missing});
    }
    return failures;
}

} // namespace brevok
