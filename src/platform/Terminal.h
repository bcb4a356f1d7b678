// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// Called first in main(). Writing to a standard stream that the caller closed, or that nobody reads any
/// more, fails from here on: no file that is opened later takes its place, and no signal ends the program.
void keepStandardStreams();

/// Whether what the program writes to standard error is read on a terminal.
[[nodiscard]] bool standardErrorIsTerminal();

/// One line of standard input, without its end; on a terminal @p prompt is shown and what is typed is not. A
/// signal that ends the program there (Ctrl-C) leaves a terminal that shows again what is typed.
[[nodiscard]] QString readSecret(const QString &prompt);

} // namespace brevok
