// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Options.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

using Given = Policy::Entry; // a value, and how it was given, for the message

// Where values come from: the policy, else the command line, else the environment.
struct Sources {
    const Policy &policy;
    const QCommandLineParser &parser;
    const QProcessEnvironment &environment;

    [[nodiscard]] std::optional<Given> given(
        const std::optional<Given> &decided, const QString &option, const QString &variable) const
    {
        if (decided) {
            return decided;
        }
        if (parser.isSet(option)) {
            return Given{parser.value(option), u"--%1"_s.arg(option)};
        }
        if (!environment.value(variable).isEmpty()) {
            return Given{environment.value(variable), variable};
        }
        return std::nullopt;
    }
};

std::optional<OptionError> readServiceUrl(const Given &address, ServiceConfiguration &service)
{
    const QUrl url(address.value, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != u"https" || url.host().isEmpty() || url.hasQuery()
        || url.hasFragment() || !url.userInfo().isEmpty()) {
        return OptionError{
            u"%1: '%2' is not the https address of a service"_s.arg(address.source, address.value)};
    }
    service.baseUrl = url.adjusted(QUrl::StripTrailingSlash);
    return std::nullopt;
}

std::optional<OptionError> readAuthorities(const Given &path, ServiceConfiguration &service)
{
    QFile file(path.value);
    if (!QFileInfo(path.value).isFile() || !file.open(QIODevice::ReadOnly)) {
        return OptionError{u"%1: '%2' cannot be read"_s.arg(path.source, path.value)};
    }
    service.extraAuthorities = file.readAll();
    if (!holdsCertificate(service.extraAuthorities)) {
        return OptionError{u"%1: '%2' contains no certificate in PEM form"_s.arg(path.source, path.value)};
    }
    return std::nullopt;
}

std::optional<OptionError> readReachabilityHost(const Given &host, ServiceConfiguration &service)
{
    QUrl probe;
    probe.setScheme(u"https"_s);
    probe.setHost(host.value, QUrl::StrictMode);
    if (!probe.isValid() || probe.host().isEmpty()) {
        return OptionError{u"%1: '%2' is not a host name"_s.arg(host.source, host.value)};
    }
    service.reachabilityHost = host.value;
    return std::nullopt;
}

void addOptions(QCommandLineParser &parser)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(u"Keeps Adobe InDesign and InCopy plug-ins installed and up to date."_s);
    parser.addOptions({
        {u"service-url"_s, u"Base address of the web service, https only (BREVOK_SERVICE_URL)."_s, u"URL"_s},
        {u"service-ca"_s,
            u"PEM file of certificate authorities to trust beside the system's (BREVOK_SERVICE_CA)."_s,
            u"FILE"_s},
        {u"reachability-host"_s,
            u"Public host whose reachability stands for a working network (BREVOK_REACHABILITY_HOST)."_s,
            u"HOST"_s},
        {u"applications"_s,
            u"Folder searched for host applications; may be given again (BREVOK_APPLICATIONS, colon-separated)."_s,
            u"DIR"_s},
        {u"headless"_s, u"Run without windows and without a display."_s},
        {u"background"_s, u"Start without opening anything."_s},
        {u"version"_s, u"Print the version."_s},
        {QStringList{u"help"_s, u"h"_s}, u"Print this text."_s},
    });
}

std::optional<OptionError> readService(
    const Sources &sources, const OptionDefaults &defaults, ServiceConfiguration &service)
{
    const Policy &policy = sources.policy;
    const auto url = sources.given(policy.serviceUrl, u"service-url"_s, u"BREVOK_SERVICE_URL"_s)
                         .value_or(Given{defaults.serviceUrl, u"the default"_s});
    if (auto error = readServiceUrl(url, service)) {
        return error;
    }
    if (const auto path = sources.given(policy.serviceAuthorities, u"service-ca"_s, u"BREVOK_SERVICE_CA"_s)) {
        if (auto error = readAuthorities(*path, service)) {
            return error;
        }
    }
    const auto host =
        sources.given(policy.reachabilityHost, u"reachability-host"_s, u"BREVOK_REACHABILITY_HOST"_s)
            .value_or(Given{defaults.reachabilityHost, u"the default"_s});
    return readReachabilityHost(host, service);
}

std::optional<OptionError> readApplications(const Sources &sources, QStringList &folders)
{
    if (!sources.policy.applications.isEmpty()) {
        folders = sources.policy.applications;
        return std::nullopt;
    }
    folders = sources.parser.isSet(u"applications"_s)
        ? sources.parser.values(u"applications"_s)
        : sources.environment.value(u"BREVOK_APPLICATIONS"_s).split(u':', Qt::SkipEmptyParts);
    for (QString &folder : folders) {
        if (folder.isEmpty()) {
            return OptionError{u"--applications: the name of a folder is missing"_s};
        }
        folder = QDir(folder).absolutePath();
    }
    return std::nullopt;
}

} // namespace

std::variant<Options, PrintAndExit, OptionError> parseOptions(
    const QStringList &words, const QProcessEnvironment &environment, const OptionDefaults &defaults)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(words)) {
        return OptionError{parser.errorText().section(u'\n', 0, 0)};
    }
    if (parser.isSet(u"help"_s)) {
        return PrintAndExit{parser.helpText()};
    }
    if (parser.isSet(u"version"_s)) {
        return PrintAndExit{u"tolvane-brevok %1\n"_s.arg(defaults.programVersion)};
    }
    if (!parser.positionalArguments().isEmpty()) {
        return OptionError{u"Unexpected argument '%1'."_s.arg(parser.positionalArguments().constFirst())};
    }
    const auto policy = readPolicy(defaults.policyFile);
    if (const auto *wrong = std::get_if<QString>(&policy)) {
        return OptionError{*wrong};
    }
    const Sources sources{std::get<Policy>(policy), parser, environment};
    Options options;
    if (auto error = readService(sources, defaults, options.service)) {
        return *error;
    }
    if (auto error = readApplications(sources, options.applications)) {
        return *error;
    }
    options.lockedSettings = sources.policy.lockedSettings;
    options.headless = parser.isSet(u"headless"_s);
    options.background = parser.isSet(u"background"_s);
    return options;
}

} // namespace brevok
