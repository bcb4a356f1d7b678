// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// Whether somebody listens at the socket in the file system at @p path. Does not wait; any thread.
[[nodiscard]] bool answersAtSocket(const QString &path);

} // namespace brevok
