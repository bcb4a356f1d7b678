// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandLine.h"

#include <QHash>

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

const QHash<QString, Form> &simpleForms()
{
    static const QHash<QString, Form> forms{
        {u"status"_s, {Verb::Status, 0, 0, "no argument"}},
        {u"signin"_s, {Verb::SignIn, 1, 1, "an e-mail address"}},
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
        {u"discard"_s, {Verb::Discard, 0, 0, "no argument"}},
        {u"report"_s, {Verb::Report, 0, 0, "--email and --note, or --show"}},
        {u"usage"_s, {Verb::ShowUsage, 0, 0, "--show"}},
        {u"open-panel"_s, {Verb::OpenPanel, 0, 0, "no argument"}},
        {u"quit"_s, {Verb::Quit, 0, 0, "no argument"}},
    };
    return forms;
}

// The options of a call, taken out of its words.
struct Options {
    QStringList words;
    QHash<QString, QString> values;
    bool json = false;
    bool all = false;
    bool show = false;
    bool help = false;
    bool programVersion = false;
};

bool takesValue(const QString &option)
{
    return QStringList{u"--timeout"_s, u"--type"_s, u"--version"_s, u"--email"_s, u"--note"_s}.contains(
        option);
}

std::optional<UsageError> takeOptions(const QStringList &given, Options &options)
{
    for (qsizetype i = 0; i < given.size(); ++i) {
        const QString &word = given[i];
        const QString name = word.section(u'=', 0, 0);
        if (word == u"--") {
            options.words += given.sliced(i + 1);
            break;
        }
        if (word == u"--json") {
            options.json = true;
        } else if (word == u"--all") {
            options.all = true;
        } else if (word == u"--show") {
            options.show = true;
        } else if (word == u"--help" || word == u"-h") {
            options.help = true;
        } else if (word == u"--version" && options.words.isEmpty()) {
            options.programVersion = true;
        } else if (takesValue(name)) {
            if (!word.contains(u'=') && i + 1 == given.size()) {
                return UsageError{u"%1 needs a value"_s.arg(name)};
            }
            options.values.insert(name, word.contains(u'=') ? word.section(u'=', 1) : given[++i]);
        } else if (word.startsWith(u'-') && word.size() > 1) {
            return UsageError{u"unknown option '%1'"_s.arg(word)};
        } else {
            options.words.append(word);
        }
    }
    return std::nullopt;
}

// A report is shown with whatever is known of it, but sent only with both texts given, be they empty.
std::optional<UsageError> checkReportOptions(const Options &options, Command &command)
{
    const bool reports = command.verb == Verb::Report;
    for (const QString &name : {u"--email"_s, u"--note"_s}) {
        if (options.values.contains(name) && !reports) {
            return UsageError{u"%1 belongs to report"_s.arg(name)};
        }
        if (!options.values.contains(name) && reports && !options.show) {
            return UsageError{u"report needs %1"_s.arg(name)};
        }
    }
    if (options.show != (command.verb == Verb::ShowUsage) && !reports) {
        return UsageError{options.show ? u"--show belongs to report and usage"_s : u"usage takes --show"_s};
    }
    command.email = options.values.value(u"--email"_s);
    command.note = options.values.value(u"--note"_s);
    if (reports && options.show) {
        command.verb = Verb::ShowReport;
    }
    return std::nullopt;
}

std::optional<UsageError> checkOptions(const Options &options, Command &command)
{
    const bool adds = command.verb == Verb::AddTarget;
    for (const QString &name : {u"--type"_s, u"--version"_s}) {
        if (options.values.contains(name) != adds) {
            return UsageError{
                adds ? u"targets add needs %1"_s.arg(name) : u"%1 belongs to targets add"_s.arg(name)};
        }
    }
    command.type = options.values.value(u"--type"_s);
    command.version = options.values.value(u"--version"_s);
    if (adds && command.type != u"InDesign" && command.type != u"InCopy") {
        return UsageError{u"--type is InDesign or InCopy, not '%1'"_s.arg(command.type)};
    }
    command.json = options.json;
    if (options.values.contains(u"--timeout"_s)) {
        bool isNumber = false;
        command.timeoutSeconds = options.values.value(u"--timeout"_s).toInt(&isNumber);
        if (!isNumber || command.timeoutSeconds < 1 || command.timeoutSeconds > 2000000) {
            return UsageError{
                u"--timeout takes seconds from 1, not '%1'"_s.arg(options.values.value(u"--timeout"_s))};
        }
    }
    return std::nullopt;
}

} // namespace

std::variant<Command, UsageError> parseCommandLine(const QStringList &words)
{
    Options options;
    if (const auto error = takeOptions(words, options)) {
        return *error;
    }
    Command command;
    if (options.help || options.programVersion) {
        command.verb = options.help ? Verb::Help : Verb::Version;
        return command;
    }
    if (options.words.isEmpty()) {
        return UsageError{u"no command given (see --help)"_s};
    }
    QString name = options.words.takeFirst();
    if (!options.words.isEmpty() && simpleForms().contains(name + u' ' + options.words.first())) {
        name += u' ' + options.words.takeFirst();
    }
    const auto form = simpleForms().constFind(name);
    if (form == simpleForms().cend()) {
        return UsageError{u"unknown command '%1' (see --help)"_s.arg(name)};
    }
    command.verb = form->verb;
    command.arguments = options.words;
    if (options.all) {
        if (command.verb != Verb::Update || !command.arguments.isEmpty()) {
            return UsageError{u"--all belongs to update, without prefixes"_s};
        }
        command.verb = Verb::UpdateAll;
    } else if (command.arguments.size() < form->least
        || (form->most >= 0 && command.arguments.size() > form->most)) {
        return UsageError{u"%1 takes %2"_s.arg(name, QString::fromLatin1(form->wants))};
    }
    if (const auto error = checkOptions(options, command)) {
        return *error;
    }
    if (const auto error = checkReportOptions(options, command)) {
        return *error;
    }
    return command;
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
