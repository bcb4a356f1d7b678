// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The application's own end of the helper, one operation a run: helper_client SET-UP AUTHORIZER OPERATION
// [PATH]..., the first two being commands with their words. Says on standard output what came of it, then
// what was logged.

#include "../../install/InstallRig.h"
#include "platform/linux/privileges/BusHelperTool.h"

#include <QCoreApplication>

#include <cstdio>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

void say(bool answer, const std::optional<BrevokError> &error)
{
    std::printf("%s %s\n", answer ? "yes" : "no", error ? qPrintable(error->description) : "");
}

void carryOut(BrevokAppInstaller &installer, const QStringList &words)
{
    std::optional<BrevokError> error;
    const std::shared_ptr<InstallerOperations> operations = installer.installer();
    if (words[0] == u"install"_s) {
        say(operations->installPluginFromSource(words[1], words[2], ::getuid(), &error), error);
    } else if (words[0] == u"remove"_s) {
        say(operations->removeItemAtPath(words[1], &error), error);
    } else if (words[0] == u"exists"_s) {
        say(operations->fileExistsAtPath(words[1]), error);
    } else {
        std::printf("%d\n", operations->version());
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments().mid(1);
    testing::InstallRig rig;
    BusHelperTool helper(words[0].split(u' ', Qt::SkipEmptyParts), words[1].split(u' ', Qt::SkipEmptyParts));
    BrevokAppInstaller installer({rig.files, helper, rig.applications, rig.state, rig.alerts, rig.plugins,
        rig.packages, rig.workspace(), ::getuid()});
    installer.checkUpdateHelper(&installer, [&](bool) {
        inBackground([&installer, words] {
            carryOut(installer, words.mid(2));
            onMain(QCoreApplication::instance(), [] { QCoreApplication::quit(); });
        });
    });
    const int status = QCoreApplication::exec();
    for (const QString &line : testing::LogCapture::lines()) {
        std::printf("log: %s\n", qPrintable(line));
    }
    return status;
}
