// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/TimerRuns.h"

namespace brevok::testing {

/// Answers at once.
class FakeTimerRuns final : public TimerRuns {
public:
    std::optional<QDateTime> next;

    void askNext(QObject * /*context*/, Answer answered) override { answered(next); }
};

} // namespace brevok::testing
