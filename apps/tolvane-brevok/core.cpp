// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The application without windows, as the launcher loads it.

#include "alerts/AlertPresenter.h"
#include "app/HeadlessSurfaces.h"
#include "app/Program.h"

using namespace brevok;

/// Runs the application until it quits; the launcher made the application object. @return the exit status
extern "C" Q_DECL_EXPORT int runTolvaneBrevok(int argc, char **argv)
{
    const auto commandLine = readCommandLine(argc, argv);
    if (const int *status = std::get_if<int>(&commandLine)) {
        return *status;
    }
    HeadlessAlertPresenter presenter;
    HeadlessSurfaces surfaces;
    Options options = std::get<Options>(commandLine);
    options.headless = true; // also when it was found that there is no display
    return runApplication(options, presenter, surfaces);
}
