// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "CatalogueFixture.h"
#include "service/ReplyDecoding.h"
#include "support/LogCapture.h"

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

QStringList versionsAndHosts(const BrevokPlugins &plugins, const QString &prefix)
{
    QStringList lines;
    for (const DefinitionPtr &definition : plugins.pluginIndex().value(prefix)) {
        lines << buildKey(definition->record);
    }
    return lines;
}

QJsonArray queueOf(const QString &path)
{
    return {QJsonArray{u"removeStart"_s, path}};
}

} // namespace

class PluginsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void elementsAreChecked_data();
    void elementsAreChecked();
    void newestBuildIsSelected_data();
    void newestBuildIsSelected();
    void oneDefinitionPerBuild();
    void newVersionTakesThePlaceOfTheOld();
    void serviceCannotSetLocalState();
    void unlistedBuildsAreDropped_data();
    void unlistedBuildsAreDropped();
    void buildForAHost_data();
    void buildForAHost();
    void repliesAreHandled_data();
    void repliesAreHandled();
    void unreachableServiceIsNotAsked();
    void timerAsksAgain();
    void definitionsSurviveARestart();
    void rubbishIsSetAside_data();
    void rubbishIsSetAside();
    void wrongShapesInsideAreLeftOut();
    void unfinishedActionsAreAskedAbout_data();
    void unfinishedActionsAreAskedAbout();
    void changesAreStoredBeforeTheyAreAnnounced();
    void veryLongListsAreTaken();
};

void PluginsTest::elementsAreChecked_data()
{
    QTest::addColumn<QJsonValue>("element");
    QTest::addColumn<bool>("taken");
    QTest::addColumn<QString>("line");
    const Record good = Fixture::build(u"A"_s, u"P"_s, u"1.0"_s, 140);
    const auto row = [](const char *title, const QJsonValue &element, bool taken, const char *line = "") {
        QTest::addRow("%s", title) << element << taken << QString::fromLatin1(line);
    };
    const auto mutated = [&](const char *key, const QJsonValue &value) {
        return QJsonValue(Fixture::with(good, QString::fromLatin1(key), value));
    };
    const QJsonValue absent(QJsonValue::Undefined);
    row("good", good, true);
    row("text", u"x"_s, false, notDictionary);
    row("nothing", QJsonValue(), false, notDictionary);
    row("list", QJsonArray{good}, false, notDictionary);
    row("other platform", mutated("Platform", u"Win"_s), false);
    row("no platform", mutated("Platform", absent), false);
    row("numeric platform", mutated("Platform", 1), false);
    row("number for name", mutated("Name", 7), false, incomplete);
    row("empty name", mutated("Name", u""_s), false, incomplete);
    row("text for size", mutated("Size", u"10"_s), false, incomplete);
    row("boolean for size", mutated("Size", true), true);
    row("no prefix", mutated("Prefix", absent), false, incomplete);
    row("empty link", mutated("Link", u""_s), false, incomplete);
    row("number for version", mutated("Version", 1.0), false, incomplete);
    row("text for host", mutated("HostVersion", u"140"_s), false, incomplete);
    row("list for published", mutated("Published", QJsonArray()), false, incomplete);
}

void PluginsTest::elementsAreChecked()
{
    QFETCH(QJsonValue, element);
    QFETCH(bool, taken);
    QFETCH(QString, line);
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    const LogCapture log;
    plugins.updateWithArray({element});
    QCOMPARE(plugins.pluginIndex().contains(u"P"_s), taken);
    QCOMPARE(LogCapture::lines(), line.isEmpty() ? QStringList() : QStringList(line));
}

void PluginsTest::newestBuildIsSelected_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("link");
    QTest::addRow("later is newer") << u"1.9"_s << u"1.10"_s << u"second"_s;
    QTest::addRow("earlier is newer") << u"1.10"_s << u"1.9"_s << u"first"_s;
    QTest::addRow("same") << u"1.0"_s << u"1.0"_s << u"second"_s;
    QTest::addRow("same but for zeros") << u"1.0"_s << u"1.0.0"_s << u"second"_s;
}

void PluginsTest::newestBuildIsSelected()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, link);
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, first, 140, u"first"_s),
        Fixture::build(u"A"_s, u"P"_s, second, 140, u"second"_s),
        Fixture::build(u"A"_s, u"P"_s, u"0.1"_s, 150, u"other"_s)});
    const QList<DefinitionPtr> definitions = plugins.pluginIndex().value(u"P"_s);
    QCOMPARE(definitions.size(), 2);
    QCOMPARE(definitions[0]->record.value(PluginKeys::link).toString(), link);
}

void PluginsTest::oneDefinitionPerBuild()
{
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140),
        Fixture::with(Fixture::build(u"A"_s, u"Q"_s, u"1"_s, 140), u"Extra"_s, 5)});
    const DefinitionPtr shared = plugins.definition(u"140:A_1"_s);
    QVERIFY(shared);
    QCOMPARE(plugins.pluginIndex().value(u"P"_s), QList{shared});
    QCOMPARE(plugins.pluginIndex().value(u"Q"_s), QList{shared});
    QCOMPARE(shared->record.value(PluginKeys::prefixes).toArray(), (QJsonArray{u"P"_s, u"Q"_s}));

    plugins.change([&] {
        shared->record.insert(PluginKeys::commandQueue, queueOf(u"/a"_s));
        shared->record.insert(PluginKeys::savedVersion, u"1"_s);
    });
    Record again = Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140, u"https://x/new.zip"_s);
    again = Fixture::with(Fixture::with(again, u"Size"_s, 99), u"Published"_s, u"later"_s);
    plugins.updateWithArray({again});
    QCOMPARE(shared->record.value(PluginKeys::link).toString(), u"https://x/new.zip"_s);
    QCOMPARE(shared->record.value(PluginKeys::size).toInt(), 99);
    QCOMPARE(shared->record.value(PluginKeys::published).toString(), u"2024-01-01"_s);
    QCOMPARE(shared->record.value(PluginKeys::commandQueue).toArray(), queueOf(u"/a"_s));
    QCOMPARE(shared->record.value(PluginKeys::savedVersion).toString(), u"1"_s);
    QCOMPARE(plugins.pluginIndex().value(u"Q"_s), QList{shared});
}

void PluginsTest::newVersionTakesThePlaceOfTheOld()
{
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    const Record other = Fixture::build(u"B"_s, u"P"_s, u"1"_s, 140);
    plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140), other});
    plugins.updateWithArray({other, Fixture::build(u"A"_s, u"P"_s, u"2"_s, 140)});
    QCOMPARE(versionsAndHosts(plugins, u"P"_s), (QStringList{u"140:A_2"_s, u"140:B_1"_s}));
    QVERIFY(plugins.definition(u"140:A_1"_s));
}

void PluginsTest::serviceCannotSetLocalState()
{
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    Record record = Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140);
    record = Fixture::with(record, u"CommandQueue"_s, queueOf(u"/etc"_s));
    record = Fixture::with(record, u"SavedVersion"_s, u"1"_s);
    record = Fixture::with(record, u"Prefixes"_s, 7);
    plugins.updateWithArray({Fixture::with(record, u"Unknown"_s, QJsonArray{1, u"x"_s})});
    const Record kept = plugins.definition(u"140:A_1"_s)->record;
    QVERIFY(!plugins.hasUnfinishedActions() && !kept.contains(PluginKeys::savedVersion));
    QCOMPARE(kept.value(PluginKeys::prefixes).toArray(), QJsonArray{u"P"_s});
    QCOMPARE(kept.value("Unknown"_L1).toArray(), (QJsonArray{1, u"x"_s}));
}

void PluginsTest::unlistedBuildsAreDropped_data()
{
    QTest::addColumn<QJsonArray>("reply");
    QTest::addColumn<QStringList>("left");
    const Record a = Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140);
    const Record c = Fixture::build(u"C"_s, u"P"_s, u"1"_s, 140);
    QTest::addRow("shorter") << QJsonArray{a} << QStringList{u"140:A_1"_s};
    QTest::addRow("another build") << QJsonArray{c, a} << QStringList{u"140:A_1"_s, u"140:C_1"_s};
    QTest::addRow("nothing listed") << QJsonArray() << QStringList{u"140:A_1"_s, u"140:B_1"_s};
    // Both elements belong at one place, so the counts agree although B is not listed.
    QTest::addRow("as long") << QJsonArray{a, Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140.5)}
                             << QStringList{u"140.5:A_1"_s, u"140:B_1"_s};
}

void PluginsTest::unlistedBuildsAreDropped()
{
    QFETCH(QJsonArray, reply);
    QFETCH(QStringList, left);
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140),
        Fixture::build(u"B"_s, u"P"_s, u"1"_s, 140), Fixture::build(u"Z"_s, u"Q"_s, u"1"_s, 140)});
    bool seenByObservers = false;
    connect(&plugins, &BrevokPlugins::pluginsChanged, this,
        [&] { seenByObservers = versionsAndHosts(plugins, u"P"_s).contains(u"140:B_1"_s); });
    plugins.updateWithArray(reply);
    QVERIFY(seenByObservers);
    QCOMPARE(versionsAndHosts(plugins, u"P"_s), left);
    QCOMPARE(versionsAndHosts(plugins, u"Q"_s), QStringList{u"140:Z_1"_s});
    QVERIFY(plugins.definition(u"140:B_1"_s));
    QCOMPARE(f.stored(CatalogueSettings::pluginsData).value("P"_L1).toArray().size(), left.size());
}

void PluginsTest::buildForAHost_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("key");
    QTest::addRow("first match wins") << u"75"_s << u"70:A_1"_s;
    QTest::addRow("lower major") << u"69"_s << QString();
    QTest::addRow("second major") << u"83"_s << u"80:A_1"_s;
    QTest::addRow("no number") << u"CC"_s << QString();
}

void PluginsTest::buildForAHost()
{
    QFETCH(QString, version);
    QFETCH(QString, key);
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"1"_s, 70),
        Fixture::build(u"A"_s, u"P"_s, u"1"_s, 75), Fixture::build(u"A"_s, u"P"_s, u"1"_s, 80)});
    const DefinitionPtr found = plugins.pluginWithPrefix(u"P"_s, version);
    QCOMPARE(found ? buildKey(found->record) : QString(), key);
    QVERIFY(!plugins.pluginWithPrefix(u"Q"_s, version));
}

void PluginsTest::repliesAreHandled_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<double>("daysAhead"); // of the stored date
    QTest::addColumn<int>("seconds"); // until the next check
    QTest::addColumn<QString>("alert"); // days it tells
    QTest::addColumn<QStringList>("lines");
    const auto response = [](const QString &text) {
        return u"Response string: "_s + text;
    };
    const QStringList failed{u"Plugins update failed with error"_s};
    const QStringList bad{u"Plugins definitions update failed!"_s};
    const QStringList reset{u"Error: reset"_s, u"  {Description = \"reset\"}"_s};
    QTest::addRow("error") << 0 << QByteArray() << -30.0 << 60 << QString() << failed + reset;
    QTest::addRow("error, date ahead") << 0 << QByteArray() << 8.5 << 60 << u"8"_s << failed;
    QTest::addRow("error, not far ahead") << 0 << QByteArray() << 6.9 << 60 << QString() << failed + reset;
    QTest::addRow("empty list") << 200 << QByteArray("[]") << -30.0 << 3600 << QString() << QStringList();
    QTest::addRow("dictionary") << 200 << QByteArray("{\"a\":1}") << -10.5 << 3600 << u"-10"_s
                                << bad + QStringList{u"Received 7 bytes of data"_s, response(u"{\"a\":1}"_s)};
    QTest::addRow("256 characters") << 200 << QByteArray(256, 'x') << 0.5 << 3600 << u"0"_s
                                    << bad
            + QStringList{u"Received 256 bytes of data"_s, response(QString(256, u'x')),
                u"Error: illegal value"_s, u"  {Description = \"illegal value\"}"_s};
    QTest::addRow("257 characters") << 200 << QByteArray("\xc3\xa4").repeated(257) << 0.5 << 3600 << u"0"_s
                                    << bad
            + QStringList{u"Received 514 bytes of data"_s, response(QString(256, QChar(0xe4))),
                u"Error: illegal value"_s, u"  {Description = \"illegal value\"}"_s};
    QTest::addRow("304") << 304 << QByteArray("[]") << -30.0 << -1 << QString()
                         << QStringList{u"Plugins update failed with response: 304 - not modified"_s};
    QTest::addRow("500") << 500 << QByteArray("[]") << -30.0 << -1 << QString()
                         << QStringList{
                                u"Plugins update failed with response: 500 - internal server error"_s};
    QTest::addRow("short code") << 7 << QByteArray() << -30.0 << -1 << QString()
                                << QStringList{u"Plugins update failed with response: 007 - "_s
                                       + localizedStringForStatusCode(7)};
}

void PluginsTest::repliesAreHandled()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(double, daysAhead);
    QFETCH(int, seconds);
    QFETCH(QString, alert);
    QFETCH(QStringList, lines);
    Fixture f;
    const QDateTime date = QDateTime::currentDateTimeUtc().addSecs(static_cast<qint64>(daysAhead * 86400));
    f.settings.values.insert(CatalogueSettings::pluginsUpdateDate, date);
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    QCOMPARE(f.service.lists.size(), 1);
    QCOMPARE(f.service.lists[0].path, u"/api/plugin/list"_s);
    QVERIFY(!plugins.updateTimer()->isActive());
    plugins.updateTimer()->start(5000000);

    const QSignalSpy finished(&plugins, &BrevokPlugins::checkFinished);
    const LogCapture log;
    ServiceReply reply{.status = status, .body = body, .headers = {}, .error = {}};
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
    const QDateTime kept = f.settings.dateValue(CatalogueSettings::pluginsUpdateDate);
    QCOMPARE(kept == date, !good);
}

void PluginsTest::unreachableServiceIsNotAsked()
{
    Fixture f;
    f.service.reachable = false;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    const QSignalSpy finished(&plugins, &BrevokPlugins::checkFinished);
    plugins.checkForUpdates();
    QCOMPARE(finished.size(), 1);
    QVERIFY(!finished[0][0].toBool());
    QVERIFY(f.service.lists.isEmpty() && !plugins.updateTimer()->isActive());
}

void PluginsTest::timerAsksAgain()
{
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.checkForUpdates();
    QCOMPARE(f.service.lists.size(), 2);
    f.service.answerList(Fixture::good({}));
    f.service.answerList({.status = 0, .body = {}, .headers = {}, .error = BrevokError{}});
    QCOMPARE(plugins.updateTimer()->interval(), 60000);
    plugins.updateTimer()->start(0);
    QTRY_COMPARE(f.service.lists.size(), 1);
    QVERIFY(!plugins.updateTimer()->isActive());
}

void PluginsTest::definitionsSurviveARestart()
{
    Fixture f;
    {
        BrevokPlugins plugins(f.settings, f.service, f.alerts);
        QCOMPARE(BrevokPlugins::plugins(), &plugins);
        f.service.answerList(Fixture::good({Fixture::with(Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140),
                                                u"Unknown"_s, QJsonObject{{u"x"_s, 1}}),
            Fixture::build(u"A"_s, u"Q"_s, u"1"_s, 140)}));
    }
    QVERIFY(!BrevokPlugins::plugins());
    QVERIFY(f.settings.synchronizations > 0);
    const BrevokPlugins plugins(f.settings, f.service, f.alerts);
    const DefinitionPtr shared = plugins.definition(u"140:A_1"_s);
    QVERIFY(shared);
    QCOMPARE(shared->record.value("Unknown"_L1).toObject(), (QJsonObject{{u"x"_s, 1}}));
    QCOMPARE(shared->record.value(PluginKeys::hostVersion).toInt(), 140);
    QCOMPARE(plugins.pluginIndex().value(u"Q"_s), QList{shared});
    QCOMPARE(plugins.snapshot().value(u"P"_s), QList{shared->record});
}

void PluginsTest::rubbishIsSetAside_data()
{
    QTest::addColumn<QVariant>("value");
    const QByteArray whole = archived(QJsonObject{{u"P"_s, QJsonArray()}});
    QTest::addRow("bytes") << QVariant(QByteArray("bplist00\x01\x02"));
    QTest::addRow("cut short") << QVariant(whole.chopped(1));
    QTest::addRow("empty") << QVariant(QByteArray());
    QTest::addRow("list") << QVariant(archived(QJsonArray{1, 2}));
    QTest::addRow("text") << QVariant(u"hello"_s);
    QTest::addRow("number") << QVariant(17);
    QTest::addRow("date") << QVariant(QDateTime::currentDateTimeUtc());
}

void PluginsTest::rubbishIsSetAside()
{
    QFETCH(QVariant, value);
    Fixture f;
    f.settings.values.insert(CatalogueSettings::pluginsData, value);
    f.settings.values.insert(CatalogueSettings::pluginsUpdateDate, value);
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    QCOMPARE(f.settings.keysSetAside, QStringList{CatalogueSettings::pluginsData});
    QVERIFY(plugins.pluginIndex().isEmpty());
    f.service.answerList(Fixture::good({Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140)}));
    QCOMPARE(plugins.pluginIndex().size(), 1);
    QVERIFY(f.settings.dateValue(CatalogueSettings::pluginsUpdateDate).secsTo(QDateTime::currentDateTimeUtc())
        < 3600);
}

void PluginsTest::wrongShapesInsideAreLeftOut()
{
    Fixture f;
    const Record good = Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140);
    Record odd = Fixture::with(good, u"Name"_s, u"B"_s);
    for (const char *key : {"CommandQueue", "Prefixes", "SavedVersion"}) {
        odd = Fixture::with(odd, QString::fromLatin1(key), 5);
    }
    const QJsonArray queue{7, QJsonArray(), QJsonArray{1, 2}, queueOf(u"/a"_s)[0]};
    f.archive(CatalogueSettings::pluginsData,
        QJsonObject{{u"N"_s, 3}, {u"O"_s, QJsonObject{{u"x"_s, good}}},
            {u"P"_s,
                QJsonArray{1, u"x"_s, QJsonValue(), QJsonArray{good}, QJsonObject(), good, odd,
                    Fixture::with(Fixture::with(good, u"Name"_s, u"C"_s), u"HostVersion"_s, u"150"_s),
                    Fixture::with(Fixture::with(good, u"Name"_s, u"D"_s), u"CommandQueue"_s, queue)}}});
    const LogCapture log;
    const BrevokPlugins plugins(f.settings, f.service, f.alerts);
    QVERIFY(LogCapture::contains(u"Stored plug-in definitions: 11 unusable values left out."_s));
    QCOMPARE(plugins.pluginIndex().keys(), QStringList{u"P"_s});
    QCOMPARE(versionsAndHosts(plugins, u"P"_s),
        (QStringList{u"140:A_1"_s, u"140:B_1"_s, u"150:C_1"_s, u"140:D_1"_s}));
    const Record repaired = plugins.definition(u"140:B_1"_s)->record;
    QCOMPARE(repaired.value(PluginKeys::prefixes).toArray(), QJsonArray{u"P"_s});
    QVERIFY(!repaired.contains(PluginKeys::commandQueue) && !repaired.contains(PluginKeys::savedVersion));
    QVERIFY(plugins.pluginWithPrefix(u"P"_s, u"150"_s));
    QCOMPARE(f.presenter.shown.size(), 1); // the one usable command
    QVERIFY(f.settings.keysSetAside.isEmpty());
}

void PluginsTest::unfinishedActionsAreAskedAbout_data()
{
    QTest::addColumn<bool>("queued");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("kept");
    QTest::addRow("nothing to ask") << false << alertFirstButton << false;
    QTest::addRow("discard") << true << alertFirstButton << false;
    QTest::addRow("not shown") << true << alertNotShown << true;
    QTest::addRow("second button") << true << alertSecondButton << true;
}

void PluginsTest::unfinishedActionsAreAskedAbout()
{
    QFETCH(bool, queued);
    QFETCH(int, answer);
    QFETCH(bool, kept);
    Fixture f;
    f.presenter.answer = answer;
    bool askedBeforeRequest = true;
    f.presenter.whileShown = [&](const AlertContent &) {
        askedBeforeRequest = f.service.lists.isEmpty();
    };
    Record one = Fixture::with(Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140), u"SavedVersion"_s, u"1"_s);
    one = Fixture::with(one, u"CommandQueue"_s, queued ? queueOf(u"/a"_s) : QJsonArray());
    const Record two =
        Fixture::with(Fixture::build(u"B"_s, u"P"_s, u"1"_s, 140), u"SavedVersion"_s, u"Downloading"_s);
    f.archive(CatalogueSettings::pluginsData, QJsonObject{{u"P"_s, QJsonArray{one, two}}});
    const LogCapture log;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);

    QCOMPARE(f.presenter.shown.size(), queued ? 1 : 0);
    QVERIFY(askedBeforeRequest);
    QCOMPARE(plugins.hasUnfinishedActions(), kept);
    QVERIFY(!plugins.definition(u"140:B_1"_s)->record.contains(PluginKeys::savedVersion));
    QVERIFY(plugins.definition(u"140:A_1"_s)->record.contains(PluginKeys::savedVersion));
    if (queued) {
        const AlertContent &shown = f.presenter.shown[0];
        QCOMPARE(shown.style, AlertStyle::Informational);
        QCOMPARE(shown.messageText,
            u"Installer detected one or more unfinished actions. Do you want to finish or discard those actions?"_s);
        QCOMPARE(shown.informativeText,
            u"Tolvane Brevok application probably crashed, or was forced to quit. Unfinished install/uninstall actions are left overs from previous session."_s);
        QCOMPARE(shown.buttons.size(), 2);
        QCOMPARE(shown.buttons[0].title, u"Discard Actions"_s);
        QCOMPARE(shown.buttons[1].title, u"Finish Actions"_s);
        QVERIFY(shown.buttons[0].enabled && !shown.buttons[1].enabled);
    }
    plugins.discardActions();
    QVERIFY(!plugins.hasUnfinishedActions());
    for (const QJsonValue definition : f.stored(CatalogueSettings::pluginsData).value("P"_L1).toArray()) {
        QVERIFY(!definition.toObject().contains(PluginKeys::commandQueue));
    }
}

void PluginsTest::changesAreStoredBeforeTheyAreAnnounced()
{
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140)});
    QStringList order;
    const auto savedVersion = [&] {
        return f.stored(CatalogueSettings::pluginsData)
            .value("P"_L1)
            .toArray()[0]
            .toObject()
            .value("SavedVersion"_L1)
            .toString(u"none"_s);
    };
    connect(&plugins, &BrevokPlugins::pluginsWillChange, this, [&] { order << u"will "_s + savedVersion(); });
    connect(&plugins, &BrevokPlugins::pluginsChanged, this, [&] { order << u"did "_s + savedVersion(); });
    const int written = f.settings.synchronizations;
    plugins.change(
        [&] { plugins.definition(u"140:A_1"_s)->record.insert(PluginKeys::savedVersion, u"Downloading"_s); });
    QCOMPARE(order, (QStringList{u"will none"_s, u"did Downloading"_s}));
    QCOMPARE(f.settings.synchronizations, written + 1);
    plugins.announceChange();
    QCOMPARE(order.mid(2), (QStringList{u"will Downloading"_s, u"did Downloading"_s}));
    QCOMPARE(f.settings.synchronizations, written + 1);
}

void PluginsTest::veryLongListsAreTaken()
{
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    QJsonArray list;
    for (int i = 0; i < 100000; ++i) {
        list.append(i % 10 == 0 ? QJsonValue(i)
                                : QJsonValue(Fixture::build(QString::number(i), u"P"_s, u"1"_s, 140)));
    }
    const LogCapture log;
    f.service.answerList(Fixture::good(list));
    QCOMPARE(plugins.pluginIndex().value(u"P"_s).size(), 90000);
    QCOMPARE(LogCapture::count(QString::fromLatin1(notDictionary)), 10000);
    plugins.updateWithArray(list);
    QCOMPARE(plugins.pluginIndex().value(u"P"_s).size(), 90000);
}

QTEST_GUILESS_MAIN(PluginsTest)
#include "test_plugins.moc"
