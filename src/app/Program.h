// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Options.h"

#include <variant>

namespace brevok {

class AlertPresenter;
class Surfaces;

/// The options of this process, or the exit status with which it ends at once, having printed why.
[[nodiscard]] std::variant<Options, int> readCommandLine(int argc, char **argv);

/// Runs the application until it quits. Needs the application object; main thread.
/// @return the exit status of the process
[[nodiscard]] int runApplication(const Options &options, AlertPresenter &presenter, Surfaces &surfaces);

} // namespace brevok
