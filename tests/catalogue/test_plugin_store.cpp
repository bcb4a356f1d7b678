// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "CatalogueFixture.h"
#include "support/FailingDisk.h"
#include "support/LogCapture.h"
#include "support/Table.h"

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = CatalogueFixture;

using UnfinishedActionsAreAskedAbout = Table<bool, int, bool>;

class PluginStoreTest : public QObject {
    Q_OBJECT

public:
    FailingDisk disk;

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    // What decides is which rows are written, whatever the catalogue's size.
    void onlyWhatChangedIsWritten()
    {
        Fixture f;
        BrevokPlugins plugins(f.state, f.service, f.alerts);
        const auto cost = [&](const std::function<void()> &act) {
            const bool before = f.flushed();
            FailingDisk::heal();
            act();
            return before && f.flushed() ? FailingDisk::bytes() : -1;
        };
        QList<qint64> changes;
        QJsonArray list;
        for (const int count : {100, 20000}) {
            while (list.size() < count) {
                list.append(build(u"N%1"_s.arg(list.size()), u"P%1"_s.arg(list.size() / 10), u"1"_s, 140));
            }
            QVERIFY(cost([&] { plugins.updateWithArray(list); }) > 0);
            QCOMPARE(cost([&] { plugins.updateWithArray(list); }), 0);
            changes << cost([&] {
                plugins.change({u"140:N7_1"_s}, [&] {
                    plugins.definition(u"140:N7_1"_s)
                        ->record.insert(PluginKeys::savedVersion, u"1%1"_s.arg(count));
                });
            });
        }
        QVERIFY(changes[0] > 0);
        QVERIFY2(changes[1] <= changes[0] * 13 / 10, qPrintable(u"%1 %2"_s.arg(changes[0]).arg(changes[1])));
    }

    // Of a list that is kept already only the date is stored, also after a restart; but observers look at the
    // disk.
    void aKeptListIsNotTakenAgain()
    {
        Fixture f;
        const ServiceReply reply = good({build(u"A"_s), build(u"B"_s)});
        for (int start = 0; start < 2; ++start) {
            BrevokPlugins plugins(f.state, f.service, f.alerts);
            plugins.start();
            if (start == 0) {
                f.service.answerList(reply);
                plugins.checkForUpdates();
                QVERIFY(f.flushed());
            }
            const QSignalSpy changed(&plugins, &BrevokPlugins::pluginsChanged);
            // Merging it again would undo this.
            plugins.change({u"140:B_1"_s},
                [&] { plugins.definition(u"140:B_1"_s)->record.insert(PluginKeys::link, u"mine"_s); });
            QVERIFY(f.flushed());
            FailingDisk::heal();
            f.state.setDate(CatalogueKeys::pluginsUpdateDate, QDateTime::currentDateTimeUtc());
            QVERIFY(f.flushed());
            const qint64 dateAlone = FailingDisk::bytes();
            FailingDisk::heal();
            f.service.answerList(reply);
            QVERIFY(f.flushed());
            QCOMPARE(FailingDisk::bytes(), dateAlone);
            QCOMPARE(changed.size(), 2);
            QCOMPARE(buildsOf(plugins, u"P"_s), (QStringList{u"140:A_1"_s, u"140:B_1"_s}));
            QCOMPARE(plugins.definition(u"140:B_1"_s)->record.value(PluginKeys::link).toString(), u"mine"_s);
        }
    }

    void theListThatCameLastCounts()
    {
        PluginsFixture f;
        const auto listWith = [](const QString &link) {
            return good({build(u"A"_s, u"P"_s, u"1"_s, 140, link)});
        };
        f.service.answerList(listWith(u"first"_s));
        int ended = 0;
        for (const QString &link : {u"second"_s, u"first"_s}) {
            f.plugins.checkForUpdates([&ended](const auto &error) { ended += error ? 0 : 1; });
            f.service.lists.takeLast().handler(listWith(link)); // while the one before is being read
        }
        QTRY_COMPARE(ended, 2);
        QCOMPARE(f.plugins.definition(u"140:A_1"_s)->record.value(PluginKeys::link).toString(), u"first"_s);
    }

    void dropsAndReplacementsSurvive()
    {
        Fixture f;
        const auto listed = [](const QString &name, const QString &prefix, const QString &version) {
            return build(name, prefix, version);
        };
        {
            BrevokPlugins plugins(f.state, f.service, f.alerts);
            plugins.start();
            plugins.updateWithArray({listed(u"C"_s, u"P"_s, u"1"_s), listed(u"A"_s, u"P"_s, u"1"_s),
                listed(u"B"_s, u"P"_s, u"1"_s), listed(u"A"_s, u"Q"_s, u"1"_s)});
            for (const QString &key : {u"140:A_1"_s, u"140:B_1"_s}) {
                plugins.change(
                    {key}, [&] { plugins.definition(key)->record.insert(PluginKeys::savedVersion, u"1"_s); });
            }
            // A new build takes its place, and one is not listed any more; under Q nothing changes.
            plugins.updateWithArray({listed(u"A"_s, u"P"_s, u"2"_s), listed(u"C"_s, u"P"_s, u"1"_s)});
        }
        BrevokPlugins plugins(f.state, f.service, f.alerts);
        plugins.start();
        QCOMPARE(buildsOf(plugins, u"P"_s), (QStringList{u"140:C_1"_s, u"140:A_2"_s}));
        QCOMPARE(plugins.pluginIndex().value(u"Q"_s), QList{plugins.definition(u"140:A_1"_s)});
        QVERIFY(plugins.definition(u"140:A_1"_s)->record.contains(PluginKeys::savedVersion));
        QVERIFY(!plugins.definition(u"140:B_1"_s)); // as every start forgot what no prefix lists
        QCOMPARE(f.state.entries(CatalogueKeys::pluginsData).size(), 3);
        plugins.updateWithArray(
            {listed(u"B"_s, u"P"_s, u"1"_s), listed(u"C"_s, u"P"_s, u"1"_s), listed(u"A"_s, u"P"_s, u"2"_s)});
        QVERIFY(!plugins.definition(u"140:B_1"_s)->record.contains(PluginKeys::savedVersion));
    }

    void aVanishedFileIsWrittenWhole()
    {
        PluginsFixture f;
        f.plugins.updateWithArray({build(u"A"_s), build(u"B"_s)});
        QVERIFY(f.flushed());
        QVERIFY(QDir(f.scratch.folder.filePath(u"data"_s)).removeRecursively());
        const LogCapture log;
        f.set(u"140:A_1"_s, u"x"_s, 1);
        QVERIFY(f.flushed() && f.flushed());
        QCOMPARE(definitionsIn(f.state, u"P"_s).size(), 2);
        QVERIFY(!definitionsIn(f.state, u"P"_s)[1].toObject().isEmpty());
    }

    void wrongShapesInsideAreLeftOut()
    {
        Fixture f;
        const Record good = build(u"A"_s);
        Record odd = with(good, u"Name"_s, u"B"_s);
        for (const char *key : {"CommandQueue", "Prefixes", "SavedVersion"}) {
            odd = with(odd, QString::fromLatin1(key), 5);
        }
        const QJsonArray queue{7, QJsonArray(), QJsonArray{1, 2}, queueOf(u"/a"_s)[0]};
        f.state.commit(storedDefinitions(QJsonObject{{u"N"_s, 3}, {u"O"_s, QJsonObject{{u"x"_s, good}}},
            {u"P"_s,
                QJsonArray{1, u"x"_s, QJsonValue(), QJsonArray{good}, QJsonObject(), good, odd,
                    with(with(good, u"Name"_s, u"C"_s), u"HostVersion"_s, u"150"_s),
                    with(with(good, u"Name"_s, u"D"_s), u"CommandQueue"_s, queue)}}}));
        const LogCapture log;
        BrevokPlugins plugins(f.state, f.service, f.alerts);
        plugins.start();
        QVERIFY(LogCapture::contains(u"Stored plug-in definitions: 11 unusable values left out."_s));
        QCOMPARE(plugins.pluginIndex().keys(), QStringList{u"P"_s});
        QCOMPARE(
            buildsOf(plugins, u"P"_s), (QStringList{u"140:A_1"_s, u"140:B_1"_s, u"150:C_1"_s, u"140:D_1"_s}));
        const Record repaired = plugins.definition(u"140:B_1"_s)->record;
        QCOMPARE(repaired.value(PluginKeys::prefixes).toArray(), QJsonArray{u"P"_s});
        QVERIFY(!repaired.contains(PluginKeys::commandQueue) && !repaired.contains(PluginKeys::savedVersion));
        QVERIFY(plugins.pluginWithPrefix(u"P"_s, u"150"_s));
        QCOMPARE(f.presenter.shown.size(), 1); // the one usable command
    }

    void unfinishedActionsAreAskedAbout_data()
    {
        const UnfinishedActionsAreAskedAbout row;
        row("nothing to ask", false, alertFirstButton, false);
        row("discard", true, alertFirstButton, false);
        row("not shown", true, alertNotShown, true);
        row("second button", true, alertSecondButton, true);
    }

    void unfinishedActionsAreAskedAbout()
    {
        const auto [queued, answer, kept] = UnfinishedActionsAreAskedAbout::current();
        Fixture f;
        f.presenter.answer = answer;
        bool askedBeforeRequest = true;
        f.presenter.whileShown = [&](const AlertContent &) {
            askedBeforeRequest = f.service.lists.isEmpty();
        };
        Record one = with(build(u"A"_s), u"SavedVersion"_s, u"1"_s);
        one = with(one, u"CommandQueue"_s, queued ? queueOf(u"/a"_s) : QJsonArray());
        const Record two = with(build(u"B"_s), u"SavedVersion"_s, u"Downloading"_s);
        f.state.commit(storedDefinitions({{u"P"_s, QJsonArray{one, two}}}));
        const LogCapture log;
        BrevokPlugins plugins(f.state, f.service, f.alerts);
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
        const QJsonArray stored = definitionsIn(f.state, u"P"_s);
        for (const QJsonValue definition : stored) {
            QVERIFY(!definition.toObject().contains(PluginKeys::commandQueue));
        }
    }
};

QTEST_GUILESS_MAIN(PluginStoreTest)
#include "test_plugin_store.moc"
