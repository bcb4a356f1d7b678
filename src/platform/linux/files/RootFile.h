// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <optional>

namespace brevok::rootfile {

using ErrorSlot = std::optional<BrevokError> *;

/// Puts a file with mode 0644, or 0755 for a program, at @p path, in one step and on the disk when this
/// returns. Missing folders are made; folders that anybody but root may change are refused.
[[nodiscard]] bool write(const QString &path, const QByteArray &bytes, ErrorSlot error);
/// As write(), with the program of this very process.
[[nodiscard]] bool writeThisProgram(const QString &path, ErrorSlot error);
/// Removes the file; none there is a success.
[[nodiscard]] bool remove(const QString &path, ErrorSlot error);

/// Makes the folder at @p path, with mode 0700, and whatever is missing above it. @return whether it is
/// there, and belongs to this process's user alone
[[nodiscard]] bool makePrivateFolder(const QString &path, ErrorSlot error);

/// Whether nobody but root can have put what is at @p path there.
[[nodiscard]] bool isRootsPlace(const QString &path);

/// Asks the process @p id to end.
void terminate(qint64 id);

} // namespace brevok::rootfile
