// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PackageStatus.h"
#include "platform/FileState.h"

#include <QHash>
#include <QStringList>

namespace brevok {

class Pulse;

/// What was read of an installed bundle.
struct InstalledBundle {
    /// The state of its information dictionary then; nothing when a change right after it would not show.
    std::optional<FileState> information{};
    BundleFacts facts{};
};
/// By the plug-in's name.
using InstalledBundles = QHash<QString, InstalledBundle>;

/// The path of the installed bundle of the plug-in @p name in the target at @p targetPath.
[[nodiscard]] QString installedPluginPath(const QString &targetPath, const QString &name);

/// A plug-in whose bundle is asked for.
struct BundleName {
    explicit BundleName(const QString &pluginName);

    QString name;
    QByteArray information; ///< the encoded path of its information dictionary from the plug-ins' folder on
};

/// Looks at the bundles of the plug-ins @p names in the target at @p targetPath, and reads those that are not
/// as they were when @p known was read. May hang with the target's disk.
[[nodiscard]] InstalledBundles lookAtBundles(
    const QString &targetPath, const QList<BundleName> &names, const InstalledBundles &known, Pulse &pulse);

} // namespace brevok
