// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDateTime>

namespace brevok {

/// A date as headers have it, in either of the spellings in use: "Sun, 06 Nov 1994 08:49:37 GMT" and
/// "Sun, 06-Nov-1994 08:49:37 GMT". Invalid when it is none.
[[nodiscard]] QDateTime httpDate(const QByteArray &text);

} // namespace brevok
