// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PluginDefinition.h"
#include "targets/BrevokTargetApps.h"

namespace brevok {

/// Everything that a usage report is made of, taken on the main thread.
struct UsageSnapshot {
    QString appVersion; ///< empty when missing
    TargetRecords targets;
    PackedSnapshot definitions;
};

/// The report of which plug-ins are installed where. Reads the targets' folders; any thread.
[[nodiscard]] QJsonObject gatheredUsage(const UsageSnapshot &snapshot);

} // namespace brevok
