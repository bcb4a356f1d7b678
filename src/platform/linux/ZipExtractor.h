// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QString>

#include <optional>

#include <sys/types.h>

namespace brevok {

/// What is asked of an archive beyond the rules that hold for each.
struct ExtractionTerms {
    QByteArray only; ///< the one name that may stand at the top; any when empty
    bool refuseOpenModes = false; ///< refuse entries that everybody may write to, instead of closing them
    std::optional<uid_t> owner; ///< who gets the entries, before they get their final names
    bool safeLater = false; ///< the caller brings what was unpacked to the disk
};

/// Judges the zip archive open as @p archive without unpacking anything. @return why it may not be unpacked
[[nodiscard]] std::optional<BrevokError> judgeZipArchive(
    int archive, const QString &archiveName, const ExtractionTerms &terms);

/// Unpacks the zip archive open as @p archive into the folder open as @p folder. The archive is judged as a
/// whole before anything is written and read from that same descriptor, in blocks, throughout; its entries
/// become complete in a hidden folder and are then renamed to their names, which nothing may bear yet. Files
/// get mode 0644, or 0755 where the archive has the owner's execute bit, folders 0755. @p archiveName and
/// @p folderName only say in the error what this was about. @return the error, nothing on success
[[nodiscard]] std::optional<BrevokError> extractZipArchive(int archive, int folder,
    const QString &archiveName, const QString &folderName, const ExtractionTerms &terms = {});

} // namespace brevok
