// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QObject>

#include <functional>
#include <optional>

namespace brevok {

/// When this desktop starts the program's nightly work. Main thread; asking never blocks.
class TimerRuns {
public:
    /// The time of the next run; nothing where the desktop runs no such timer, or it is switched off.
    using Answer = std::function<void(const std::optional<QDateTime> &next)>;

    TimerRuns() = default;
    virtual ~TimerRuns() = default;
    Q_DISABLE_COPY_MOVE(TimerRuns)

    /// Calls @p answered later, while @p context lives.
    virtual void askNext(QObject *context, Answer answered) = 0;
};

} // namespace brevok
