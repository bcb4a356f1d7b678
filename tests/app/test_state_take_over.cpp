// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/EarlierKeys.h"
#include "app/StateTakeOver.h"
#include "catalogue/CatalogueKeys.h"
#include "platform/linux/files/FileSettingsStore.h"
#include "support/Archived.h"
#include "support/FailingDisk.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/ScratchStateStore.h"
#include "support/Stored.h"
#include "support/StoredCatalogue.h"

#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

const QDateTime date = QDateTime::fromString(u"2026-02-28T23:59:58Z"_s, Qt::ISODate);

Record build(const QString &name, const QString &prefix)
{
    return {{u"Name"_s, name}, {u"Prefix"_s, prefix}, {u"Version"_s, u"1"_s}, {u"HostVersion"_s, 140},
        {u"CommandQueue"_s, QJsonArray{QJsonArray{u"removeStart"_s, u"/a"_s}}}};
}

/// What the version before kept, as it kept it.
void fill(SettingsStore &settings)
{
    settings.setValue(u"OrlecAutoUpdate"_s, true);
    settings.setValue(u"OrlecSessionData"_s, archived(Record{{u"SessionId"_s, u"id"_s}}));
    settings.setValue(u"OrlecSessionVersion"_s, 1.2);
    settings.setValue(u"OrlecTargetsGathered"_s, true);
    settings.setValue(u"OrlecTargetsData"_s, archived(Record{{u"/t/"_s, Record{{u"Path"_s, u"/t/"_s}}}}));
    settings.setValue(u"OrlecPackagesData"_s, archived(Record{{u"Pack"_s, Record{{u"Name"_s, u"Pack"_s}}}}));
    settings.setValue(u"OrlecPluginsData"_s,
        archived(Record{{u"P"_s, QJsonArray{build(u"B"_s, u"P"_s), build(u"A"_s, u"P"_s)}},
            {u"Q"_s, QJsonArray{build(u"A"_s, u"Q"_s)}}, {u"Empty"_s, QJsonArray()}}));
    settings.setValue(u"OrlecPluginsUpdateDate"_s, date);
    settings.setValue(u"SULastCheckTime"_s, date.addDays(1));
    settings.setValue(u"OrlecNotifiedPackages"_s, QStringList{u"Pack"_s, u"a, b"_s});
    settings.setValue(u"OrlecInstallNotificationDate/Applications/X"_s, date);
}

} // namespace

class StateTakeOverTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everythingMovesOnce()
    {
        ScratchStateStore scratch;
        StateStore &state = scratch.store;
        const QString path = scratch.folder.filePath(u"brevok.conf"_s);
        FileSettingsStore settings(path);
        fill(settings);
        QVERIFY(isStored(settings));
        const StateTakeOver takeOver(settings, state);
        // It is there at once for those who load next.
        QCOMPARE(
            state.entries(u"OrlecSessionData"_s), (StateEntries{{QString(), {{u"SessionId"_s, u"id"_s}}}}));
        QCOMPARE(state.value(u"OrlecSessionVersion"_s).toDouble(), 1.2);
        QVERIFY(state.value(u"OrlecTargetsGathered"_s).toBool());
        QCOMPARE(state.entries(u"OrlecTargetsData"_s), (StateEntries{{u"/t/"_s, {{u"Path"_s, u"/t/"_s}}}}));
        QCOMPARE(state.entries(u"OrlecPackagesData"_s).keys(), QStringList{u"Pack"_s});
        QCOMPARE(state.entries(CatalogueKeys::pluginsData).size(), 2);
        const QJsonArray definitions = definitionsIn(state, u"P"_s);
        QCOMPARE(definitions[0]["Name"_L1], u"B"_s);
        QCOMPARE(definitions[1]["CommandQueue"_L1], build(u"A"_s, u"P"_s)["CommandQueue"_L1]);
        QCOMPARE(definitions[1], definitionsIn(state, u"Q"_s)[0]);
        QVERIFY(state.entries(CatalogueKeys::pluginPrefixes).contains(u"Empty"_s));
        QCOMPARE(state.date(u"OrlecPluginsUpdateDate"_s), date);
        QCOMPARE(state.date(u"SULastCheckTime"_s), date.addDays(1));
        QCOMPARE(state.entries(u"OrlecNotifiedPackages"_s).size(), 2);
        QCOMPARE(
            StateStore::dateOf(state.entries(u"OrlecInstallNotificationDate"_s).value(u"/Applications/X"_s)),
            date);
        // What a person chose stays.
        QTRY_COMPARE(leftIn(path), QStringList{u"OrlecAutoUpdate"_s});
    }

    void keysOfTheFirstVersionsMoveInOrder()
    {
        ScratchStateStore scratch;
        const QString path = scratch.folder.filePath(u"brevok.conf"_s);
        FileSettingsStore settings(path);
        fill(settings);
        settings.setValue(u"startAtLogin"_s, true);
        settings.setValue(u"sessionData"_s, archived(Record{{u"SessionId"_s, u"older"_s}}));
        settings.setValue(u"sessionVersion"_s, u"1.1"_s);
        settings.setValue(u"targetsGathered"_s, false);
        settings.setValue(u"targets"_s, archived(Record{{u"/old/"_s, Record()}}));
        settings.setValue(u"packages"_s, archived(Record{{u"Old"_s, Record{{u"Name"_s, u"Old"_s}}}}));
        settings.setValue(u"plugins"_s, archived(Record{{u"O"_s, QJsonArray{build(u"O"_s, u"O"_s)}}}));
        scratch.store.commit({{u"OrlecPackagesData"_s, u"There"_s, Record()}});
        QStringList order;
        connect(&settings, &SettingsStore::changed, this, [&](const QString &key) { order.append(key); });
        moveKeysOfEarlierVersions(settings);
        QCOMPARE(order,
            (QStringList{u"OrlecStartAtLogin"_s, u"startAtLogin"_s, u"OrlecSessionData"_s, u"sessionData"_s,
                u"OrlecSessionVersion"_s, u"sessionVersion"_s, u"OrlecTargetsGathered"_s,
                u"targetsGathered"_s, u"OrlecTargetsData"_s, u"targets"_s, u"OrlecPackagesData"_s,
                u"packages"_s, u"OrlecPluginsData"_s, u"plugins"_s}));
        const StateTakeOver takeOver(settings, scratch.store);
        // A value under the newer key gives way, in the store too.
        StateStore &state = scratch.store;
        QCOMPARE(state.entries(u"OrlecSessionData"_s).value(QString()).value("SessionId"_L1), u"older"_s);
        QCOMPARE(state.value(u"OrlecSessionVersion"_s).toDouble(), 1.1);
        QVERIFY(!state.value(u"OrlecTargetsGathered"_s).toBool());
        QCOMPARE(state.entries(u"OrlecTargetsData"_s).keys(), QStringList{u"/old/"_s});
        QCOMPARE(state.entries(u"OrlecPackagesData"_s).keys(), QStringList{u"Old"_s});
        QCOMPARE(state.entries(CatalogueKeys::pluginPrefixes).keys(), QStringList{u"O"_s});
        QTRY_COMPARE(leftIn(path), (QStringList{u"OrlecAutoUpdate"_s, u"OrlecStartAtLogin"_s}));
    }

    void nothingLeavesTheFileBeforeItIsStored()
    {
        const LogCapture log;
        bool stored = false;
        for (int good = 0; !stored; ++good) {
            ScratchStateStore scratch;
            const QString path = scratch.folder.filePath(u"brevok.conf"_s);
            FileSettingsStore settings(path);
            fill(settings);
            QVERIFY(isStored(settings));
            const QStringList before = leftIn(path);
            FailingDisk::failAfter(good);
            const StateTakeOver takeOver(settings, scratch.store);
            bool ended = false;
            scratch.store.commit({}, this, [&](const auto &error) {
                ended = true;
                stored = !error;
            });
            QTRY_VERIFY(ended);
            QVERIFY(isStored(settings));
            QCOMPARE(leftIn(path), stored ? QStringList{u"OrlecAutoUpdate"_s} : before);
            FailingDisk::heal();
        }
    }

    void whatWasTakenIsNotTakenAgain()
    {
        ScratchStateStore scratch;
        StateStore &state = scratch.store;
        const QString path = scratch.folder.filePath(u"brevok.conf"_s);
        for (int start = 0; start < 2; ++start) {
            // The file could not be written the last time: it still holds what was taken.
            FileSettingsStore settings(path);
            fill(settings);
            const StateTakeOver takeOver(settings, state);
            if (start == 0) {
                state.commit({{u"OrlecSessionData"_s, QString(), Record{{u"SessionId"_s, u"newer"_s}}}});
            }
            QTRY_COMPARE(settings.keys(), QStringList{u"OrlecAutoUpdate"_s});
        }
        QCOMPARE(state.entries(u"OrlecSessionData"_s).value(QString()).value("SessionId"_L1), u"newer"_s);
    }

    void unusableValuesAreSetAside()
    {
        const LogCapture log;
        ScratchStateStore scratch;
        const QString path = scratch.folder.filePath(u"brevok.conf"_s);
        FileSettingsStore settings(path);
        for (const char *key :
            {"OrlecSessionData", "OrlecTargetsData", "OrlecPackagesData", "OrlecPluginsData"}) {
            settings.setValue(QString::fromLatin1(key), QByteArray("\xff\x00garbage", 9));
        }
        settings.setValue(u"OrlecPluginsUpdateDate"_s, u"soon"_s);
        settings.setValue(u"OrlecPackagesData"_s,
            archived(Record{{u"A"_s, Record{{u"Name"_s, u"A"_s}}}, {u"B"_s, 1}, {u"C"_s, QJsonArray()}}));
        const StateTakeOver takeOver(settings, scratch.store);
        QCOMPARE(scratch.store.entries(u"OrlecPackagesData"_s).keys(), QStringList{u"A"_s});
        QVERIFY(
            LogCapture::contains(u"OrlecPackagesData of an earlier version: 2 unusable values left out."_s));
        QVERIFY(scratch.store.entries(u"OrlecTargetsData"_s).isEmpty());
        QCOMPARE(scratch.store.date(u"OrlecPluginsUpdateDate"_s), SettingsStore::distantPast());
        QTRY_VERIFY(settings.keys().isEmpty());
        QCOMPARE(QDir(scratch.folder.path()).entryList({u"*.unusable-*"_s}).size(), 3);
    }

private:
    [[nodiscard]] static QStringList leftIn(const QString &path) { return FileSettingsStore(path).keys(); }
    FailingDisk m_disk;
};

QTEST_GUILESS_MAIN(StateTakeOverTest)
#include "test_state_take_over.moc"
