// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "foundation/Secrets.h"
#include "reporting/ReportSnapshot.h"
#include "ReportRig.h"
#include "support/FolderTest.h"
#include "support/InRow.h"

#include <QJsonDocument>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Kind = ReportOutcome::Kind;
using Stage = BugReporter::Stage;

namespace {

/// One report that somebody asks for.
struct Asked {
    QList<Stage> stages;
    std::optional<ReportOutcome> outcome;
    QObject context;

    void send(BugReporter &reporter, const QString &email = u"ada@example.com"_s,
        const QString &note = u"It broke"_s)
    {
        reporter.report({.email = email,
            .note = note,
            .context = &context,
            .stage = [this](Stage stage) { stages.append(stage); },
            .done =
                [this](const ReportOutcome &came) {
                    outcome = came;
                }});
    }
    /// Sends a report and waits for what comes of it.
    void ask(BugReporter &reporter)
    {
        send(reporter);
        QTRY_VERIFY_WITH_TIMEOUT(outcome, 30000);
    }
    [[nodiscard]] QString alert() const
    {
        return outcome->alert.messageText.value_or(u"-"_s) + u'|'
            + outcome->alert.informativeText.value_or(u"-"_s) + u'|' + outcome->alert.buttons.value(0).title;
    }
};

} // namespace

class BugReportTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:

    void addresses()
    {
        const QList<std::pair<const char *, bool>> rows{{"a@b.cd", true},
            {"very odd one! \"@\"@sub.example-1.museum", true}, {"a@b.c", false}, {"a@localhost", false},
            {"@b.cd", false}, {"a@b.cd ", false}, {"a@b.c1", false}, {"a@b..cd", false}, {"a@\xfc.cd", false},
            {"a@b.cd\n", false}};
        for (const auto &[address, valid] : rows) {
            QVERIFY2(NSStringIsValidEmail(QString::fromLatin1(address)) == valid, address);
        }
    }

    void valuesAreCleaned()
    {
        QCOMPARE(cleanedText(u" a\nb  c d\t "_s), u"abc d\t"_s);
        QCOMPARE(cleanedText(u"a   b   "_s), u"a b"_s);
        QCOMPARE(cleanedText(14.0), u"14"_s);
        QCOMPARE(cleanedText(true), u"1"_s);
        QCOMPARE(cleanedText(QJsonArray{u"x"_s, 2}), u"[\"x\",2]"_s);
    }

    void whatDoesNotExistIsNamed()
    {
        const auto texts = [](const ReportSnapshot &snapshot) {
            const QList<ReportItem> items = getReport(snapshot);
            return items.value(0).value + items.value(1).value + items.value(2).value;
        };
        ReportSnapshot snapshot;
        QCOMPARE(
            texts(snapshot), u"brevokPackages == null\nbrevokPlugins == null\nbrevokTargetApps == null\n"_s);
        snapshot.packages.emplace();
        snapshot.plugins.emplace();
        snapshot.targets.emplace();
        QCOMPARE(texts(snapshot), u"packagesStatus == null\nplugins == null\ntargets == null\n"_s);
        snapshot.packages->statuses.emplace();
        QVERIFY(texts(snapshot).startsWith(u"packages == null\n"_s));
    }

    void stateIsShown()
    {
        const QString target = path(u"T"_s);
        writeInstalledPlugin(target, u"Alpha"_s, u"1.1"_s, u"15.0"_s);
        QVERIFY(QDir().mkpath(target + u"/Tolvane/Broken.InDesignPlugin"_s));
        ReportSnapshot snapshot;
        snapshot.packages = {{{{u"0xA"_s, PackageStatus::MixedNotUpdated}}},
            {{Record{{u"Prefix"_s, u"0xA"_s}, {u"Name"_s, u"  Alpha\n"_s}}, Record{{u"Name"_s, u"Odd"_s}}}}};
        snapshot.plugins = {PackedSnapshot{{u"0xB"_s, {}},
            {u"0xA"_s,
                {Record{{u"Version"_s, u"1.0"_s}, {u"Size"_s, 10}}, Record{{u"Version"_s, u"2.0"_s}}}}}};
        snapshot.targets = {TargetRecords{{u"t"_s, Record{{u"Path"_s, target}, {u"Removed"_s, u"yes"_s}}},
            {u"u"_s, Record{{u"Path"_s, path(u"none"_s)}}}}};
        snapshot.logsFolder = path(u"Logs"_s);
        const QList<ReportItem> items = getReport(snapshot);
        QCOMPARE(items.size(), 5);
        QCOMPARE(items[0],
            (ReportItem{u"Packages"_s,
                u"Name=Alpha\nPrefix=0xA\nStatus=Mixed Not Updated\n\n"
                "Name=Odd\nStatus=Missing Data\n\n"_s}));
        QCOMPARE(items[1],
            (ReportItem{u"Plugins"_s,
                u"Name=  Alpha\n\nPrefix=0xA\n  Size=10\n  Version=1.0\n\n"
                "  Version=2.0\n\n\nName=(null)\nPrefix=0xB\n\n"_s}));
        QCOMPARE(items[2],
            (ReportItem{u"Targets"_s,
                u"Path=%1\nRemoved=yes\nPlugins = Alpha 1.1 (15.0), (null) (null) ((null)),\n\n"
                "Path=%2\nPlugins =\n\n"_s.arg(target, path(u"none"_s))}));
        QCOMPARE(items[3], (ReportItem{u"orlec.log"_s, u"File orlec.log doesn't exist."_s}));
        QCOMPARE(items[4], (ReportItem{u"tolvane.log"_s, u"File tolvane.log doesn't exist."_s}));
    }

    void reportIsSent()
    {
        ReportRig rig;
        rig.server.on(ReportRig::reportPath, Response::ok("{\"ErrorCode\":0}"));
        rig.sessionId = u"s3cret-id"_s;
        rig.addTarget(u"A"_s, u"140"_s);
        Asked asked;
        asked.ask(rig.reporter);
        QCOMPARE(asked.stages, (QList{Stage::Checking, Stage::Gathering, Stage::Sending}));
        QVERIFY(asked.outcome->sent);
        QVERIFY(asked.alert().startsWith(
            u"Thank you for reporting this issue.|Tolvane support team will contact you shortly.|"_s));
        QVERIFY(LogCapture::lines().value(0).startsWith(u"Connection: https://localhost:"_s));
        QVERIFY(LogCapture::lines().value(0).endsWith(u":443"_s));
        QCOMPARE(LogCapture::lines().last(), u"{\"ErrorCode\":0}"_s);

        QCOMPARE(rig.server.requests().last().path, ReportRig::reportPath);
        const Request &request = rig.server.requests().last();
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.header("Accept"), "application/json");
        QCOMPARE(request.header("X-Tolvane-Brevok-Version"), "2");
        QCOMPARE(request.header("Cookie"), "SessionId=s3cret-id");
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        QCOMPARE(body.keys(), (QStringList{u"Data"_s, u"Email"_s}));
        QCOMPARE(body[u"Data"_s][0],
            (QJsonObject{{u"Key"_s, u"Application"_s}, {u"Value"_s, u"Version 1.2 (7, 15)"_s}}));
        QVERIFY(request.body.contains("Status=Not Installed\\n")); // calculated for this report
        QCOMPARE(QJsonDocument::fromJson(bugReportBody({}, {})).object().keys(), QStringList{u"Data"_s});
    }

    void formIsChecked()
    {
        const QString address = u"Please enter a valid email address so we can respond to your message."_s;
        const QList<std::tuple<const char *, QString, QString, QString, QString>> rows{
            {"nothing", {}, {}, u"Missing email address!"_s, address},
            {"no address", u"a@b"_s, u"x"_s, u"Invalid email address!"_s, address},
            {"no note", u"a@b.cd"_s, {}, u"Missing problem description!"_s,
                u"Please describe the problem and what were you doing when the problem came up."_s},
        };
        for (const auto &[name, email, note, title, text] : rows) {
            const InRow in(name);
            ReportRig rig;
            Asked asked;
            asked.send(rig.reporter, email, note);
            QVERIFY(asked.outcome); // at once
            QCOMPARE(asked.outcome->kind, Kind::Invalid);
            QCOMPARE(asked.outcome->alert.style, AlertStyle::Critical);
            QCOMPARE(asked.alert(), title + u'|' + text + u"|OK"_s);
            QVERIFY(asked.stages.isEmpty());
            // The connection is logged whatever was typed.
            QTRY_VERIFY(LogCapture::mentions(u"Connection: POST "_s));
            QVERIFY(rig.arrived(ReportRig::reportPath).isEmpty());
        }
    }

    void unreachable()
    {
        const QList<std::tuple<const char *, ReachabilityFlags, QString>> rows{
            {"service", ReachabilityFlags(Reachable), u"Tolvane Brevok servers are unreachable."_s},
            {"network", ReachabilityFlags(), u"Network is unreachable. Is your internet connection down?"_s},
        };
        for (const auto &[name, flags, text] : rows) {
            const InRow in(name);
            ReportRig rig;
            rig.routes.flags = flags;
            rig.server.on(ReportRig::homePath, Response::of(503, "busy"));
            rig.server.on(QString(), Response::of(503, "busy"));
            Asked asked;
            asked.ask(rig.reporter);
            QCOMPARE(asked.outcome->kind, Kind::Unreachable);
            QCOMPARE(asked.outcome->alert.style, AlertStyle::Critical);
            QCOMPARE(asked.alert(), u"Connection Error|"_s + text + u"|OK"_s);
            QCOMPARE(asked.stages, QList{Stage::Checking});
            QVERIFY(rig.arrived(ReportRig::reportPath).isEmpty());
        }
    }

    void answers()
    {
        const QString unreadable = u"Bug Report connection failed!"_s;
        const QString long256(256, u'x');
        const QList<std::tuple<const char *, Response, QString, QStringList>> rows{
            {"empty", Response::ok({}), u"Received 0 bytes (-)"_s,
                {unreadable, u"Received 0 bytes of data"_s, u"Response string: "_s}},
            {"long and no JSON", Response::ok(QByteArray(1000, 'x')),
                u"Received 1000 bytes (%1)"_s.arg(long256), {u"Response string: "_s + long256}},
            {"500", Response::of(500, "{\"ErrorCode\":99}"),
                u"Server response: 500 - internal server error"_s,
                {u"{\"ErrorCode\":99}"_s,
                    u"Failed to send Bug Report with response: 500 - internal server error"_s}},
            {"huge", Response{.body = "[1,2,3]"_ba, .repeat = 1000000},
                u"The server sent more data than expected."_s, {u"Failed to send Bug Report"_s}},
            {"cut short",
                Response{.body = "{}"_ba, .lengthLie = 10, .fault = Response::Fault::Close, .faultAfter = 2},
                u"The network connection was lost."_s, {u"Failed to send Bug Report"_s}},
        };
        for (const auto &[name, response, text, logged] : rows) {
            const InRow in(name);
            ReportRig rig;
            rig.server.on(ReportRig::reportPath, response);
            Asked asked;
            asked.ask(rig.reporter);
            QVERIFY(!asked.outcome->sent);
            QCOMPARE(asked.alert(),
                u"Failed to send error report|"_s + text + u"\n\nPlease contact Tolvane support.|Close"_s);
            for (const QString &line : logged) {
                QVERIFY2(LogCapture::contains(line), qPrintable(line));
            }
            QCOMPARE(rig.arrived(ReportRig::reportPath).size(), 1);
        }
    }

    void whoIsGoneIsNotTold()
    {
        ReportRig rig;
        rig.server.on(ReportRig::reportPath, Response::ok("{}"));
        auto asked = std::make_unique<Asked>();
        asked->send(rig.reporter);
        asked.reset();
        QTRY_COMPARE(rig.arrived(ReportRig::reportPath).size(), 1);
        QTRY_VERIFY(LogCapture::contains(u"{}"_s));
    }

    void secretsStayOut()
    {
        ReportRig rig;
        setLogLevel(1);
        rig.sessionId = u"s3cret-id"_s;
        keepSecret(rig.sessionId); // as the session does
        const auto echo = [](const Request &request) {
            Response response = Response::ok("you are " + request.header("Cookie"));
            response.headers = {{"Set-Cookie", "token=s3cret-token"}};
            return response;
        };
        rig.server.on(ReportRig::reportPath, echo);
        rig.server.on(QString(), echo);
        rig.server.on(ReportRig::homePath, echo);
        Asked asked;
        asked.ask(rig.reporter);
        QCOMPARE(rig.server.requests().last().header("Cookie"), "SessionId=s3cret-id; token=s3cret-token");
        QVERIFY(asked.alert().contains(u"you are SessionId=(not logged)"_s));
        QCOMPARE(LogCapture::lines().filter(u"s3cret"_s).join(u"; "), QString());
        QVERIFY(!rig.server.requests().last().body.contains("s3cret"));

        Asked again;
        rig.server.on(
            ReportRig::reportPath, Response::ok("{\"SessionId\":\"s3cret-new\",\"Hello\":\"s3cret-id\"}"));
        again.ask(rig.reporter);
        QVERIFY(again.outcome->sent);
        QVERIFY(LogCapture::mentions(u"Hello"_s));
        QVERIFY(!LogCapture::mentions(u"s3cret"_s));
        setLogLevel(0);
    }
};

QTEST_GUILESS_MAIN(BugReportTest)
#include "test_bug_report.moc"
