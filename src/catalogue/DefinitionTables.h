// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PluginDefinition.h"
#include "catalogue/PluginList.h"
#include "platform/StateStore.h"

#include <QSet>

namespace brevok {

/// The two indexes of the plug-in definitions: by prefix, which is what is stored and shown, and by build,
/// which keeps one definition per build and never shrinks. Values only: no store, no service, no signals.
class DefinitionTables final {
public:
    [[nodiscard]] const DefinitionIndex &byPrefix() const { return m_byPrefix; }
    [[nodiscard]] const QHash<QString, DefinitionPtr> &byBuild() const { return m_byBuild; }

    /// Takes in what changes() gave in earlier runs, from an empty state. An interrupted download is
    /// forgotten. What has a shape that nothing here writes is left out. @return how many values that were
    int load(const StateEntries &builds, const StateEntries &prefixes);
    /// The same from what an earlier version kept: prefix to list of definitions. All of it counts as
    /// changed.
    int loadLists(const Record &stored);

    /// What differs from the state store since the last call: an entry for every build and for every prefix.
    [[nodiscard]] StateChanges changes();
    /// Somebody wrote into the definition under this build key.
    void noteChange(const QString &key);
    void noteChangeOfEverything();

    /// Enters the builds that a reply lists for a prefix.
    void merge(const ListedPrefix &listed);
    /// Removes from such a prefix what the reply does not list, where the counts differ.
    void dropWhatIsNotListed(const ListedPrefix &listed);
    /// How many definitions the prefixes list together.
    [[nodiscard]] qsizetype listed() const;

    [[nodiscard]] bool hasPendingCommands() const;
    /// Removes every command queue.
    void discardCommands();

private:
    int place(const QString &prefix, const QList<StoredBuild> &stored);
    DefinitionPtr mergedBuild(const ListedBuild &build);
    void noteChange(const DefinitionPtr &definition);
    void displace(const DefinitionPtr &definition);

    DefinitionIndex m_byPrefix;
    QHash<QString, DefinitionPtr> m_byBuild;
    QList<DefinitionPtr> m_changed;
    QSet<QString> m_changedPrefixes;
};

} // namespace brevok
