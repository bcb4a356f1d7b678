// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

namespace brevok {

/// The SHA-256 of the first @p size bytes of the open file @p file, which is read by position; empty with the
/// reason in errno when they cannot be read.
[[nodiscard]] QByteArray sha256Of(int file, qint64 size);

} // namespace brevok
