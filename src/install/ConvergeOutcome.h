// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/InstallOutcome.h"

namespace brevok {

/// One line of what became of a machine's packages.
struct ConvergeEntry {
    QString prefix{}; ///< empty where it is about no package
    QString package{}; ///< its name
    QString result{}; ///< a word that programs read
    PluginOutcome what{}; ///< the plug-in and target, where it is about one; and the reason

    /// All of it, for lists and the log.
    [[nodiscard]] QString sentence() const;
};

/// What became of one attempt to bring a machine to what its owner wants.
struct ConvergeOutcome {
    bool foreseen = false; ///< nothing was done: this is what would become of it
    QList<ConvergeEntry> changed{};
    QList<ConvergeEntry> deferred{}; ///< until the next time, because the application runs
    QList<ConvergeEntry> failed{};
    QList<ConvergeEntry> waiting{}; ///< for somebody's decision, or for a target: not for the next time
    QStringList notes{}; ///< about wishes that cannot be met as they stand

    /// Sorts what became of the package @p name into the lists.
    void add(const QString &prefix, const QString &name, const InstallOutcome &outcome);
    void addFailure(const QString &reason, const QString &prefix = {});
    void addWaiting(const QString &prefix, const QString &name, const QString &result, const QString &reason);

    /// Of what failed, each once.
    [[nodiscard]] QStringList failureSentences() const;
    /// The names of the packages with an entry of that result, each once.
    [[nodiscard]] QStringList packagesChanged(const QString &result) const;
    /// For the log.
    [[nodiscard]] QString summary() const;
};

} // namespace brevok
