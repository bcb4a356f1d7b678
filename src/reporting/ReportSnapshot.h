// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PackageStatus.h"
#include "catalogue/PluginDefinition.h"
#include "reporting/BugReport.h"
#include "targets/BrevokTargetApps.h"

namespace brevok {

/// The state of the program that a bug report shows, taken on the main thread. What does not exist (yet) is
/// absent.
struct ReportSnapshot {
    struct Packages {
        std::optional<QHash<QString, PackageStatus>> statuses;
        std::optional<QList<Record>> records;
    };
    struct Plugins {
        std::optional<PackedSnapshot> definitions;
    };
    struct Targets {
        std::optional<TargetRecords> records; ///< all stored ones
    };

    std::optional<Packages> packages;
    std::optional<Plugins> plugins;
    std::optional<Targets> targets;
    QString logsFolder;
};

/// A record's value as a report shows it: without line breaks, double blanks, and a blank at either end.
[[nodiscard]] QString cleanedText(const QJsonValue &value);

/// The diagnostic part of a bug report: packages, plug-ins, targets, logs, crash reports. Reads the targets'
/// folders and the logs; any thread.
[[nodiscard]] QList<ReportItem> getReport(const ReportSnapshot &snapshot);

} // namespace brevok
