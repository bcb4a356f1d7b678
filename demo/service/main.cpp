// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "Certificates.h"
#include "DemoOptions.h"
#include "DemoService.h"
#include "SampleCatalogue.h"

#include "platform/TerminationRequests.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace brevok::demo;

namespace {

int fail(const QString &text, int status)
{
    std::fprintf(stderr, "brevok-demo-service: %s\n", qUtf8Printable(text));
    return status;
}

/// @p text as a JSON string, quotes included.
QByteArray quoted(const QString &text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return list.sliced(1, list.size() - 2);
}

int serve(const DemoOptions &options)
{
    const CertificateFiles certificates = CertificateFiles::in(options.tls);
    DemoService service(options.root);
    QString problem = ensureSampleCatalogue(options.root);
    if (problem.isEmpty()) {
        problem = ensureCertificates(options.tls);
    }
    if (problem.isEmpty()) {
        problem = service.start(options.port, certificates);
    }
    if (!problem.isEmpty()) {
        return fail(problem, EXIT_FAILURE);
    }
    const brevok::TerminationRequests termination;
    QObject::connect(&termination, &brevok::TerminationRequests::requested, qApp, &QCoreApplication::quit);
    std::printf("{\"url\": %s, \"ca\": %s}\n", quoted(service.url()).constData(),
        quoted(certificates.authority).constData());
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"brevok-demo-service"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(BREVOK_VERSION));
    const ParsedOptions parsed = parseDemoOptions(QCoreApplication::arguments());
    if (parsed.options) {
        return serve(*parsed.options);
    }
    if (parsed.exitStatus != 0) {
        return fail(parsed.text, parsed.exitStatus);
    }
    std::printf("%s\n", qUtf8Printable(parsed.text));
    return EXIT_SUCCESS;
}
