// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "control/ControlCall.h"
#include "install/InstallFlow.h"

#include <QObject>

#include <functional>

namespace brevok {

class UpdateRun;

/// The calls that check for, install, update and remove packages. Each is answered when its work has ended,
/// the statuses are known again, and everything is stored.
class PackageCalls final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageCalls)

public:
    PackageCalls(BrevokPlugins &plugins, BrevokPackages &packages, InstallFlow &flow, UpdateRun &updates,
        StateStore &state, QObject *parent);
    ~PackageCalls() override;

    void check(const ControlCall &call);
    void install(const ControlCall &call, const QStringList &prefixes);
    void updateAll(const ControlCall &call);
    void remove(const ControlCall &call, const QStringList &prefixes);
    /// Answers the question about unfinished actions, too.
    void discard(const ControlCall &call);

private:
    /// What a call is answered with.
    struct Answer {
        QStringList failures{};
        std::optional<InstallOutcome> outcome{}; ///< of a call that installs or removes
    };
    using Ended = std::function<void(const Answer &part)>;

    [[nodiscard]] bool refusedBeforeAnswer(const ControlCall &call) const;
    [[nodiscard]] bool refusedUnknown(const ControlCall &call, const QStringList &prefixes) const;
    void runForEach(const ControlCall &call, const QStringList &prefixes, bool remove);
    /// Returns a function; @p call is answered when that has been called @p count times.
    [[nodiscard]] Ended answerAfter(const ControlCall &call, qsizetype count);
    void answerWhenSettled(const ControlCall &call, const Answer &all);

    BrevokPlugins &m_plugins;
    BrevokPackages &m_packages;
    InstallFlow &m_flow;
    UpdateRun &m_updates;
    StateStore &m_state;
};

} // namespace brevok
