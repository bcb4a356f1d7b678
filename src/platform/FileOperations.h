// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace brevok {

/// The file manager that the installer's operations stand on. Any thread; no state. Paths are absolute. An
/// operation that fails fills @p error (domain fileErrorDomain) with what failed and where, and says so by
/// its result.
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

    /// Creates a folder and all missing folders above it; an existing folder is a success.
    virtual bool createFolder(const QString &path, ErrorSlot error) = 0;
    /// Removes a file, a link (not what it points at) or a folder with everything in it. Never leaves the
    /// folder, even when one is swapped for a link meanwhile.
    virtual bool removeItem(const QString &path, ErrorSlot error) = 0;
    /// Copies a file or folder to a path where nothing exists. The copy appears whole or not at all.
    virtual bool copyItem(const QString &source, const QString &target, ErrorSlot error) = 0;
    /// Unpacks a zip archive into @p folder. Every top-level entry is unpacked beside its place and renamed
    /// when whole, so that a half-unpacked bundle never bears its final name; what bears that name already is
    /// replaced. Entries that climb out of @p
    /// folder, are links outward, devices or the like, and archives that break the caps on size, ratio,
    /// entries or depth, refuse the archive as a whole and leave @p folder as it was.
    virtual bool extractZip(const QString &archive, const QString &folder, ErrorSlot error) = 0;

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

} // namespace brevok
