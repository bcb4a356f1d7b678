// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/RunningApplications.h"

#include <QByteArray>

namespace brevok {

class MainBundle;

/// The running applications as the process table shows them: of all users, as far as their executables can be
/// seen.
class ProcRunningApplications final : public RunningApplications {
public:
    explicit ProcRunningApplications(const MainBundle &mainBundle);

    [[nodiscard]] QList<RunningApplication> list() const override;
    bool terminate(const RunningApplication &application) override;

private:
    const QByteArray m_ownExecutableName; // "/NAME"
};

} // namespace brevok
