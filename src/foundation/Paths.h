// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

// Paths as texts: nothing here asks the disk.

/// @p path without slashes at its end; "/" stays.
[[nodiscard]] QString withoutTrailingSlashes(QString path);

/// @p path without its last component and without a slash at its end; "/" stays, a single name gives an
/// empty text.
[[nodiscard]] QString deletingLastPathComponent(const QString &path);

/// Whether @p name names an entry of a folder, cannot lead elsewhere and shows what it is.
[[nodiscard]] bool isPlainFileName(const QString &name);

/// Whether every character of @p text can be seen, or is a plain blank: no line breaks, nothing that controls
/// a terminal or turns the direction of writing, no half characters.
[[nodiscard]] bool isPrintable(const QString &text);

} // namespace brevok
