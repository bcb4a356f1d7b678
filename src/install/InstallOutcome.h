// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace brevok {

/// What became of one plug-in at one target, or of one plug-in that came to no target.
struct PluginOutcome {
    enum class End {
        Installed,
        Removed,
        Skipped, ///< because the application runs
        LeftAlone, ///< because it is current, or because another package needs it
        Failed,
    };

    End end = End::Failed;
    QString plugin{}; ///< its name; empty when the reason is about none
    QString target{}; ///< path of the target's folder; empty when the reason is about none
    QString targetName{}; ///< the target as a person knows it
    QString reason{}; ///< in a few words; empty when the plug-in was installed or removed
    QString detail{}; ///< what else is known of the reason
    bool everywhere = false; ///< the reason is the same for all targets

    /// The reason and, where there is one, the target, for a row.
    [[nodiscard]] QString brief() const;
    /// All of it, for lists and the log.
    [[nodiscard]] QString sentence() const;
};

/// The word for it that programs read ("installed", "failed").
[[nodiscard]] QLatin1StringView endName(PluginOutcome::End end);

/// What the failure alert is made of.
struct FailureReport {
    QList<BrevokError> errors{};
    QString plugin{}; ///< its designation as the alert shows it
};

/// What became of one install or removal of a package. The log, the panel's row, the alert and brevokctl all
/// tell this.
struct InstallOutcome {
    QList<PluginOutcome> entries{};
    /// How many commands were planned; 0 when there was nothing to do.
    int planned = 0;
    /// What is still to be told, where that is done for several packages together.
    QList<FailureReport> untold{};

    /// The entries that failed, those included that the failure alert leaves out.
    [[nodiscard]] QList<PluginOutcome> failures() const;
    /// Their sentences, each once.
    [[nodiscard]] QStringList failureSentences() const;
    InstallOutcome &operator+=(const InstallOutcome &other);
};

} // namespace brevok
