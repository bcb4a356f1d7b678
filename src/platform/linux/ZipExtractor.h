// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QString>

#include <optional>

namespace brevok {

/// Unpacks the zip archive open as @p archive into the folder open as @p folder. The archive is judged as a
/// whole before anything is written and read from that same descriptor, in blocks, throughout; its entries
/// become complete in a hidden folder and are then renamed to their names, which nothing may bear yet. Files
/// get mode 0644, or 0755 where the archive has the owner's execute bit, folders 0755. @p archiveName and
/// @p folderName only say in the error what this was about. @return the error, nothing on success
[[nodiscard]] std::optional<BrevokError> extractZipArchive(
    int archive, int folder, const QString &archiveName, const QString &folderName);

} // namespace brevok
