// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandLine.h"
#include "client/Output.h"
#include "client/Tables.h"
#include "control/ControlService.h"
#include "control/SettingsDocument.h"
#include "control/StatusDocument.h"
#include "support/InRow.h"
#include "support/MemorySettingsStore.h"
#include "support/StoredSettings.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using client::Command;
using Verb = Command::Verb;
using testing::InRow;

class ControlTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void commandLines()
    {
        const QList<std::tuple<const char *, Verb, QStringList>> rows{
            {"install KM#xR57 0xr5700", Verb::Install, {u"KM#xR57"_s, u"0xr5700"_s}},
            {"update --all", Verb::UpdateAll, {}},
            {"remove -- --odd", Verb::Remove, {u"--odd"_s}},
            {"--version", Verb::Version, {}},
            {"report --email a@b.cd --note --odd", Verb::Report, {}},
            {"report --email= --note=", Verb::Report, {}},
            {"report --show --note x", Verb::ShowReport, {}},
            {"metrics --file /x/", Verb::Metrics, {}},
            {"status --timeout=5", Verb::Status, {}},
            {"targets remove - --json", Verb::RemoveTarget, {u"-"_s}},
            {"-h install", Verb::Help, {}},
        };
        for (const auto &[line, verb, arguments] : rows) {
            const InRow in(line);
            const auto parsed = client::parseCommandLine(QString::fromLatin1(line).split(u' '));
            QVERIFY(std::holds_alternative<Command>(parsed));
            const auto &command = std::get<Command>(parsed);
            QVERIFY(command.verb == verb);
            QCOMPARE(command.arguments, arguments);
            QCOMPARE(command.json, QLatin1StringView(line).contains("--json"_L1));
            QCOMPARE(command.timeoutSeconds, QLatin1StringView(line).contains("timeout"_L1) ? 5 : 600);
        }
    }

    void wrongCommandLines()
    {
        const QList<std::tuple<const char *, const char *>> rows{{"", "no command"},
            {"sing-in a@b", "'sing-in'"}, {"--jason status", "'jason'"}, {"install", "prefixes"},
            {"update A --all", "--all"}, {"remove --all", "--all"}, {"signin", "email address"},
            {"signin a@b secret", "email address"}, {"status --timeout 0", "'0'"},
            {"status --timeout", "--timeout"}, {"targets add /a --type InDesign", "--version"},
            {"targets add /a --type Indesign --version 140", "'Indesign'"}, {"targets remove", "a path"},
            {"settings set logLevel", "a key and a value"}, {"status --type InDesign", "--type"},
            {"report", "--email"}, {"report --email a@b.cd", "--note"},
            {"report text --email a@b.cd --note x", "report"}, {"status --note x", "--note"},
            {"status --show", "--show"}, {"usage", "--show"}, {"converge 0xA", "no argument"},
            {"update --dry-run A", "--dry-run"}, {"status --file x", "--file"},
            {"status --version", "--version"}, {"status --version 5", "--version"},
            {"status --json=no", "--json"}};
        for (const auto &[line, named] : rows) {
            const InRow in(line);
            const auto parsed =
                client::parseCommandLine(QString::fromLatin1(line).split(u' ', Qt::SkipEmptyParts));
            QVERIFY(std::holds_alternative<client::UsageError>(parsed));
            const QString message = std::get<client::UsageError>(parsed).message;
            QVERIFY2(message.contains(QLatin1StringView(named)), qPrintable(message));
            QVERIFY(!message.contains(u'\n'));
        }
    }

    void settingsFromText()
    {
        // what is set, why it is refused, and what counts then
        const QList<std::tuple<const char *, QString, QString>> rows{
            {"startAtLogin=no", {}, u"no"_s},
            {"SUEnableAutomaticChecks= ON ", {}, u"yes"_s},
            {"OrlecLogLevel=3", {}, u"3"_s},
            {"startAtLogin=maybe", u"'maybe'"_s, u"yes"_s},
            {"logLevel=-1", u"'-1'"_s, u"0"_s},
            {"OrlecSessionData=x", u"'OrlecSessionData'"_s, u"0"_s},
        };
        for (const auto &[given, reason, value] : rows) {
            const InRow in(given);
            const QString key = QString::fromLatin1(given).section(u'=', 0, 0);
            testing::MemorySettingsStore store;
            testing::StoredSettings settings(store);
            settings.setSetting(*findSetting(u"startAtLogin"_s), true, {});
            const std::optional<QString> refused =
                setSettingFromText(settings, key, QString::fromLatin1(given).section(u'=', 1), {});
            QCOMPARE(refused.has_value(), !reason.isEmpty());
            QVERIFY(!refused || refused->contains(reason));
            QCOMPARE(client::settingText(settingValue(settings, key)), value);
            QCOMPARE(settingValue(settings, key).isUndefined(), findSetting(key) == nullptr);
        }
    }

    void statusIsShownToPeople()
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
        QVERIFY(text.contains(u"Mixed Not Updated  A"_s));
        QVERIFY(text.contains(u"Missing Data       B"_s));
        QVERIFY(text.contains(u"Adobe InDesign CC 2019  missing  /b/"_s));
        QVERIFY(text.contains(u"1 package waits for an update"_s));
        QVERIFY(text.contains(u"\nFailed: Grid, InDesign CC 2019: No space  is left on the disk.\n"_s));
    }

    void callsDuringStartUpAreRefused()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        ControlService service;
        service.publish(bus);
        const QMetaObject &calls = *service.findChild<QDBusAbstractAdaptor *>()->metaObject();
        int refused = 0;
        for (int at = calls.methodOffset(); at < calls.methodCount(); ++at) {
            const QMetaMethod method = calls.method(at);
            if (method.methodType() != QMetaMethod::Slot || method.name() == "Quit") {
                continue;
            }
            const InRow in(method.name().constData());
            QVariantList arguments;
            for (int i = 0; i < method.parameterCount(); ++i) {
                if (!method.parameterTypeName(i).endsWith('&')) {
                    arguments.append(QVariant(method.parameterMetaType(i)));
                }
            }
            QDBusMessage call =
                QDBusMessage::createMethodCall(bus.baseService(), u"/com/tolvane/brevok/Control"_s,
                    u"com.tolvane.brevok.Control1"_s, QString::fromLatin1(method.name()));
            call.setArguments(arguments);
            QDBusPendingCall answer = bus.asyncCall(call);
            QTRY_VERIFY(answer.isFinished());
            QCOMPARE(answer.error().name(), u"com.tolvane.brevok.Error.Refused"_s);
            QVERIFY(answer.error().message().contains(u"still starting"_s));
            ++refused;
        }
        QVERIFY(refused > 15);
    }
};

QTEST_GUILESS_MAIN(ControlTest)
#include "test_control.moc"
