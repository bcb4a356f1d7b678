// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Program.h"

#include "app/BrevokAppDelegate.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "platform/Platform.h"
#include "platform/SettingsStore.h"
#include "platform/StandardFolders.h"
#include "platform/StateStore.h"
#include "platform/TerminationRequests.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

namespace brevok {

namespace {

constexpr int usageError = 2;

} // namespace

std::variant<Options, int> readCommandLine(int argc, char **argv)
{
    installLogFormat();
    QStringList words;
    for (int i = 0; i < argc; ++i) {
        words.append(QString::fromLocal8Bit(argv[i]));
    }
    auto parsed = parseOptions(words, QProcessEnvironment::systemEnvironment(),
        {QStringLiteral(BREVOK_DEFAULT_SERVICE_URL), QStringLiteral(BREVOK_DEFAULT_REACHABILITY_HOST),
            QStringLiteral(BREVOK_VERSION), administratorsPolicyFile()});
    if (const auto *text = std::get_if<PrintAndExit>(&parsed)) {
        std::fputs(qUtf8Printable(text->text), stdout);
        return EXIT_SUCCESS;
    }
    if (const auto *error = std::get_if<OptionError>(&parsed)) {
        std::fprintf(stderr, "tolvane-brevok: %s\n", qUtf8Printable(error->message));
        return usageError;
    }
    return std::get<Options>(std::move(parsed));
}

int runApplication(const Options &options, AlertPresenter &presenter, Surfaces &surfaces)
{
    const TerminationRequests requests;
    const MainBundle bundle = MainBundle::ofRunningProgram();
    const StandardFolders folders = standardFoldersForUser();
    Platform platform = createPlatform(bundle, folders, options.applications);
    BrevokAppDelegate delegate({bundle, platform, presenter, surfaces, folders, options.service,
        options.lockedSettings, administratorsPolicyFile(), options.background, options.headless});
    QObject::connect(
        &requests, &TerminationRequests::requested, &delegate, &BrevokAppDelegate::terminateSoon);
    QObject::connect(
        &requests, &TerminationRequests::handOverRequested, &delegate, &BrevokAppDelegate::handOver);
    delegate.applicationDidFinishLaunching();
    const int status = QCoreApplication::exec();
    const bool worked = finishBackgroundWork(patienceAtQuitMs);
    // A copy that gave way has none.
    const bool stored = !platform.state || platform.state->finish(patienceAtQuitMs);
    const bool saved = !platform.settings || platform.settings->finish(patienceAtQuitMs);
    if (!worked || !stored || !saved) {
        // An install that takes longer is cut off as by a crash: its command stays recorded for the next
        // start. A disk that does not answer would never let go.
        std::_Exit(status);
    }
    return status;
}

} // namespace brevok
