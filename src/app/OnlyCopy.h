// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/CopyLock.h"

#include <QTimer>

#include <functional>

namespace brevok {

class MainBundle;
class RunningApplications;
class SessionBus;

/// Finds out whether this copy of the program is the one that stays, before it touches any file of the
/// user's. Main thread.
///
/// Of the copies that would work on the same files the lock lets one pass; of the copies on one bus the name
/// does. A copy with windows asks one without them to leave and waits for its end. A copy for callers waits
/// for a moment for one without windows, which leaves when its own bus has ended.
class OnlyCopy final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(OnlyCopy)

public:
    struct Collaborators {
        SessionBus &bus;
        const RunningApplications &applications;
        const MainBundle &bundle;
        const StandardFolders &folders;
        bool headless = false;
        bool forCallers = false; ///< started by the bus, for those who call on it
    };

    /// References outlive this object.
    explicit OnlyCopy(const Collaborators &with, QObject *parent = nullptr);
    ~OnlyCopy() override;

    /// Runs @p decided once with whether this copy stays: before this returns, unless another one has to end.
    void decide(std::function<void(bool stays)> decided);

private:
    void begin();
    void takeName();
    void decideWithoutBus();
    void giveWayTo(CopyLock &lock);
    void end(bool stays);

    Collaborators m_with;
    CopyLock m_files;
    CopyLock m_session;
    QTimer m_patience; // with another copy that may just be ending
    std::function<void(bool)> m_decided;
};

} // namespace brevok
