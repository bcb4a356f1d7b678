// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The program that starts: it takes the application's name on the session bus, so that callers find it at
// once, and loads the application itself, with windows or without, from the library folder beside its own.

#include "platform/CopyLock.h"
#include "platform/StandardFolders.h"
#include "platform/StandardStreams.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>

#include <cstdio>
#include <string_view>

namespace {

constexpr int cannotStart = 1;

using Entry = int (*)(int argc, char **argv);

struct Wishes {
    bool headless = false;
    bool background = false;
    bool onlyPrints = false;
};

// The application reads its options itself; here only counts what has to be known before it is loaded.
Wishes wishesFrom(int argc, char **argv)
{
    Wishes wishes;
    for (int i = 1; i < argc; ++i) {
        std::string_view word(argv[i]);
        if (word.substr(0, 2) == "--") {
            word.remove_prefix(1);
        }
        wishes.headless = wishes.headless || word == "-headless";
        wishes.background = wishes.background || word == "-background";
        wishes.onlyPrints = wishes.onlyPrints || word == "-version" || word == "-help" || word == "-h";
    }
    return wishes;
}

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        || qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

int runModule(const QString &folder, const char *name, int argc, char **argv)
{
    QLibrary module(folder + QStringLiteral("/../lib/tolvane-brevok/") + QLatin1StringView(name));
    const auto entry = reinterpret_cast<Entry>(module.resolve("runTolvaneBrevok"));
    if (entry == nullptr) {
        std::fprintf(stderr, "tolvane-brevok: %s\n", qUtf8Printable(module.errorString()));
        return cannotStart;
    }
    return entry(argc, argv);
}

int runWithoutWindows(const Wishes &wishes, int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    brevok::CopyLock lock(brevok::quickLockOfFiles(brevok::standardFoldersForUser()));
    if (!wishes.onlyPrints && lock.take(true) == brevok::CopyLock::State::Ours) {
        // Calls that arrive from now on wait until the event loop runs; the application learns what came of
        // this when it asks for the lock and the name again.
        QDBusConnection::sessionBus().registerService(QStringLiteral(BREVOK_IDENTIFIER));
    }
    return runModule(QCoreApplication::applicationDirPath(), "tolvane-brevok-core.so", argc, argv);
}

QString ownFolder(int argc, char **argv)
{
    // Without an application object where the system tells: the one with windows is made by the module.
    if (const QString program = QFile::symLinkTarget(QStringLiteral("/proc/self/exe")); !program.isEmpty()) {
        return QFileInfo(program).path();
    }
    const QCoreApplication application(argc, argv);
    return QCoreApplication::applicationDirPath();
}

} // namespace

int main(int argc, char *argv[])
{
    brevok::keepStandardStreams();
    const Wishes wishes = wishesFrom(argc, argv);
    if (wishes.headless || wishes.onlyPrints || (wishes.background && !hasDisplay())) {
        return runWithoutWindows(wishes, argc, argv);
    }
    return runModule(ownFolder(argc, argv), "tolvane-brevok-desktop.so", argc, argv);
}
