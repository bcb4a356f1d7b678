// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileState.h"

namespace brevok {

/// What is said of a folder whose disk keeps silent.
[[nodiscard]] QString doesNotAnswer(const QString &path);

/// Why the folder at @p path cannot be added as the target of a host of @p version, as a sentence; nothing
/// when it can. @p look is what the disk says of it, nothing when it does not answer.
[[nodiscard]] std::optional<QString> whyNoTarget(
    const QString &path, const QString &version, const std::optional<FolderLook> &look);

} // namespace brevok
