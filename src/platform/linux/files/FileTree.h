// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

#include <sys/types.h>

/// What is done to a file, link or folder as a whole. A tree is walked through open folders, so a folder that
/// is swapped for a link meanwhile leads nowhere else. Every failure leaves its reason in errno.
namespace brevok::filetree {

/// Removes the entry @p name of @p folder with everything in it; a link itself, never what it points at.
/// @return false with the entry that resisted in @p where (a path that starts with @p name)
[[nodiscard]] bool remove(int folder, const QByteArray &name, QByteArray *where);
/// Removes everything in @p folder. @return false with the entry that resisted in @p where
[[nodiscard]] bool removeContents(int folder, QByteArray *where);

/// Copies regular files, folders and links (as links) with their permission bits and modification times.
/// Anything else inside is refused.
/// @return false with the entry of the source that failed in @p where; what was copied stays
[[nodiscard]] bool copy(int sourceFolder, const QByteArray &source, int targetFolder,
    const QByteArray &target, QByteArray *where);

/// What became of one item whose permissions and owner should change.
enum class Change { Done, Missing, Failed };
struct Attributes {
    mode_t permissions = 0; ///< bits to add
    uid_t user = 0; ///< the owner to be
    /// Leave what the owner to be could not have read so far.
    bool onlyReadable = false;
};
/// Changes one entry, not what a link points at. A link has an owner but no permissions.
[[nodiscard]] Change addAttributes(int folder, const QByteArray &name, const Attributes &attributes);
/// An entry that was not changed, or a folder whose contents were not.
struct Unchanged {
    QByteArray path{}; ///< starts with the name of the entry that the walk began at
    Change change = Change::Failed;
};
/// Changes an entry and everything below it, folder before contents; goes on after a failure. A tree that is
/// too deep or too large is changed in part. @return the first that were not changed, in the order of the
/// walk; how many more there are is logged
[[nodiscard]] QList<Unchanged> addAttributesToTree(
    int folder, const QByteArray &name, const Attributes &attributes);

} // namespace brevok::filetree
