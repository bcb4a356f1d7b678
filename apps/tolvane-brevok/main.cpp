// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/BrevokAppDelegate.h"
#include "app/HeadlessSurfaces.h"
#include "app/Options.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "platform/Platform.h"
#include "platform/TerminationRequests.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

constexpr int usageError = 2;
constexpr int patienceAtQuitMs = 5000;

int run(const Options &options, const MainBundle &bundle)
{
    const TerminationRequests requests;
    const StandardFolders folders = standardFoldersForUser();
    Platform platform = createPlatform(bundle, folders, options.applications);
    HeadlessAlertPresenter presenter;
    HeadlessSurfaces surfaces;
    BrevokAppDelegate delegate({bundle, platform, presenter, surfaces, folders, options.service});
    QObject::connect(
        &requests, &TerminationRequests::requested, &delegate, &BrevokAppDelegate::terminateSoon);
    delegate.applicationDidFinishLaunching();
    const int status = QCoreApplication::exec();
    if (!finishBackgroundWork(patienceAtQuitMs)) {
        // An install that takes longer is cut off as by a crash: its command stays recorded for the next
        // start.
        std::_Exit(status);
    }
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    installLogFormat();
    const QCoreApplication application(argc, argv);
    const MainBundle bundle = MainBundle::ofRunningProgram();
    const auto parsed = parseOptions(QCoreApplication::arguments(), QProcessEnvironment::systemEnvironment(),
        {QStringLiteral(BREVOK_DEFAULT_SERVICE_URL), QStringLiteral(BREVOK_DEFAULT_REACHABILITY_HOST),
            bundle.shortVersion()});
    if (const auto *text = std::get_if<PrintAndExit>(&parsed)) {
        std::fputs(qUtf8Printable(text->text), stdout);
        return 0;
    }
    if (const auto *error = std::get_if<OptionError>(&parsed)) {
        std::fprintf(stderr, "tolvane-brevok: %s\n", qUtf8Printable(error->message));
        return usageError;
    }
    return run(std::get<Options>(parsed), bundle);
}
