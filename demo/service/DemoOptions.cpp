// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "DemoOptions.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

constexpr int usageStatus = 2;

ParsedOptions refused(const QString &text)
{
    return {.options = std::nullopt, .text = text, .exitStatus = usageStatus};
}

/// What is wrong with the folder given for @p option; empty when it can be used.
QString folderProblem(const QString &option, const QString &folder)
{
    if (folder.isEmpty()) {
        return u"no folder given for '--%1'"_s.arg(option);
    }
    const QFileInfo there(folder);
    return there.exists() && !there.isDir() ? u"'%1' given for '--%2' is not a folder"_s.arg(folder, option)
                                            : QString();
}

} // namespace

ParsedOptions parseDemoOptions(const QStringList &arguments)
{
    const QCommandLineOption root(u"root"_s,
        u"The service's data; a small sample catalogue is made there when it is empty."_s, u"DIR"_s);
    const QCommandLineOption port(u"port"_s, u"Port on loopback; 0 picks a free one."_s, u"N"_s, u"0"_s);
    const QCommandLineOption tls(
        u"tls"_s, u"Certificates, made when missing (default: 'tls' under the root)."_s, u"DIR"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Web service of Tolvane Brevok for demonstrations and tests."_s);
    parser.addOptions({root, port, tls});
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();

    if (!parser.parse(arguments)) {
        return refused(parser.errorText());
    }
    if (parser.isSet(help)) {
        return {.options = std::nullopt, .text = parser.helpText().trimmed(), .exitStatus = 0};
    }
    if (parser.isSet(version)) {
        return {.options = std::nullopt,
            .text =
                u"%1 %2"_s.arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion()),
            .exitStatus = 0};
    }
    if (!parser.positionalArguments().isEmpty()) {
        return refused(u"unexpected argument '%1'"_s.arg(parser.positionalArguments().constFirst()));
    }
    if (!parser.isSet(root)) {
        return refused(u"the option '--root' is missing"_s);
    }
    bool isNumber = false;
    const quint16 portNumber = parser.value(port).toUShort(&isNumber);
    if (!isNumber) {
        return refused(u"'%1' given for '--port' is not a port number"_s.arg(parser.value(port)));
    }
    for (const auto &option : {root, tls}) {
        const QString name = option.names().constFirst();
        const QString problem = parser.isSet(option) ? folderProblem(name, parser.value(option)) : QString();
        if (!problem.isEmpty()) {
            return refused(problem);
        }
    }
    const QString rootPath = QDir::cleanPath(QDir::current().absoluteFilePath(parser.value(root)));
    const QString tlsPath = parser.isSet(tls)
        ? QDir::cleanPath(QDir::current().absoluteFilePath(parser.value(tls)))
        : rootPath + u"/tls"_s;
    return {.options = DemoOptions{.root = rootPath, .tls = tlsPath, .port = portNumber},
        .text = {},
        .exitStatus = 0};
}

} // namespace brevok::demo
