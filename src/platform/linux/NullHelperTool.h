// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HelperTool.h"

namespace brevok {

/// A system without a privileged helper: none answers and the right to install one is never given, so that
/// the program does the work with the user's own rights.
class NullHelperTool final : public HelperTool {
public:
    /// The system's status for "internal error", which is what a missing authorization service amounts to.
    static constexpr int unavailable = -60008;

    [[nodiscard]] Connection connection() override { return {}; }
    [[nodiscard]] int createAuthorization() override { return unavailable; }
    [[nodiscard]] int makeExternalForm() override { return unavailable; }
    [[nodiscard]] bool removeJob(std::optional<BrevokError> *error) override;
    [[nodiscard]] bool bless(std::optional<BrevokError> *error) override;
};

} // namespace brevok
