// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// Writing to a pipe that nobody reads any more fails from here on, and no signal ends the program.
void outliveReaders();

/// Whether what the program writes to standard error is read on a terminal.
[[nodiscard]] bool standardErrorIsTerminal();

/// One line of standard input, without its end; on a terminal @p prompt is shown and what is typed is not. A
/// signal that ends the program there (Ctrl-C) leaves a terminal that shows again what is typed.
[[nodiscard]] QString readSecret(const QString &prompt);

} // namespace brevok
