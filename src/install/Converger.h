// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"
#include "foundation/Tasks.h"
#include "install/ConvergeOutcome.h"
#include "install/ConvergePlan.h"
#include "install/InstallFlow.h"

#include <QObject>

#include <functional>
#include <optional>
#include <variant>

namespace brevok {

class BrevokSession;
class StateStore;

/// Brings the machine to what its owner wants of its packages, without asking or telling anybody: looks at
/// the lists, removes what is forbidden, installs what is required, updates what waits where that is wanted.
/// Main thread. One run at a time: a run that is asked for meanwhile waits for it, then looks for itself.
class Converger final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Converger)

public:
    /// The wishes, or a line that says why they cannot be known.
    using Wishes = std::variant<PackageWishes, QString>;

    /// References outlive this object.
    struct Collaborators {
        BrevokSession &session;
        BrevokPlugins &plugins;
        BrevokPackages &packages;
        InstallFlow &flow;
        StateStore &state;
        std::function<Wishes()> readWishes; ///< asked anew for each run; reads files, so in the background
        std::function<bool()> autoUpdate; ///< what the person chose
    };
    using Done = std::function<void(const ConvergeOutcome &)>;

    explicit Converger(Collaborators collaborators, QObject *parent = nullptr);
    ~Converger() override;

    /// @p done hears, later than the call, what became of it, when all of that is stored. A @p foreseen run
    /// changes nothing but the lists.
    void run(bool foreseen, const Done &done);

Q_SIGNALS:
    /// A run that was not only foreseen ended.
    void converged(const brevok::ConvergeOutcome &outcome);

private:
    struct Run {
        bool foreseen = false;
        Done done{};
    };
    struct Step {
        QString prefix;
        bool removes = false;
    };

    void next();
    void begin();
    void wishesRead(const Wishes &wishes);
    void checkLists();
    void listsChecked();
    void plan();
    void step();
    void stepEnded(const Step &step, const InstallOutcome &outcome);
    void finish();
    [[nodiscard]] QString nameOf(const QString &prefix) const;

    Collaborators m_with;
    QList<Run> m_runs; ///< the first is under way
    PackageWishes m_wishes; ///< of the run under way, as are those below
    ConvergeOutcome m_outcome;
    std::optional<BrevokError> m_pluginsFailure; ///< why the list could not be read this time
    std::optional<BrevokError> m_packagesFailure;
    QList<Step> m_steps; ///< that are left
};

} // namespace brevok
