// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

class QFile;

namespace brevok {

/// The file manager that the installer's operations stand on. Any thread; no state. Paths are absolute. An
/// operation that fails fills @p error (domain fileErrorDomain) with what failed and where, and says so by
/// its result. The one detailed error of that one is the reason in a few words that a person understands.
class FileOperations {
public:
    using ErrorSlot = std::optional<BrevokError> *;

    FileOperations() = default;
    virtual ~FileOperations() = default;
    Q_DISABLE_COPY_MOVE(FileOperations)

    /// Whether something exists at @p path, following links; a dangling link counts as nothing.
    [[nodiscard]] virtual bool fileExists(const QString &path, bool *isDirectory = nullptr) const = 0;
    [[nodiscard]] virtual bool isReadable(const QString &path) const = 0;
    [[nodiscard]] virtual bool isWritable(const QString &path) const = 0;
    [[nodiscard]] virtual bool isExecutable(const QString &path) const = 0;
    /// Whether the entry itself could be removed now.
    [[nodiscard]] virtual bool isDeletable(const QString &path) const = 0;

    /// Creates the folder @p path, and what is missing between it and @p within, a folder above it that must
    /// exist, and clears from it what killed runs left there. An existing folder is a success.
    virtual bool prepareFolder(const QString &path, const QString &within, ErrorSlot error) = 0;
    /// The same with all missing folders above it.
    bool createFolder(const QString &path, ErrorSlot error)
    {
        return prepareFolder(path, QStringLiteral("/"), error);
    }

    // An item leaves its place in one step, so that its name never leads to half of it. What is never
    // followed by the step that belongs to it, because the process was killed, is made good by
    // clearLeftovers().

    /// Removes a file, a link (not what it points at) or a folder with everything in it: takes it out of
    /// sight, then deletes it. What resists deletion stays out of sight, with an error beside the yes. Never
    /// leaves the folder, even when one is swapped for a link meanwhile.
    virtual bool removeItem(const QString &path, ErrorSlot error) = 0;
    /// Takes an item out of sight until bringBack() or discard() of the same path.
    virtual bool setAside(const QString &path, ErrorSlot error) = 0;
    /// What was set aside gets its name again. @return whether there was anything, and it has
    virtual bool bringBack(const QString &path) = 0;
    /// Deletes what was set aside.
    virtual void discard(const QString &path) = 0;

    /// Opens a regular file to install from. It must have the SHA-256 @p checksum, unless that is empty; the
    /// code of another one is EBADMSG.
    [[nodiscard]] virtual std::unique_ptr<QFile> openVerified(
        const QString &path, const QByteArray &checksum, ErrorSlot error) = 0;
    /// Copies a file or folder to a path where nothing exists. The copy appears whole or not at all.
    virtual bool copyItem(const QString &source, const QString &target, ErrorSlot error) = 0;
    /// Unpacks the item that bears @p target's name from a zip archive; what stands beside it there is left
    /// out. It is unpacked beside its place and renamed when whole, so that half of it never bears its final
    /// name. Entries that climb out of the folder, are links outward, devices or the like, and archives that
    /// break the caps on size, ratio, entries or depth, refuse the archive as a whole; nothing is changed
    /// then. An archive that is damaged has the code EILSEQ, one that is not what it should be EBADMSG.
    virtual bool extractZip(const QFile &archive, const QString &target, ErrorSlot error) = 0;

    /// Adds permission bits to the item's own and makes @p user its owner (not following a link at @p path).
    /// @return false when the item has no attributes to read; a failed change fills @p error and answers
    /// true.
    virtual bool addPermissionsAndOwner(
        const QString &path, quint32 permissions, quint32 user, ErrorSlot error) = 0;
    /// An item whose permissions and owner did not change.
    struct AttributeFailure {
        QString path;
        bool missing = false; ///< it has no attributes to read
    };
    /// The same for an item and, when it is a folder, for everything in it, a folder before its contents.
    /// Goes on after a failure. Enters no folder through a link, even when one is swapped for a link
    /// meanwhile.
    /// @return what failed, in the order of the walk
    [[nodiscard]] virtual QList<AttributeFailure> addPermissionsAndOwnerToTree(
        const QString &path, quint32 permissions, quint32 user) = 0;
};

/// What the system's @p code of a file error means to a person; no sentence, but what may follow "… failed:".
[[nodiscard]] QString reasonOf(int code);

/// Makes good what killed runs left in @p folder: what they had begun to unpack or delete goes, and what they
/// had set aside comes back, unless its successor is there. Asks the disk, which may keep silent for ever:
/// not on the main thread. @return whether there was anything
bool clearLeftovers(const QString &folder);

} // namespace brevok
