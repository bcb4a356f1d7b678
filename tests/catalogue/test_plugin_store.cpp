// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "CatalogueFixture.h"
#include "support/LogCapture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = CatalogueFixture;

class PluginStoreTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void definitionsSurviveARestart();
    void rubbishIsSetAside_data();
    void rubbishIsSetAside();
    void wrongShapesInsideAreLeftOut();
    void unfinishedActionsAreAskedAbout_data();
    void unfinishedActionsAreAskedAbout();
    void theQuestionHoldsNothingUpButTheList();
    void changesAreStoredBeforeTheyAreAnnounced();
};

void PluginStoreTest::definitionsSurviveARestart()
{
    Fixture f;
    {
        BrevokPlugins plugins(f.settings, f.service, f.alerts);
        plugins.start();
        QCOMPARE(BrevokPlugins::plugins(), &plugins);
        f.service.answerList(Fixture::good({Fixture::with(Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140),
                                                u"Unknown"_s, QJsonObject{{u"x"_s, 1}}),
            Fixture::build(u"A"_s, u"Q"_s, u"1"_s, 140)}));
    }
    QVERIFY(!BrevokPlugins::plugins());
    QVERIFY(f.settings.synchronizations > 0);
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.start();
    const DefinitionPtr shared = plugins.definition(u"140:A_1"_s);
    QVERIFY(shared);
    QCOMPARE(shared->record.value("Unknown"_L1).toObject(), (QJsonObject{{u"x"_s, 1}}));
    QCOMPARE(shared->record.value(PluginKeys::hostVersion).toInt(), 140);
    QCOMPARE(plugins.pluginIndex().value(u"Q"_s), QList{shared});
    QCOMPARE(plugins.snapshot().value(u"P"_s), QList{shared->record});
}

void PluginStoreTest::rubbishIsSetAside_data()
{
    QTest::addColumn<QVariant>("value");
    const QByteArray whole = archived(QJsonObject{{u"P"_s, QJsonArray()}});
    QTest::addRow("bytes") << QVariant(QByteArray("bplist00\x01\x02"));
    QTest::addRow("cut short") << QVariant(whole.chopped(4));
    QTest::addRow("empty") << QVariant(QByteArray());
    QTest::addRow("list") << QVariant(archived(QJsonArray{1, 2}));
    QTest::addRow("text") << QVariant(u"hello"_s);
    QTest::addRow("number") << QVariant(17);
    QTest::addRow("date") << QVariant(QDateTime::currentDateTimeUtc());
}

void PluginStoreTest::rubbishIsSetAside()
{
    QFETCH(QVariant, value);
    Fixture f;
    f.settings.values.insert(CatalogueSettings::pluginsData, value);
    f.settings.values.insert(CatalogueSettings::pluginsUpdateDate, value);
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.start();
    QCOMPARE(f.settings.keysSetAside, QStringList{CatalogueSettings::pluginsData});
    QVERIFY(plugins.pluginIndex().isEmpty());
    f.service.answerList(Fixture::good({Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140)}));
    QCOMPARE(plugins.pluginIndex().size(), 1);
    QVERIFY(f.settings.dateValue(CatalogueSettings::pluginsUpdateDate).secsTo(QDateTime::currentDateTimeUtc())
        < 3600);
}

void PluginStoreTest::wrongShapesInsideAreLeftOut()
{
    Fixture f;
    const Record good = Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140);
    Record odd = Fixture::with(good, u"Name"_s, u"B"_s);
    for (const char *key : {"CommandQueue", "Prefixes", "SavedVersion"}) {
        odd = Fixture::with(odd, QString::fromLatin1(key), 5);
    }
    const QJsonArray queue{7, QJsonArray(), QJsonArray{1, 2}, Fixture::queueOf(u"/a"_s)[0]};
    f.archive(CatalogueSettings::pluginsData,
        QJsonObject{{u"N"_s, 3}, {u"O"_s, QJsonObject{{u"x"_s, good}}},
            {u"P"_s,
                QJsonArray{1, u"x"_s, QJsonValue(), QJsonArray{good}, QJsonObject(), good, odd,
                    Fixture::with(Fixture::with(good, u"Name"_s, u"C"_s), u"HostVersion"_s, u"150"_s),
                    Fixture::with(Fixture::with(good, u"Name"_s, u"D"_s), u"CommandQueue"_s, queue)}}});
    const LogCapture log;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.start();
    QVERIFY(LogCapture::contains(u"Stored plug-in definitions: 11 unusable values left out."_s));
    QCOMPARE(plugins.pluginIndex().keys(), QStringList{u"P"_s});
    QCOMPARE(Fixture::buildsOf(plugins, u"P"_s),
        (QStringList{u"140:A_1"_s, u"140:B_1"_s, u"150:C_1"_s, u"140:D_1"_s}));
    const Record repaired = plugins.definition(u"140:B_1"_s)->record;
    QCOMPARE(repaired.value(PluginKeys::prefixes).toArray(), QJsonArray{u"P"_s});
    QVERIFY(!repaired.contains(PluginKeys::commandQueue) && !repaired.contains(PluginKeys::savedVersion));
    QVERIFY(plugins.pluginWithPrefix(u"P"_s, u"150"_s));
    QCOMPARE(f.presenter.shown.size(), 1); // the one usable command
    QVERIFY(f.settings.keysSetAside.isEmpty());
}

void PluginStoreTest::unfinishedActionsAreAskedAbout_data()
{
    QTest::addColumn<bool>("queued");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("kept");
    QTest::addRow("nothing to ask") << false << alertFirstButton << false;
    QTest::addRow("discard") << true << alertFirstButton << false;
    QTest::addRow("not shown") << true << alertNotShown << true;
    QTest::addRow("second button") << true << alertSecondButton << true;
}

void PluginStoreTest::unfinishedActionsAreAskedAbout()
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
    one = Fixture::with(one, u"CommandQueue"_s, queued ? Fixture::queueOf(u"/a"_s) : QJsonArray());
    const Record two =
        Fixture::with(Fixture::build(u"B"_s, u"P"_s, u"1"_s, 140), u"SavedVersion"_s, u"Downloading"_s);
    f.archive(CatalogueSettings::pluginsData, QJsonObject{{u"P"_s, QJsonArray{one, two}}});
    const LogCapture log;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.start();

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

void PluginStoreTest::theQuestionHoldsNothingUpButTheList()
{
    Fixture f;
    f.presenter.waits = true;
    const Record queued = Fixture::with(
        Fixture::build(u"A"_s, u"P"_s, u"1"_s, 140), u"CommandQueue"_s, Fixture::queueOf(u"/a"_s));
    f.archive(CatalogueSettings::pluginsData, QJsonObject{{u"P"_s, QJsonArray{queued}}});
    const LogCapture log;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    QVERIFY(f.presenter.shown.isEmpty()); // nothing is asked before somebody can answer
    int wentOn = 0;
    plugins.start([&wentOn] { ++wentOn; });
    QVERIFY(plugins.asksAboutUnfinishedActions() && plugins.hasUnfinishedActions());
    QVERIFY(f.service.lists.isEmpty() && wentOn == 0);
    plugins.discardActions();
    QVERIFY(!plugins.asksAboutUnfinishedActions() && !plugins.hasUnfinishedActions());
    QCOMPARE(f.service.lists.size(), 1);
    QCOMPARE(wentOn, 1);
}

void PluginStoreTest::changesAreStoredBeforeTheyAreAnnounced()
{
    Fixture f;
    BrevokPlugins plugins(f.settings, f.service, f.alerts);
    plugins.start();
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

QTEST_GUILESS_MAIN(PluginStoreTest)
#include "test_plugin_store.moc"
