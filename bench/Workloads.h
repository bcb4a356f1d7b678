// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlertQueue.h"
#include "catalogue/BrevokPackages.h"
#include "support/FakePlatform.h"
#include "support/FakeServiceClient.h"
#include "support/ScratchStateStore.h"
#include "support/ScriptedAlertPresenter.h"
#include "targets/BrevokTargetApps.h"

#include <QTemporaryDir>

namespace brevok::bench {

/// Ends the program unless @p condition holds: a benchmark that measures nothing must not report.
void require(bool condition);

/// A list of plug-ins as the service sends it, with @p count elements.
[[nodiscard]] QByteArray pluginList(int count, int edition = 2);

/// Decodes, validates, merges and stores a plug-in list, with a state kept on disk.
class ListWorkload {
public:
    ListWorkload();
    /// Leaves what was stored, for an empty state.
    void startAnew();
    /// Takes the list into an empty state. @return how many prefixes are stored
    qsizetype run(const QByteArray &list);
    /// Takes another list, or the same, into the state of the last run.
    qsizetype runAgain(const QByteArray &list);
    /// What the last run stored, as a start of the program loads it.
    qsizetype load();

private:
    QTemporaryDir m_folder;
    testing::FakeServiceClient m_service;
    testing::ScriptedAlertPresenter m_presenter;
    testing::RecordingPanel m_panel;
    BrevokAlertQueue m_alerts{m_presenter, m_panel};
    std::optional<SqliteStateStore> m_state;
    std::optional<BrevokPlugins> m_plugins;
    int m_runs = 0;
};

/// Packages over targets, with a bundle of each in each installed on disk.
class StatusWorkload {
public:
    explicit StatusWorkload(int packageCount = 300, size_t targetCount = 10);
    /// Calculates every status again, with nothing changed on disk. @return how many packages are up to date
    qsizetype run();
    /// The same with packages made anew.
    qsizetype runFresh();
    /// Calculates every status as the first calculation after a start does.
    [[nodiscard]] qsizetype runFirst() const;
    /// The paths of all property lists that run() reads.
    [[nodiscard]] const QStringList &propertyLists() const { return m_propertyLists; }
    /// Reads each of them once with libplist alone. @return how many dictionaries were read
    qsizetype readPropertyLists() const;

private:
    void makePackages();

    QTemporaryDir m_folder;
    QStringList m_propertyLists;
    testing::ScratchStateStore m_scratch;
    testing::FakeServiceClient m_service;
    testing::FakeApplicationSearch m_search;
    testing::ScriptedAlertPresenter m_presenter;
    testing::RecordingPanel m_panel;
    std::optional<BrevokAlertQueue> m_alerts;
    std::optional<BrevokTargetApps> m_targets;
    std::optional<BrevokPlugins> m_plugins;
    std::optional<BrevokPackages> m_packages;
};

} // namespace brevok::bench
