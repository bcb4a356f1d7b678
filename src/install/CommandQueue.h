// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QJsonArray>

namespace brevok {

// The pending commands of a plug-in definition, kept in its record under "CommandQueue". Each is an array:
// its name, the plug-in path in a target, and for an install the archive's path.

[[nodiscard]] QJsonArray installCommand(const QString &pluginPath, const QString &archivePath);
[[nodiscard]] QJsonArray removalCommand(const QString &pluginPath);
[[nodiscard]] bool isInstallCommand(const QJsonArray &command);
[[nodiscard]] bool isRemovalCommand(const QJsonArray &command);

/// The commands in order; empty when the record has no queue.
[[nodiscard]] QJsonArray commandQueue(const Record &definition);
/// Whether the record has a queue at all, which an emptied one is.
[[nodiscard]] bool hasCommandQueue(const Record &definition);
void appendCommand(Record &definition, const QJsonArray &command);
/// Removes one command that equals @p command; an emptied queue stays.
void removeCommand(Record &definition, const QJsonArray &command);

} // namespace brevok
