// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace brevok::demo {

/// What the program was asked for on its command line.
struct DemoOptions {
    QString root; ///< absolute path of the folder that holds the service's data
    QString tls; ///< absolute path of the folder that holds its certificates
    quint16 port = 0; ///< 0 picks a free one
};

/// Either options, or a text to print and the exit status to end with.
struct ParsedOptions {
    std::optional<DemoOptions> options;
    QString text; ///< help, version or the one line that names what is wrong
    int exitStatus = 0;
};

/// Reads @p arguments (the program's own name first). Touches nothing.
[[nodiscard]] ParsedOptions parseDemoOptions(const QStringList &arguments);

} // namespace brevok::demo
