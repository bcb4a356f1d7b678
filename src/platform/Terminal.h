// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// Whether what the program writes to standard error is read on a terminal.
[[nodiscard]] bool standardErrorIsTerminal();

/// One line of standard input, without its end; on a terminal @p prompt is shown and what is typed is not.
[[nodiscard]] QString readSecret(const QString &prompt);

} // namespace brevok
