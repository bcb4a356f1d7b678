// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QString>

#include <optional>

#include <sys/types.h>

class QFile;

namespace brevok {

/// What is asked of an archive beyond the rules that hold for each.
struct ExtractionTerms {
    QByteArray only; ///< the item to unpack; what stands beside it at the top is left out
    std::optional<uid_t> owner{}; ///< who gets the entries, before the item gets its final name
    bool safeLater = false; ///< the caller brings what was unpacked to the disk
};

/// Unpacks the item @p terms.only of a zip archive into the folder open as @p folder. The archive is judged
/// as a whole before anything is written and read from that same file, in blocks, throughout; the item
/// becomes complete in a hidden folder and is then renamed to its name, and takes the place of what bears
/// that. Files get mode 0644, or 0755 where the archive has the owner's execute bit, folders 0755.
/// @p targetName only says in the error what this was about. @return the error, nothing on success
[[nodiscard]] std::optional<BrevokError> extractZipArchive(
    const QFile &archive, int folder, const QString &targetName, const ExtractionTerms &terms);

} // namespace brevok
