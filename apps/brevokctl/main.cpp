// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandRunner.h"
#include "client/Output.h"
#include "platform/StandardStreams.h"
#include "platform/Terminal.h"

#include <QCoreApplication>

#include <cstdlib>
#include <tuple>

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

ExitStatus statusOfPrinting(const QString &text)
{
    return client::printResult(text) ? ExitStatus::Done : ExitStatus::Failed;
}

ExitStatus complain(const client::UsageError &error)
{
    client::printComplaint(error.message);
    if (error.json) {
        std::ignore = client::printResult(client::failuresText({error.message}));
    }
    return ExitStatus::Usage;
}

ExitStatus run(const Command &command)
{
    if (command.verb == Command::Verb::Help) {
        return statusOfPrinting(client::helpText());
    }
    if (command.verb == Command::Verb::Version) {
        return statusOfPrinting(u"brevokctl " BREVOK_VERSION "\n"_s);
    }
    client::CommandRunner runner(command, password, standardErrorIsTerminal() && !command.json);
    QObject::connect(
        &runner, &client::CommandRunner::finished, &runner,
        [](ExitStatus status) { QCoreApplication::exit(static_cast<int>(status)); }, Qt::QueuedConnection);
    runner.start();
    return static_cast<ExitStatus>(QCoreApplication::exec());
}

} // namespace

int main(int argc, char *argv[])
{
    keepStandardStreams();
    outliveReaders();
    const QCoreApplication application(argc, argv);
    const auto parsed = client::parseCommandLine(QCoreApplication::arguments().sliced(1));
    const auto *error = std::get_if<client::UsageError>(&parsed);
    const ExitStatus status = error != nullptr ? complain(*error) : run(std::get<Command>(parsed));
    // All is written. At an ordinary end the bus library's thread may still use what is being taken down, and
    // complains on standard error.
    std::_Exit(static_cast<int>(status));
}
