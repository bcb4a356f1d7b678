// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandLine.h"
#include "client/Output.h"
#include "client/Tables.h"
#include "control/ControlService.h"
#include "control/SettingsDocument.h"
#include "control/StatusDocument.h"
#include "support/MemorySettingsStore.h"
#include "support/StoredSettings.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using client::Command;

class ControlTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void commandLines_data();
    void commandLines();
    void wrongCommandLines_data();
    void wrongCommandLines();
    void settingsFromText_data();
    void settingsFromText();
    void statusIsShownToPeople();
    void callsDuringStartUpAreRefused_data();
    void callsDuringStartUpAreRefused();
};

void ControlTest::commandLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("verb");
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const char *line, Command::Verb verb, const QStringList &arguments) {
        QTest::addRow("%s", line) << QString::fromLatin1(line) << static_cast<int>(verb) << arguments;
    };
    row("status", Command::Verb::Status, {});
    row("install KM#xR57 0xr5700", Command::Verb::Install, {u"KM#xR57"_s, u"0xr5700"_s});
    row("update --all", Command::Verb::UpdateAll, {});
    row("--json update A", Command::Verb::Update, {u"A"_s});
    row("targets", Command::Verb::Targets, {});
    row("targets add /a/Plug-Ins --type InCopy --version 140", Command::Verb::AddTarget, {u"/a/Plug-Ins"_s});
    row("targets remove /a", Command::Verb::RemoveTarget, {u"/a"_s});
    row("settings get logLevel", Command::Verb::GetSetting, {u"logLevel"_s});
    row("settings set logLevel 1", Command::Verb::SetSetting, {u"logLevel"_s, u"1"_s});
    row("remove -- --odd", Command::Verb::Remove, {u"--odd"_s});
    row("--version", Command::Verb::Version, {});
    row("report --email a@b.cd --note --odd", Command::Verb::Report, {});
    row("report --email= --note=", Command::Verb::Report, {});
    row("report --show --note x", Command::Verb::ShowReport, {});
    row("usage --show", Command::Verb::ShowUsage, {});
    row("converge --dry-run", Command::Verb::Converge, {});
    row("metrics --file /x/", Command::Verb::Metrics, {});
    row("status --timeout=5", Command::Verb::Status, {});
    row("targets remove - --json", Command::Verb::RemoveTarget, {u"-"_s});
    row("-h install", Command::Verb::Help, {});
}

void ControlTest::commandLines()
{
    QFETCH(QString, line);
    QFETCH(int, verb);
    QFETCH(QStringList, arguments);
    const auto parsed = client::parseCommandLine(line.split(u' '));
    QVERIFY(std::holds_alternative<Command>(parsed));
    const auto &command = std::get<Command>(parsed);
    QCOMPARE(static_cast<int>(command.verb), verb);
    QCOMPARE(command.arguments, arguments);
    QCOMPARE(command.json, line.contains(u"--json"));
    QCOMPARE(command.timeoutSeconds, line.contains(u"timeout") ? 5 : 600);
}

void ControlTest::wrongCommandLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *line, const char *named) {
        QTest::addRow("%s", line) << QString::fromLatin1(line) << QString::fromLatin1(named);
    };
    row("", "no command");
    row("sing-in a@b", "'sing-in'");
    row("--jason status", "'jason'");
    row("install", "prefixes");
    row("update A --all", "--all");
    row("remove --all", "--all");
    row("signin", "email address");
    row("signin a@b secret", "email address");
    row("status --timeout 0", "'0'");
    row("status --timeout", "--timeout");
    row("targets add /a --type InDesign", "--version");
    row("targets add /a --type Indesign --version 140", "'Indesign'");
    row("targets remove", "a path");
    row("settings set logLevel", "a key and a value");
    row("status --type InDesign", "--type");
    row("report", "--email");
    row("report --email a@b.cd", "--note");
    row("report text --email a@b.cd --note x", "report");
    row("status --note x", "--note");
    row("status --show", "--show");
    row("usage", "--show");
    row("converge 0xA", "no argument");
    row("update --dry-run A", "--dry-run");
    row("status --file x", "--file");
    row("status --version", "--version");
    row("status --version 5", "--version");
    row("status --json=no", "--json");
}

void ControlTest::wrongCommandLines()
{
    QFETCH(QString, line);
    QFETCH(QString, named);
    const auto parsed = client::parseCommandLine(line.split(u' ', Qt::SkipEmptyParts));
    QVERIFY(std::holds_alternative<client::UsageError>(parsed));
    const QString message = std::get<client::UsageError>(parsed).message;
    QVERIFY2(message.contains(named), qPrintable(message));
    QVERIFY(!message.contains(u'\n'));
}

void ControlTest::settingsFromText_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("document");
    const auto document = [](const char *atLogin, const char *checks, int level) {
        return u"startAtLogin=%1 checkForUpdates=%2 logLevel=%3"_s.arg(
            QString::fromLatin1(atLogin), QString::fromLatin1(checks), QString::number(level));
    };
    QTest::addRow("name") << u"startAtLogin"_s << u"no"_s << QString() << document("no", "no", 0);
    QTest::addRow("store key") << u"SUEnableAutomaticChecks"_s << u" ON "_s << QString()
                               << document("yes", "yes", 0);
    QTest::addRow("level") << u"OrlecLogLevel"_s << u"3"_s << QString() << document("yes", "no", 3);
    QTest::addRow("no truth") << u"startAtLogin"_s << u"maybe"_s << u"'maybe'"_s << document("yes", "no", 0);
    QTest::addRow("negative level") << u"logLevel"_s << u"-1"_s << u"'-1'"_s << document("yes", "no", 0);
    QTest::addRow("unknown") << u"OrlecSessionData"_s << u"x"_s << u"'OrlecSessionData'"_s
                             << document("yes", "no", 0);
}

void ControlTest::settingsFromText()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, reason);
    QFETCH(QString, document);
    testing::MemorySettingsStore store;
    testing::StoredSettings settings(store);
    settings.setSetting(*findSetting(u"startAtLogin"_s), true, {});
    const std::optional<QString> refused = setSettingFromText(settings, key, value, {});
    QCOMPARE(refused.has_value(), !reason.isEmpty());
    QVERIFY(!refused || refused->contains(reason));
    const QJsonObject now = settingsDocument(settings);
    const QString name = key == u"SUEnableAutomaticChecks"_s ? u"checkForUpdates"_s
        : key == u"OrlecLogLevel"_s                          ? u"logLevel"_s
                                                             : key;
    QCOMPARE(settingValue(settings, key), now[name]); // undefined where there is none
    QCOMPARE(
        u"startAtLogin=%1 checkForUpdates=%2 logLevel=%3"_s.arg(client::settingText(now[u"startAtLogin"_s]),
            client::settingText(now[u"checkForUpdates"_s]), client::settingText(now[u"logLevel"_s])),
        document);
}

void ControlTest::statusIsShownToPeople()
{
    const QList<Record> packages{{{PackageKeys::name, u"Barcode\x1b[31m Studio"_s},
                                     {PackageKeys::prefix, u"A"_s}, {PackageKeys::version, u"4.2"_s}},
        {{PackageKeys::name, u"Grid"_s}, {PackageKeys::prefix, u"B"_s}}};
    const QHash<QString, PackageStatus> statuses{{u"A"_s, PackageStatus::MixedNotUpdated}};
    const TargetRecords records{{u"/b/"_s,
        {{TargetKeys::path, u"/b/"_s}, {TargetKeys::type, u"Adobe InDesign"_s},
            {TargetKeys::version, u"140"_s}, {TargetKeys::enabled, u"yes"_s},
            {TargetKeys::invalid, u"yes"_s}}}};
    const InstallOutcome failed{.entries = {{.plugin = u"Grid"_s,
                                    .targetName = u"InDesign CC 2019"_s,
                                    .reason = u"No space\x1b is left on the disk."_s}}};
    const QJsonArray listed = packagesDocument(packages, statuses, {{u"B"_s, failed}});
    QVERIFY(!listed[0].toObject().contains(u"failures"_s));
    const QString text = client::statusText({{u"updates"_s, 1}, {u"packages"_s, listed},
        {u"targets"_s, targetsDocument(records)}, {u"installer"_s, QJsonObject{{u"version"_s, 15}}},
        {u"warnings"_s, QJsonArray{storageWarning(u"disk\x1b[31m full"_s)}}});
    QVERIFY(text.startsWith(u"Warning: Changes cannot be stored now (disk [31m full). "_s));
    QVERIFY2(!text.contains(QChar(0x1b)), "control characters of a name must not reach the terminal");
    const QJsonObject odd{{u"name"_s, u"a\x1b\u009b2J\u202Eb 😀 é"_s}};
    const QString json = client::documentText(odd);
    QVERIFY(!json.contains(u'\u009b') && !json.contains(u'\u202E') && json.contains(u"😀 é"_s));
    QCOMPARE(QJsonDocument::fromJson(json.toUtf8()).object(), odd);
    // The reports are documents already, of several lines.
    const auto report = QString::fromUtf8(QJsonDocument(odd).toJson(QJsonDocument::Indented));
    const QString shown = client::documentText(report);
    QVERIFY(!shown.contains(u'\u009b') && !shown.contains(u'\u202E'));
    QCOMPARE(shown.count(u'\n'), report.count(u'\n') + 1);
    QCOMPARE(QJsonDocument::fromJson(shown.toUtf8()).object(), odd);
    QVERIFY(text.contains(u"Mixed Not Updated  A"_s));
    QVERIFY(text.contains(u"Missing Data       B"_s));
    QVERIFY(text.contains(u"Adobe InDesign CC 2019  missing  /b/"_s));
    QVERIFY(text.contains(u"1 package waits for an update"_s));
    QVERIFY(text.contains(u"\nFailed: Grid, InDesign CC 2019: No space  is left on the disk.\n"_s));
}

void ControlTest::callsDuringStartUpAreRefused_data()
{
    QTest::addColumn<QVariantList>("arguments");
    const QVariantList none;
    for (const char *method : {"Status", "SignOut", "Check", "UpdateAll", "Discard", "Targets", "Settings",
             "UsageBody", "OpenPanel"}) {
        QTest::newRow(method) << none;
    }
    QTest::newRow("SignIn") << QVariantList{u"a@b"_s, u"word"_s};
    QTest::newRow("Install") << QVariantList{QStringList{u"A"_s}};
    QTest::newRow("Remove") << QVariantList{QStringList{u"A"_s}};
    QTest::newRow("AddTarget") << QVariantList{u"/a"_s, u"InCopy"_s, u"140"_s};
    QTest::newRow("RemoveTarget") << QVariantList{u"/a"_s};
    QTest::newRow("SetTargetEnabled") << QVariantList{u"/a"_s, true};
    QTest::newRow("Setting") << QVariantList{u"logLevel"_s};
    QTest::newRow("SetSetting") << QVariantList{u"logLevel"_s, u"1"_s};
    QTest::newRow("Report") << QVariantList{u"a@b.cd"_s, u"x"_s};
    QTest::newRow("ReportBody") << QVariantList{u"a@b.cd"_s, u"x"_s};
}

void ControlTest::callsDuringStartUpAreRefused()
{
    QFETCH(QVariantList, arguments);
    const QString name = u"com.tolvane.brevok.Test"_s;
    ControlService service;
    service.publish(QDBusConnection::sessionBus());
    QVERIFY(QDBusConnection::sessionBus().registerService(name));
    QDBusMessage call = QDBusMessage::createMethodCall(name, u"/com/tolvane/brevok/Control"_s,
        u"com.tolvane.brevok.Control1"_s, QString::fromLatin1(QTest::currentDataTag()));
    call.setArguments(arguments);
    QDBusPendingCall answer = QDBusConnection::sessionBus().asyncCall(call);
    QTRY_VERIFY(answer.isFinished());
    QCOMPARE(answer.error().name(), u"com.tolvane.brevok.Error.Refused"_s);
    QVERIFY(answer.error().message().contains(u"still starting"_s));
    QDBusConnection::sessionBus().unregisterService(name);
}

QTEST_GUILESS_MAIN(ControlTest)
#include "test_control.moc"
