// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The application with its windows, as the launcher loads it.

#include "app/desktop/DesktopSession.h"
#include "app/desktop/DesktopSurfaces.h"
#include "app/HeadlessSurfaces.h"
#include "app/Program.h"
#include "ui/alerts/WidgetAlertPresenter.h"

#include <QApplication>

#include <cstdio>
#include <memory>
#include <vector>

using namespace brevok;

namespace {

constexpr int noDisplay = 1;

int runWithWindows(const Options &options)
{
    prepareApplication();
    WidgetAlertPresenter presenter;
    DesktopSurfaces surfaces(presenter);
    return runApplication(options, presenter, surfaces);
}

// What was started for a display that is not there works on without one; who named none is told how to.
int runWithoutDisplay(const NoDisplay &problem, Options options)
{
    std::fprintf(stderr, "tolvane-brevok: %s%s\n", qUtf8Printable(problem.line),
        problem.named ? "; running without windows" : "");
    if (!problem.named) {
        return noDisplay;
    }
    options.headless = true;
    HeadlessAlertPresenter presenter;
    HeadlessSurfaces surfaces;
    return runApplication(options, presenter, surfaces);
}

} // namespace

/// Runs the application until it quits. @return the exit status
extern "C" Q_DECL_EXPORT int runTolvaneBrevok(int argc, char **argv)
{
    std::vector<char *> words(argv, argv + argc); // the application object takes out what is its own
    const auto problem = prepareDisplay();
    std::unique_ptr<QCoreApplication> application;
    if (problem) {
        application = std::make_unique<QCoreApplication>(argc, argv);
    } else {
        application = std::make_unique<QApplication>(argc, argv);
    }
    const auto commandLine = readCommandLine(static_cast<int>(words.size()), words.data());
    if (const int *status = std::get_if<int>(&commandLine)) {
        return *status;
    }
    const auto &options = std::get<Options>(commandLine);
    return problem ? runWithoutDisplay(*problem, options) : runWithWindows(options);
}
