// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "CatalogueFixture.h"
#include "foundation/Secrets.h"
#include "service/ReplyDecoding.h"
#include "support/LogCapture.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = CatalogueFixture;

namespace {

constexpr auto notDictionary = "plugin is not nsdirectory!";
constexpr auto incomplete = "incomming plugin package do not containe necessary data!";

} // namespace

using ElementsAreChecked = Table<QJsonValue, bool, QString>;
using NewestBuildIsSelected = Table<QString, QString, QString>;
using UnlistedBuildsAreDropped = Table<QJsonArray, QStringList>;
using BuildForAHost = Table<QString, QString>;
using RepliesAreHandled = Table<int, QByteArray, double, int, QString, QStringList>;

class PluginsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void elementsAreChecked_data()
    {
        const ElementsAreChecked row;
        const Record good = build(u"A"_s, u"P"_s, u"1.0"_s);
        const auto mutated = [&](const char *key, const QJsonValue &value) {
            return QJsonValue(with(good, QString::fromLatin1(key), value));
        };
        const QJsonValue absent(QJsonValue::Undefined);
        row("good", good, true, "");
        row("text", u"x"_s, false, notDictionary);
        row("other platform", mutated("Platform", u"Win"_s), false, "");
        row("number for name", mutated("Name", 7), false, incomplete);
        row("empty name", mutated("Name", u""_s), false, incomplete);
        row("text for size", mutated("Size", u"10"_s), false, incomplete);
        row("boolean for size", mutated("Size", true), true, "");
        row("no prefix", mutated("Prefix", absent), false, incomplete);
        row("empty link", mutated("Link", u""_s), false, incomplete);
        row("number for version", mutated("Version", 1.0), false, incomplete);
        row("text for host", mutated("HostVersion", u"140"_s), false, incomplete);
        row("list for published", mutated("Published", QJsonArray()), false, incomplete);
    }

    void elementsAreChecked()
    {
        const auto [element, taken, line] = ElementsAreChecked::current();
        PluginsFixture f;
        const LogCapture log;
        f.plugins.updateWithArray({element});
        QCOMPARE(f.plugins.pluginIndex().contains(u"P"_s), taken);
        QCOMPARE(LogCapture::lines(), line.isEmpty() ? QStringList() : QStringList(line));
    }

    void newestBuildIsSelected_data()
    {
        const NewestBuildIsSelected row;
        row("later is newer", "1.9", "1.10", "second");
        row("earlier is newer", "1.10", "1.9", "first");
        row("same", "1.0", "1.0", "second");
    }

    void newestBuildIsSelected()
    {
        const auto [first, second, link] = NewestBuildIsSelected::current();
        PluginsFixture f;
        f.plugins.updateWithArray(
            {build(u"A"_s, u"P"_s, first, 140, u"first"_s), build(u"A"_s, u"P"_s, second, 140, u"second"_s),
                build(u"A"_s, u"P"_s, u"0.1"_s, 150, u"other"_s)});
        const QList<DefinitionPtr> definitions = f.plugins.pluginIndex().value(u"P"_s);
        QCOMPARE(definitions.size(), 2);
        QCOMPARE(definitions[0]->record.value(PluginKeys::link).toString(), link);
    }

    void oneDefinitionPerBuild()
    {
        PluginsFixture f;
        f.plugins.updateWithArray({build(u"A"_s), with(build(u"A"_s, u"Q"_s), u"Extra"_s, 5)});
        const DefinitionPtr shared = f.plugins.definition(u"140:A_1"_s);
        QVERIFY(shared);
        QCOMPARE(f.plugins.pluginIndex().value(u"P"_s), QList{shared});
        QCOMPARE(f.plugins.pluginIndex().value(u"Q"_s), QList{shared});
        QCOMPARE(shared->record.value(PluginKeys::prefixes).toArray(), (QJsonArray{u"P"_s, u"Q"_s}));

        f.plugins.change({u"140:A_1"_s}, [&] {
            shared->record.insert(PluginKeys::commandQueue, queueOf(u"/a"_s));
            shared->record.insert(PluginKeys::savedVersion, u"1"_s);
        });
        Record again = build(u"A"_s, u"P"_s, u"1"_s, 140, u"https://x/new.zip"_s);
        again = with(with(again, u"Size"_s, 99), u"Published"_s, u"later"_s);
        f.plugins.updateWithArray({again});
        QCOMPARE(shared->record.value(PluginKeys::link).toString(), u"https://x/new.zip"_s);
        QCOMPARE(shared->record.value(PluginKeys::size).toInt(), 99);
        QCOMPARE(shared->record.value(PluginKeys::published).toString(), u"2024-01-01"_s);
        QCOMPARE(shared->record.value(PluginKeys::commandQueue).toArray(), queueOf(u"/a"_s));
        QCOMPARE(shared->record.value(PluginKeys::savedVersion).toString(), u"1"_s);
        QCOMPARE(f.plugins.pluginIndex().value(u"Q"_s), QList{shared});
    }

    void unlistedBuildsAreDropped_data()
    {
        const UnlistedBuildsAreDropped row;
        const Record a = build(u"A"_s);
        const Record c = build(u"C"_s);
        row("shorter", QJsonArray{a}, {u"140:A_1"_s});
        row("another build", QJsonArray{c, a}, {u"140:A_1"_s, u"140:C_1"_s});
        row("nothing listed", {}, {u"140:A_1"_s, u"140:B_1"_s});
        // Both elements belong at one place, so the counts agree although B is not listed.
        row("as long", QJsonArray{a, build(u"A"_s, u"P"_s, u"1"_s, 140.5)}, {u"140.5:A_1"_s, u"140:B_1"_s});
    }

    void unlistedBuildsAreDropped()
    {
        const auto [reply, left] = UnlistedBuildsAreDropped::current();
        PluginsFixture f;
        f.plugins.updateWithArray({build(u"A"_s), build(u"B"_s), build(u"Z"_s, u"Q"_s)});
        bool seenByObservers = false;
        connect(&f.plugins, &BrevokPlugins::pluginsChanged, this,
            [&] { seenByObservers = buildsOf(f.plugins, u"P"_s).contains(u"140:B_1"_s); });
        f.plugins.updateWithArray(reply);
        QVERIFY(seenByObservers);
        QCOMPARE(buildsOf(f.plugins, u"P"_s), left);
        QCOMPARE(buildsOf(f.plugins, u"Q"_s), QStringList{u"140:Z_1"_s});
        QVERIFY(f.plugins.definition(u"140:B_1"_s));
        QCOMPARE(definitionsIn(f.state, u"P"_s).size(), left.size());
    }

    void buildForAHost_data()
    {
        const BuildForAHost row;
        row("first match wins", "75", "70:A_1");
        row("lower major", "69", QString());
        row("second major", "83", "80:A_1");
        row("no number", "CC", QString());
    }

    void buildForAHost()
    {
        const auto [version, key] = BuildForAHost::current();
        PluginsFixture f;
        f.plugins.updateWithArray({build(u"A"_s, u"P"_s, u"1"_s, 70), build(u"A"_s, u"P"_s, u"1"_s, 75),
            build(u"A"_s, u"P"_s, u"1"_s, 80)});
        const DefinitionPtr found = f.plugins.pluginWithPrefix(u"P"_s, version);
        QCOMPARE(found ? buildKey(found->record) : QString(), key);
        QVERIFY(!f.plugins.pluginWithPrefix(u"Q"_s, version));
    }

    void repliesAreHandled_data()
    {
        const RepliesAreHandled row;
        const QStringList failed{u"Plugins update failed with error"_s};
        const QStringList reset{u"Error: reset"_s, u"  {Description = \"reset\"}"_s};
        const QStringList illegal{u"Error: illegal value"_s, u"  {Description = \"illegal value\"}"_s};
        const auto bad = [](int bytes, const QString &text) {
            return QStringList{u"Plugins definitions update failed!"_s,
                u"Received %1 bytes of data"_s.arg(bytes), u"Response string: "_s + text};
        };
        row("error", 0, {}, -30.0, 60, QString(), failed + reset);
        row("error, date ahead", 0, {}, 8.5, 60, "8", failed);
        row("error, not far ahead", 0, {}, 6.9, 60, QString(), failed + reset);
        row("empty list", 200, "[]", -30.0, 3600, QString(), {});
        row("dictionary", 200, "{\"a\":1}", -10.5, 3600, "-10", bad(7, u"{\"a\":1}"_s));
        row("257 characters", 200, QByteArray("\xc3\xa4").repeated(257), 0.5, 3600, "0",
            bad(514, QString(256, QChar(0xe4))) + illegal);
        keepSecret(u"the session-7"_s);
        row("page that repeats the request", 200,
            "<pre>Cookie:\x1b SessionId=the session-7\n\"the+session-7\"</pre>", 0.5, 3600, "0",
            bad(59, u"<pre>Cookie:  SessionId=(not logged) \"(not logged)\"</pre>"_s) + illegal);
        row("304", 304, "[]", -30.0, -1, QString(),
            {u"Plugins update failed with response: 304 - not modified"_s});
        row("500", 500, "[]", -30.0, -1, QString(),
            {u"Plugins update failed with response: 500 - internal server error"_s});
        row("short code", 7, {}, -30.0, -1, QString(),
            {u"Plugins update failed with response: 007 - "_s + localizedStringForStatusCode(7)});
    }

    void repliesAreHandled()
    {
        // daysAhead: of the stored date
        // seconds: until the next check
        // alert: days it tells
        const auto [status, body, daysAhead, seconds, alert, lines] = RepliesAreHandled::current();
        Fixture f;
        const QDateTime date =
            QDateTime::currentDateTimeUtc().addSecs(static_cast<qint64>(daysAhead * 86400));
        f.state.setDate(CatalogueKeys::pluginsUpdateDate, date);
        BrevokPlugins plugins(f.state, f.service, f.alerts);
        plugins.start();
        QCOMPARE(f.service.lists.size(), 1);
        QCOMPARE(f.service.lists[0].path, u"/api/plugin/list"_s);
        QVERIFY(!plugins.updateTimer()->isActive());
        plugins.updateTimer()->start(5000000);

        const QSignalSpy finished(&plugins, &BrevokPlugins::checkFinished);
        const LogCapture log;
        ServiceReply reply{.status = status, .body = body};
        if (status == 0) {
            reply.error = BrevokError{.description = u"reset"_s};
        }
        f.service.answerList(reply);

        const bool good = status == 200 && body == "[]";
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished[0][0].toBool(), good);
        QCOMPARE(plugins.updateTimer()->isActive(), seconds > 0);
        if (seconds > 0) {
            QCOMPARE(plugins.updateTimer()->interval(), seconds * 1000);
            QVERIFY(plugins.updateTimer()->isSingleShot());
        }
        QCOMPARE(f.presenter.shown.size(), alert.isEmpty() ? 0 : 1);
        QStringList expected = lines;
        if (!alert.isEmpty()) {
            const QString text = u"Unable to contact the Tolvane Brevok server for %1 days."_s.arg(alert);
            const AlertContent &shown = f.presenter.shown[0];
            QCOMPARE(shown.messageText, u"Failed to update Plug-Ins data"_s);
            QCOMPARE(shown.informativeText, text);
            QCOMPARE(shown.buttons.size(), 1);
            QCOMPARE(shown.buttons[0].title, u"OK"_s);
            expected.insert(status == 0 ? 1 : 0, u"Alert: Failed to update Plug-Ins data\n"_s + text);
        }
        QCOMPARE(LogCapture::lines(), expected);
        const QDateTime kept = f.state.date(CatalogueKeys::pluginsUpdateDate);
        QCOMPARE(kept == date, !good);
        plugins.updateTimer()->start(0);
        QTRY_COMPARE(f.service.lists.size(), 1); // asked for again
    }
};

QTEST_GUILESS_MAIN(PluginsTest)
#include "test_plugins.moc"
