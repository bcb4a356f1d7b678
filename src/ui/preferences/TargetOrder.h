// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace brevok {

class Pulse;

/// What the order of the rows of targets depends on.
struct OrderedTarget {
    QString path;
    QString resolvedPath; ///< without symbolic links
    QString version; ///< the record's "Version"
};

/// The paths in the order of their rows: higher versions first, then InDesign, then what is no debug build,
/// then what stands later in @p targets.
[[nodiscard]] QStringList sortedTargetPaths(QList<OrderedTarget> targets);

/// How many versions the pop-up offers.
inline constexpr int targetVersionCount = 16;
/// The version text that the item at @p index stands for.
[[nodiscard]] QString targetVersion(int index);
/// The index of the item that stands for a host of @p version; nothing when there is none.
[[nodiscard]] std::optional<int> targetVersionIndex(const QString &version);
/// The name that the user reads for it: "CS5.5", "CC 2019".
[[nodiscard]] QString targetVersionName(int index);

/// The part of the test of a chosen folder that needs no look at the disk: at least two characters, and the
/// last component is exactly "Plug-Ins".
[[nodiscard]] bool isPlugInsPath(const QString &path);
/// Whether there is an InDesign application anywhere below the folder that holds @p path. Reads the disk,
/// links are not followed; gives up after very many entries. Any thread.
[[nodiscard]] bool hasInDesignBeside(const QString &path, Pulse &pulse);

} // namespace brevok
