// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Options.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

struct Given {
    QString value;
    QString source; ///< how the value was given, for the message
};

std::optional<Given> given(const QCommandLineParser &parser, const QProcessEnvironment &environment,
    const QString &option, const QString &variable)
{
    if (parser.isSet(option)) {
        return Given{parser.value(option), u"--%1"_s.arg(option)};
    }
    if (!environment.value(variable).isEmpty()) {
        return Given{environment.value(variable), variable};
    }
    return std::nullopt;
}

std::optional<OptionError> readServiceUrl(const Given &address, ServiceConfiguration &service)
{
    const QUrl url(address.value, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != u"https" || url.host().isEmpty() || url.hasQuery()
        || url.hasFragment() || !url.userInfo().isEmpty()) {
        return OptionError{u"%1: '%2' is no https address of a service"_s.arg(address.source, address.value)};
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
    service.extraAuthorities = QSslCertificate::fromData(file.readAll(), QSsl::Pem);
    if (service.extraAuthorities.isEmpty()) {
        return OptionError{u"%1: '%2' holds no certificate in PEM form"_s.arg(path.source, path.value)};
    }
    return std::nullopt;
}

std::optional<OptionError> readReachabilityHost(const Given &host, ServiceConfiguration &service)
{
    QUrl probe;
    probe.setScheme(u"https"_s);
    probe.setHost(host.value, QUrl::StrictMode);
    if (!probe.isValid() || probe.host().isEmpty()) {
        return OptionError{u"%1: '%2' is no host name"_s.arg(host.source, host.value)};
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

std::optional<OptionError> readService(const QCommandLineParser &parser,
    const QProcessEnvironment &environment, const OptionDefaults &defaults, ServiceConfiguration &service)
{
    const auto url = given(parser, environment, u"service-url"_s, u"BREVOK_SERVICE_URL"_s)
                         .value_or(Given{defaults.serviceUrl, u"the default"_s});
    if (auto error = readServiceUrl(url, service)) {
        return error;
    }
    if (const auto path = given(parser, environment, u"service-ca"_s, u"BREVOK_SERVICE_CA"_s)) {
        if (auto error = readAuthorities(*path, service)) {
            return error;
        }
    }
    const auto host = given(parser, environment, u"reachability-host"_s, u"BREVOK_REACHABILITY_HOST"_s)
                          .value_or(Given{defaults.reachabilityHost, u"the default"_s});
    return readReachabilityHost(host, service);
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
    Options options;
    if (auto error = readService(parser, environment, defaults, options.service)) {
        return *error;
    }
    options.applications = parser.isSet(u"applications"_s)
        ? parser.values(u"applications"_s)
        : environment.value(u"BREVOK_APPLICATIONS"_s).split(u':', Qt::SkipEmptyParts);
    for (QString &folder : options.applications) {
        if (folder.isEmpty()) {
            return OptionError{u"--applications: the name of a folder is missing"_s};
        }
        folder = QDir(folder).absolutePath();
    }
    options.headless = parser.isSet(u"headless"_s);
    options.background = parser.isSet(u"background"_s);
    return options;
}

} // namespace brevok
