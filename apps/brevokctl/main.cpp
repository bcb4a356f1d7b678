// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandRunner.h"
#include "platform/Terminal.h"

#include <QCoreApplication>

#include <cstdio>

using namespace brevok;
using namespace Qt::StringLiterals;
using client::Command;
using client::ExitStatus;

namespace {

QString password()
{
    const QString given = qEnvironmentVariable("BREVOK_PASSWORD");
    return given.isEmpty() ? readSecret(u"Password: "_s) : given;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto parsed = client::parseCommandLine(QCoreApplication::arguments().sliced(1));
    if (const auto *error = std::get_if<client::UsageError>(&parsed)) {
        std::fprintf(stderr, "brevokctl: %s\n", qUtf8Printable(error->message));
        return static_cast<int>(ExitStatus::Usage);
    }
    const auto &command = std::get<Command>(parsed);
    if (command.verb == Command::Verb::Help) {
        std::fputs(qUtf8Printable(client::helpText()), stdout);
        return 0;
    }
    if (command.verb == Command::Verb::Version) {
        std::puts("brevokctl " BREVOK_VERSION);
        return 0;
    }
    client::CommandRunner runner(command, password, standardErrorIsTerminal() && !command.json);
    QObject::connect(
        &runner, &client::CommandRunner::finished, &application,
        [](ExitStatus status) { QCoreApplication::exit(static_cast<int>(status)); }, Qt::QueuedConnection);
    runner.start();
    return QCoreApplication::exec();
}
