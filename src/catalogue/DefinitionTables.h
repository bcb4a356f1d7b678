// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PluginDefinition.h"
#include "catalogue/PluginList.h"

namespace brevok {

/// The two indexes of the plug-in definitions: by prefix, which is what is stored and shown, and by build,
/// which keeps one definition per build and never shrinks. Values only: no store, no service, no signals.
class DefinitionTables final {
public:
    /// What the elements of a reply are, for dropWhatIsNotListed(): prefix to build keys.
    using ListedKeys = QHash<QString, QStringList>;

    [[nodiscard]] const DefinitionIndex &byPrefix() const { return m_byPrefix; }
    [[nodiscard]] const QHash<QString, DefinitionPtr> &byBuild() const { return m_byBuild; }

    /// Takes in what stored() gave in an earlier run, from an empty state. An interrupted download is
    /// forgotten. What has a shape that nothing here writes is left out. @return how many values that were
    int load(const Record &stored);
    [[nodiscard]] Record stored() const;

    /// Enters the newest builds of a reply.
    ListedKeys merge(QList<ListedBuild> builds);
    /// Removes from the prefixes of the reply what it does not list, where the counts differ.
    void dropWhatIsNotListed(const ListedKeys &listed);

    [[nodiscard]] bool hasPendingCommands() const;
    /// Removes every command queue.
    void discardCommands();

private:
    DefinitionPtr entered(const Record &definition);
    DefinitionPtr mergedBuild(ListedBuild &build, const QString &key, const QJsonArray &alone);

    DefinitionIndex m_byPrefix;
    QHash<QString, DefinitionPtr> m_byBuild;
};

} // namespace brevok
