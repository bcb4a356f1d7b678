// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace brevok {

/// What the helper was started for.
struct HelperOptions {
    enum class Task { Serve, Install, Remove, Obey, ShowVersion, ShowHelp };

    Task task = Task::Serve;
    QString prefix{};
    QString address{}; ///< of the bus; the system's when empty
    QString stateFolder = QStringLiteral("/var/lib/tolvane-brevok-helper");
    int idleSeconds = 300;
};

/// @return nothing with one line about what is wrong in @p complaint
[[nodiscard]] std::optional<HelperOptions> parseHelperOptions(
    const QStringList &arguments, QString *complaint);

/// Does what was asked for; needs the QCoreApplication. @return the exit status
[[nodiscard]] int runHelper(const HelperOptions &options);

} // namespace brevok
