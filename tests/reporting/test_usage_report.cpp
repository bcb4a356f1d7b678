// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/BrevokUsageReporter.h"
#include "reporting/UsageReport.h"
#include "ReportRig.h"
#include "support/FolderTest.h"
#include "support/InRow.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

struct Reporting final {
    explicit Reporting(ReportRig &rig)
    {
        reporter.setCollaborators(
            {rig.network, rig.targets, rig.plugins, [&rig] { return rig.sessionId; }, u"7"_s});
    }
    BrevokUsageReporter reporter;
    QSignalSpy finished{&reporter, &BrevokUsageReporter::finished};

    void send()
    {
        reporter.usageReport();
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 30000);
    }
};

} // namespace

class UsageReportTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void whatIsInstalledIsSent()
    {
        ReportRig rig;
        rig.server.on(ReportRig::usagePath, Response::ok("{}"));
        rig.sessionId = u"s3cret-id"_s;
        const QString first = rig.addTarget(u"A"_s, u"150"_s);
        rig.addTarget(u"B"_s, u"75"_s); // without a folder of ours
        writeInstalledPlugin(first, u"Alpha"_s, u"1.1"_s, u"15.0"_s);
        writeInstalledPlugin(first, u"Beta"_s, u"2.0"_s, u"16.3"_s);
        writeInstalledPlugin(first, u"Unknown"_s, u"1.0"_s, u"15.0"_s);
        QVERIFY(
            QFile::rename(first + u"/Tolvane/Beta.InDesignPlugin"_s, first + u"/Tolvane/B.INDESIGNPLUGIN"_s));
        QVERIFY(writeFile(first + u"/Tolvane/Alpha.txt"_s, "no bundle"));
        Reporting reporting(rig);
        QVERIFY(reporting.reporter.reportTimer()->isActive());
        QCOMPARE(reporting.reporter.reportTimer()->interval(), 60000);
        reporting.send();
        QCOMPARE(reporting.reporter.reportTimer()->interval(), 86400000);

        const QList<Request> arrived = rig.arrived(ReportRig::usagePath);
        QCOMPARE(arrived.size(), 1);
        const Request &request = arrived.first();
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.header("Accept"), "application/json");
        QCOMPARE(request.header("X-Tolvane-Brevok-Version"), "2");
        QCOMPARE(request.header("Cookie"), "SessionId=s3cret-id");
        QJsonObject body = QJsonDocument::fromJson(request.body).object();
        QVERIFY(body.take(u"OSVersion"_s).toString().startsWith(u"macOS - "_s));
        const QJsonArray plugins{QJsonObject{{u"Prefix"_s, u"0xA"_s}, {u"Version"_s, u"1.1"_s},
                                     {u"Note"_s, u"Correct host version :-)"_s}},
            QJsonObject{{u"Prefix"_s, u"0xB"_s}, {u"Version"_s, u"2.0"_s},
                {u"Note"_s, u"Plug-in host version (163) is incorrect."_s}}};
        QCOMPARE(body,
            (QJsonObject{{u"Platform"_s, u"Mac"_s}, {u"AppVersion"_s, u"7"_s},
                {u"Uninstalled"_s, QJsonArray()},
                {u"Installed"_s,
                    QJsonArray{QJsonObject{{u"InDesignVersion"_s, u"150"_s}, {u"Plugins"_s, plugins}},
                        QJsonObject{{u"InDesignVersion"_s, u"75"_s}, {u"Plugins"_s, QJsonArray()}}}}}));
        QVERIFY(LogCapture::lines().isEmpty());
    }

    void nothingIsSentWithoutTargets()
    {
        ReportRig rig;
        BrevokUsageReporter early;
        early.usageReport();
        QCOMPARE(early.reportTimer()->interval(), 86400000);

        Reporting reporting(rig);
        rig.targets.removeTarget(rig.addTarget(u"A"_s, u"140"_s));
        reporting.reporter.usageReport();
        bool asked = false;
        reporting.reporter.reportBody(this, [&asked](const std::optional<QByteArray> &body) {
            asked = true;
            QVERIFY(!body);
        });
        QTRY_VERIFY(asked);
        QVERIFY(finishBackgroundWork(30000));
        QCoreApplication::processEvents();
        QVERIFY(rig.server.requests().isEmpty());
    }

    void theLastDefinitionOfANameCounts()
    {
        writeInstalledPlugin(path(), u"Alpha"_s, u"1.0"_s, u"14.0"_s);
        const auto prefixOf = [this](const QString &last) {
            const auto named = [](const QString &prefix) {
                return Record{{u"Name"_s, u"Alpha"_s}, {u"Prefix"_s, prefix}};
            };
            const QJsonObject report = gatheredUsage({.appVersion = {},
                .targets = {{u"t"_s, Record{{u"Path"_s, path()}, {u"Version"_s, u"140"_s}}}},
                .definitions = {{u"1"_s, {named(u"0x1"_s), named(u"0x2"_s)}}, {u"2"_s, {named(last)}}}});
            return report[u"AppVersion"_s].toString() + u' '
                + report[u"Installed"_s][0][u"Plugins"_s][0][u"Prefix"_s].toString();
        };
        QCOMPARE(prefixOf(u"0x3"_s), u"?.? 0x3"_s);
        QCOMPARE(prefixOf({}), u"?.? "_s); // known, but without a prefix
    }

    void answers()
    {
        const QList<std::tuple<const char *, Response, QString>> rows{
            {"long", Response{.body = QByteArray(1000000, 'x')}, {}},
            {"500", Response::of(500),
                u"Failed to send Usage Report with response: 500 - internal server error"_s},
            {"reset", Response::reset(), u"Failed to send Usage Report"_s},
        };
        for (const auto &[name, response, logged] : rows) {
            const InRow in(name);
            ReportRig rig; // of a user who is signed out
            rig.server.on(ReportRig::usagePath, response);
            rig.addTarget(u"A"_s, u"140"_s);
            Reporting reporting(rig);
            reporting.send();
            QCOMPARE(rig.arrived(ReportRig::usagePath).size(), 1);
            QVERIFY(rig.arrived(ReportRig::usagePath).first().header("Cookie").isNull());
            QCOMPARE(LogCapture::lines().value(0), logged);
            if (logged == u"Failed to send Usage Report") {
                QVERIFY(LogCapture::lines().value(1).startsWith(u"Error: "_s));
            }
        }
    }
};

QTEST_GUILESS_MAIN(UsageReportTest)
#include "test_usage_report.moc"
