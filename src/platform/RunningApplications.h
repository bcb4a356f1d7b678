// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

namespace brevok {

/// One application that runs in the user's session.
struct RunningApplication {
    qint64 processId = 0;
    quint64 startTime = 0; ///< with the process id, identifies the process (ids are used again)
    QString localizedName;
    QString bundlePath; ///< without a trailing slash
    QString bundleVersion; ///< "CFBundleVersion", empty when missing
};

/// The applications that run beside this one. Any thread; every call looks afresh.
class RunningApplications {
public:
    RunningApplications() = default;
    virtual ~RunningApplications() = default;
    Q_DISABLE_COPY_MOVE(RunningApplications)

    /// All of them but this process, in order of process id. A process whose executable lies inside a
    /// `NAME.app` counts as that application; copies of this program count under its display name.
    [[nodiscard]] virtual QList<RunningApplication> list() const = 0;

    /// Asks that process, and no other, to quit. @return false when it is gone, was replaced, or is not the
    /// user's.
    virtual bool terminate(const RunningApplication &application) = 0;
};

} // namespace brevok
