// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandLine.h"

#include <QCommandLineParser>
#include <QHash>

#include <array>
#include <optional>

namespace brevok::client {

using namespace Qt::StringLiterals;
using Verb = Command::Verb;

namespace {

struct Form {
    Verb verb;
    qsizetype least; ///< arguments
    qsizetype most; ///< -1 for any number
    const char *wants;
};

const QHash<QString, Form> &forms()
{
    static const QHash<QString, Form> forms{
        {u"status"_s, {Verb::Status, 0, 0, "no argument"}},
        {u"signin"_s, {Verb::SignIn, 1, 1, "an email address"}},
        {u"signout"_s, {Verb::SignOut, 0, 0, "no argument"}},
        {u"check"_s, {Verb::Check, 0, 0, "no argument"}},
        {u"install"_s, {Verb::Install, 1, -1, "one or more prefixes"}},
        {u"update"_s, {Verb::Update, 1, -1, "one or more prefixes, or --all"}},
        {u"remove"_s, {Verb::Remove, 1, -1, "one or more prefixes"}},
        {u"targets"_s, {Verb::Targets, 0, 0, "no argument, or add, remove, enable, disable and a path"}},
        {u"targets add"_s, {Verb::AddTarget, 1, 1, "a path, --type and --version"}},
        {u"targets remove"_s, {Verb::RemoveTarget, 1, 1, "a path"}},
        {u"targets enable"_s, {Verb::EnableTarget, 1, 1, "a path"}},
        {u"targets disable"_s, {Verb::DisableTarget, 1, 1, "a path"}},
        {u"settings"_s, {Verb::Settings, 0, 0, "no argument, or get KEY, or set KEY VALUE"}},
        {u"settings get"_s, {Verb::GetSetting, 1, 1, "a key"}},
        {u"settings set"_s, {Verb::SetSetting, 2, 2, "a key and a value"}},
        {u"converge"_s, {Verb::Converge, 0, 0, "no argument"}},
        {u"metrics"_s, {Verb::Metrics, 0, 0, "no argument"}},
        {u"discard"_s, {Verb::Discard, 0, 0, "no argument"}},
        {u"report"_s, {Verb::Report, 0, 0, "--email and --note, or --show"}},
        {u"usage"_s, {Verb::ShowUsage, 0, 0, "--show"}},
        {u"open-panel"_s, {Verb::OpenPanel, 0, 0, "no argument"}},
        {u"quit"_s, {Verb::Quit, 0, 0, "no argument"}},
    };
    return forms;
}

// An option that only some commands take.
struct OwnOption {
    QLatin1StringView name;
    std::array<Verb, 2> takenBy;
    const char *owner;
};

constexpr std::array ownOptions{
    OwnOption{QLatin1StringView("all"), {Verb::Update, Verb::Update}, "update"},
    OwnOption{QLatin1StringView("dry-run"), {Verb::Converge, Verb::Converge}, "converge"},
    OwnOption{QLatin1StringView("file"), {Verb::Metrics, Verb::Metrics}, "metrics"},
    OwnOption{QLatin1StringView("type"), {Verb::AddTarget, Verb::AddTarget}, "targets add"},
    OwnOption{QLatin1StringView("version"), {Verb::AddTarget, Verb::AddTarget}, "targets add"},
    OwnOption{QLatin1StringView("email"), {Verb::Report, Verb::Report}, "report"},
    OwnOption{QLatin1StringView("note"), {Verb::Report, Verb::Report}, "report"},
    OwnOption{QLatin1StringView("show"), {Verb::Report, Verb::ShowUsage}, "report and usage"},
};

void addOptions(QCommandLineParser &parser)
{
    const QString value = u"VALUE"_s;
    parser.addOptions({{u"json"_s, {}}, {u"timeout"_s, {}, value}, {u"all"_s, {}}, {u"dry-run"_s, {}},
        {u"file"_s, {}, value}, {u"type"_s, {}, value}, {u"version"_s, {}, value}, {u"email"_s, {}, value},
        {u"note"_s, {}, value}, {u"show"_s, {}}, {{u"help"_s, u"h"_s}, {}}});
}

std::optional<UsageError> misplacedOption(const QCommandLineParser &parser, Verb verb)
{
    for (const OwnOption &option : ownOptions) {
        if (parser.isSet(option.name) && verb != option.takenBy[0] && verb != option.takenBy[1]) {
            return UsageError{u"--%1 belongs to %2"_s.arg(option.name, QLatin1StringView(option.owner))};
        }
    }
    return std::nullopt;
}

// A report is shown with whatever is known of it, but sent only with both texts given, be they empty.
std::optional<UsageError> missingOption(const QCommandLineParser &parser, Verb verb)
{
    const auto missing = [&](const QString &command, const QStringList &names) -> std::optional<UsageError> {
        for (const QString &name : names) {
            if (!parser.isSet(name)) {
                return UsageError{u"%1 needs --%2"_s.arg(command, name)};
            }
        }
        return std::nullopt;
    };
    switch (verb) {
    case Verb::AddTarget:
        return missing(u"targets add"_s, {u"type"_s, u"version"_s});
    case Verb::Report:
        return parser.isSet(u"show"_s) ? std::nullopt : missing(u"report"_s, {u"email"_s, u"note"_s});
    case Verb::ShowUsage:
        return missing(u"usage"_s, {u"show"_s});
    default:
        return std::nullopt;
    }
}

std::optional<UsageError> readOptions(const QCommandLineParser &parser, Command &command)
{
    command.type = parser.value(u"type"_s);
    command.version = parser.value(u"version"_s);
    command.email = parser.value(u"email"_s);
    command.note = parser.value(u"note"_s);
    command.file = parser.value(u"file"_s);
    command.dryRun = parser.isSet(u"dry-run"_s);
    command.json = parser.isSet(u"json"_s);
    if (command.verb == Verb::AddTarget && command.type != u"InDesign" && command.type != u"InCopy") {
        return UsageError{u"--type is InDesign or InCopy, not '%1'"_s.arg(command.type)};
    }
    if (command.verb == Verb::Report && parser.isSet(u"show"_s)) {
        command.verb = Verb::ShowReport;
    }
    if (parser.isSet(u"timeout"_s)) {
        bool isNumber = false;
        const QString seconds = parser.value(u"timeout"_s);
        command.timeoutSeconds = seconds.toInt(&isNumber);
        if (!isNumber || command.timeoutSeconds < 1 || command.timeoutSeconds > 2000000) {
            return UsageError{u"--timeout takes seconds from 1, not '%1'"_s.arg(seconds)};
        }
    }
    return std::nullopt;
}

std::variant<Command, UsageError> readCommand(const QCommandLineParser &parser)
{
    QStringList words = parser.positionalArguments();
    if (words.isEmpty()) {
        return UsageError{u"no command given (see --help)"_s};
    }
    QString name = words.takeFirst();
    if (!words.isEmpty() && forms().contains(name + u' ' + words.first())) {
        name += u' ' + words.takeFirst();
    }
    const auto form = forms().constFind(name);
    if (form == forms().cend()) {
        return UsageError{u"unknown command '%1' (see --help)"_s.arg(name)};
    }
    Command command;
    command.verb = form->verb;
    command.arguments = words;
    if (auto error = misplacedOption(parser, command.verb)) {
        return *error;
    }
    if (parser.isSet(u"all"_s)) {
        if (!words.isEmpty()) {
            return UsageError{u"--all stands for every prefix: name none beside it"_s};
        }
        command.verb = Verb::UpdateAll;
    } else if (words.size() < form->least || (form->most >= 0 && words.size() > form->most)) {
        return UsageError{u"%1 takes %2"_s.arg(name, QLatin1StringView(form->wants))};
    }
    if (auto error = missingOption(parser, command.verb)) {
        return *error;
    }
    if (auto error = readOptions(parser, command)) {
        return *error;
    }
    return command;
}

} // namespace

std::variant<Command, UsageError> parseCommandLine(const QStringList &words)
{
    QCommandLineParser parser;
    addOptions(parser);
    const bool understood = parser.parse(QStringList{u"brevokctl"_s} + words);
    Command command;
    if (parser.unknownOptionNames().isEmpty()) {
        if (parser.isSet(u"help"_s)) {
            command.verb = Verb::Help;
            return command;
        }
        // Without a command it is no target's version, and has no value.
        if (parser.isSet(u"version"_s) && parser.positionalArguments().isEmpty()) {
            command.verb = Verb::Version;
            return command;
        }
    }
    auto result = understood ? readCommand(parser) : UsageError{parser.errorText().section(u'\n', 0, 0)};
    if (auto *error = std::get_if<UsageError>(&result)) {
        error->json = parser.isSet(u"json"_s);
    }
    return result;
}

QString helpText()
{
    return uR"(usage: brevokctl [--json] [--timeout SECONDS] COMMAND

  status                      session, packages with their status, targets, installer
  signin EMAIL                password from BREVOK_PASSWORD, else from standard input
  signout
  check                       look for plug-in updates now
  install PREFIX...           install packages into every enabled target
  update PREFIX... | --all    update packages
  remove PREFIX...            remove packages
  targets                     list the install targets
  targets add PATH --type InDesign|InCopy --version N
  targets remove|enable|disable PATH
  settings                    list the settings
  settings get KEY
  settings set KEY VALUE
  converge [--dry-run]        bring this machine to what its owner wants, asking nobody
  metrics [--file PATH]       what a fleet's monitoring reads, printed or written
  discard                     forget unfinished install and remove actions
  report --email ADDRESS --note TEXT
                              send a bug report with logs and crash reports
  report --show [--email ADDRESS] [--note TEXT]
                              print what would be sent, send nothing
  usage --show                print what the daily usage report would be
  open-panel
  quit

--json prints one JSON document. --timeout (default 600) bounds the wait for an answer.
Exit status: 0 done, 1 the operation failed, 2 usage, 3 the application cannot be reached.
)"_s;
}

} // namespace brevok::client
