// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageStatus.h"
#include "catalogue/PluginList.h"
#include "catalogue/StatusRun.h"
#include "CatalogueFixture.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = CatalogueFixture;
using enum PackageStatus;

namespace {

QList<StatusBuild> builds(const QList<Record> &records)
{
    StoredBuildReader reader;
    QList<StatusBuild> builds;
    for (const Record &record : records) {
        PluginDefinition definition = reader.read(buildKey(record), record).definition;
        definition.record = record;
        builds.append(StatusBuild(definition));
    }
    return builds;
}

} // namespace

using BuildsMatchHosts = Table<int, QList<int>, QList<int>>;
using BundlesHaveAStatus = Table<QJsonValue, QJsonValue, int, QString, PackageStatus>;
using ResultsCombine = Table<PackageStatus, PackageStatus, PackageStatus, PackageStatus>;
using PackagesAreExaminedOnDisk = Table<QString, QString, bool, PackageStatus, bool>;

class PackageStatusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void buildsMatchHosts_data()
    {
        const BuildsMatchHosts row;
        row("75", 75, {75, 79}, {70});
        row("74", 74, {70}, {75});
        row("162", 162, {160}, {163});
        row("163", 163, {}, {162});
        row("140", 140, {140}, {142});
        row("150", 150, {}, {140});
        row("none", 0, {0}, {1});
    }

    void buildsMatchHosts()
    {
        const auto [target, matching, others] = BuildsMatchHosts::current();
        for (const int build : matching + others) {
            QCOMPARE(hostMatches(HostCode(target), HostCode(build)), matching.contains(build));
        }
    }

    void bundlesHaveAStatus_data()
    {
        const BundlesHaveAStatus row;
        const QJsonValue absent(QJsonValue::Undefined);
        row("same", u"14.0"_s, u"2.1.0"_s, 140, "2.1.0", UpToDate);
        row("rest after space", u"14.0"_s, u"2.1.0 (77) x"_s, 140, "2.1.0", UpToDate);
        row("newer", u"14.0"_s, u"2.10"_s, 140, "2.9", UpToDate);
        row("older", u"14.0"_s, u"2.9"_s, 140, "2.10", NotUpdated);
        row("no host", absent, u"2.1"_s, 140, "2.1", NotUpdated);
        row("other major", u"15.0"_s, u"2.1"_s, 140, "2.1", NotUpdated);
        row("any minor", u"14.3"_s, u"2.1"_s, 140, "2.1", UpToDate);
        row("16.3 in 163", u"16.3"_s, u"2.1"_s, 163, "2.1", UpToDate);
        row("16.2 in 163", u"16.2"_s, u"2.1"_s, 163, "2.1", NotUpdated);
        row("7.0 in 75", u"7.0"_s, u"2.1"_s, 75, "2.1", NotUpdated);
        row("host as number", 14.0, u"2.1"_s, 140, "2.1", UpToDate);
        row("huge host", QString(300, u'9'), u"2.1"_s, 140, "2.1", NotUpdated);
        row("no version", u"14.0"_s, absent, 140, "2.1", NotInstalled);
        row("blank first", u"14.0"_s, u" 2.1"_s, 140, "2.1", MissingData);
        row("nothing offered", u"14.0"_s, u"2.1"_s, 140, "", MissingData);
    }

    void bundlesHaveAStatus()
    {
        const auto [host, installed, target, offered, status] = BundlesHaveAStatus::current();
        Record information = with({}, u"TolvaneHostAppShortVersion"_s, host);
        information = with(information, u"CFBundleShortVersionString"_s, installed);
        QCOMPARE(statusOfBundle(bundleFacts(true, information), HostCode(target), offered), status);
        QCOMPARE(statusOfBundle(bundleFacts(true, {}), HostCode(target), offered), NotUpdated);
        QCOMPARE(statusOfBundle(bundleFacts(false, {}), HostCode(target), offered), NotInstalled);
    }

    void resultsCombine_data()
    {
        const ResultsCombine add;
        const auto row = [&](PackageStatus before, PackageStatus result, auto plain, auto support) {
            add(qPrintable(packageStatusName(before) + u" then "_s + packageStatusName(result)), before,
                result, plain, support);
        };
        row(MissingData, NotInstalled, NotInstalled, NotInstalled);
        row(UpToDate, NotInstalled, Mixed, Mixed);
        row(UpToDate, NotUpdated, MixedNotUpdated, Mixed);
        row(NotUpdated, UpToDate, MixedNotUpdated, Mixed);
        row(Mixed, NotUpdated, MixedNotUpdated, Mixed);
        row(MixedNotUpdated, UpToDate, MixedNotUpdated, Mixed);
        row(InProgress, UpToDate, Mixed, Mixed);
        row(UpToDate, MissingData, Mixed, Mixed);
    }

    void resultsCombine()
    {
        // support: in a package of the maker's own
        const auto [before, result, plain, support] = ResultsCombine::current();
        QCOMPARE(combinedStatus(before, result, isSupportPlugin(u"MyPlugin"_s), u"P"_s), plain);
        for (const QString &name : {u"Tolvane"_s, u"Vondrel Tools"_s}) {
            for (const QString &prefix : {u"KM#xR57"_s, u"0xr5700"_s}) {
                QCOMPARE(combinedStatus(before, result, isSupportPlugin(name), prefix), support);
            }
            QCOMPARE(combinedStatus(before, result, isSupportPlugin(name), u"P"_s), before);
        }
    }

    void packagesAreExaminedOnDisk_data()
    {
        const PackagesAreExaminedOnDisk row;
        row("installed everywhere", "2.0", "2.1", false, UpToDate, false);
        row("nowhere", "", "", false, NotInstalled, false);
        row("older in one", "2.0", "1.9", false, MixedNotUpdated, true);
        row("broken in both", "-", "-", false, NotUpdated, true);
        row("pending at last", "2.0", "2.0", true, InProgress, false);
        row("pending at last, older before", "1.0", "2.0", true, InProgress, true);
    }

    void packagesAreExaminedOnDisk()
    {
        // first: installed version in a target 140; "-" for a broken bundle
        // second: the same in a target 150
        // pending: a command for the build of the second
        const auto [first, second, pending, status, update] = PackagesAreExaminedOnDisk::current();
        const QTemporaryDir folder;
        const QString one = folder.path() + u"/1/Plug-Ins/"_s;
        const QString two = folder.path() + u"/2/Plug-Ins/"_s;
        const auto install = [](const QString &target, const QString &version, const QString &host) {
            if (version == u"-") {
                QVERIFY(
                    writeFile(installedPluginPath(target, u"A"_s) + u"/Contents/Info.plist"_s, "<plist><di"));
            } else if (!version.isEmpty()) {
                writeInstalledPlugin(target, u"A"_s, version, host);
            }
        };
        install(one, first, u"14.0"_s);
        install(two, second, u"15.0"_s);
        Record last = build(u"A"_s, u"P"_s, u"2.0"_s, 150);
        if (pending) {
            last.insert(PluginKeys::commandQueue, QJsonArray{QJsonArray{u"removeStart"_s, u"/x"_s}});
        }
        const auto target = [](const QString &path, const QString &version) {
            return Record{{TargetKeys::path, path}, {TargetKeys::version, version}};
        };
        StatusInput input{.prefixes = {u"P"_s, u"Q"_s},
            .builds = {{u"P"_s, builds({build(u"A"_s, u"P"_s, u"2.0"_s), last})},
                {u"Q"_s, builds({build(u"A"_s, u"Q"_s, u"2.0"_s, 190)})}},
            .validTargets = {{one, target(one, u"140"_s)}, {two, target(two, u"150"_s)}}};
        const StatusResult result = calculatedStatuses(input);
        QCOMPARE(result.statuses.value(u"P"_s), status);
        QCOMPARE(result.updates.contains(u"P"_s), update);
        QCOMPARE(result.statuses.value(u"Q"_s), MissingData); // no build fits

        input.validTargets.clear();
        QCOMPARE(calculatedStatuses(input).statuses.value(u"P"_s), MissingData);
    }

    void detailsAreLogged()
    {
        const QTemporaryDir folder;
        StatusInput input{.prefixes = {u"P"_s},
            .builds = {{u"P"_s,
                builds({build(u"A"_s, u"P"_s, u"2.0"_s), build(u"A"_s, u"P"_s, u"2.0"_s, 150)})}},
            .validTargets = {{folder.path(), Record{{TargetKeys::version, u"142"_s}}}}};
        const LogCapture log;
        QCOMPARE(calculatedStatuses(input).statuses.value(u"P"_s), NotInstalled);
        QVERIFY(LogCapture::lines().isEmpty());
        input.detailedLog = true;
        QCOMPARE(calculatedStatuses(input).statuses.value(u"P"_s), NotInstalled);
        QCOMPARE(LogCapture::lines(),
            (QStringList{
                u"App version: 142"_s, u" Plugin: 140"_s, folder.path() + u"/Tolvane/A.InDesignPlugin"_s}));
    }
};

QTEST_GUILESS_MAIN(PackageStatusTest)
#include "test_package_status.moc"
