// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace brevok {

/// The path @p asked, without doubled slashes, if it can belong to an install target: a "NAME.InDesignPlugin"
/// directly inside a folder "Tolvane", or the workspace file directly inside "Presets/InDesign Workspaces".
/// Decided by the text alone.
[[nodiscard]] std::optional<QString> targetPath(const QString &asked);

/// The path @p asked if it is an absolute one that means the same to everybody: no "..", no control
/// characters.
[[nodiscard]] std::optional<QString> plainPath(const QString &asked);

} // namespace brevok
