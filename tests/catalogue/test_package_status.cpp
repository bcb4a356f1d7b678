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
using PackagesAreExaminedOnDisk = Table<QString, QString, QString, bool, PackageStatus, bool>;

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

    void packagesAreExaminedOnDisk_data()
    {
        const PackagesAreExaminedOnDisk row;
        row("installed everywhere", "A/P", "2.0", "2.1", false, UpToDate, false);
        row("nowhere", "A/P", "", "", false, NotInstalled, false);
        row("in one", "A/P", "2.0", "", false, Mixed, false);
        row("older in the first", "A/P", "1.9", "2.0", false, MixedNotUpdated, true);
        row("older in the second", "A/P", "2.0", "1.9", false, MixedNotUpdated, true);
        row("broken in both", "A/P", "-", "-", false, NotUpdated, true);
        row("pending at last", "A/P", "2.0", "2.0", true, InProgress, false);
        row("pending at last, older before", "A/P", "1.0", "2.0", true, InProgress, true);
        row("support elsewhere", "Tolvane/P", "2.0", "", false, MissingData, false);
        row("support, older in one", "Tolvane/KM#xR57", "1.9", "2.0", false, Mixed, true);
        row("older support", "Vondrel Tools/0xr5700", "2.0", "1.9", false, Mixed, true);
    }

    void packagesAreExaminedOnDisk()
    {
        // listed: the plug-in and the package that it belongs to
        // first: installed version in a target 140; "-" for a broken bundle
        // second: the same in a target 150
        // pending: a command for the build of the second
        const auto [listed, first, second, pending, status, update] = PackagesAreExaminedOnDisk::current();
        const QString name = listed.section(u'/', 0, 0);
        const QString prefix = listed.section(u'/', 1);
        const QTemporaryDir folder;
        const QString one = folder.path() + u"/1/Plug-Ins/"_s;
        const QString two = folder.path() + u"/2/Plug-Ins/"_s;
        const auto install = [&name](const QString &target, const QString &version, const QString &host) {
            if (version == u"-") {
                QVERIFY(
                    writeFile(installedPluginPath(target, name) + u"/Contents/Info.plist"_s, "<plist><di"));
            } else if (!version.isEmpty()) {
                writeInstalledPlugin(target, name, version, host);
            }
        };
        install(one, first, u"14.0"_s);
        install(two, second, u"15.0"_s);
        Record last = build(name, prefix, u"2.0"_s, 150);
        if (pending) {
            last.insert(PluginKeys::commandQueue, QJsonArray{QJsonArray{u"removeStart"_s, u"/x"_s}});
        }
        const auto target = [](const QString &path, const QString &version) {
            return Record{{TargetKeys::path, path}, {TargetKeys::version, version}};
        };
        StatusInput input{.prefixes = {prefix, u"Q"_s},
            .builds = {{prefix, builds({build(name, prefix, u"2.0"_s), last})},
                {u"Q"_s, builds({build(u"A"_s, u"Q"_s, u"2.0"_s, 190)})}},
            .validTargets = {{one, target(one, u"140"_s)}, {two, target(two, u"150"_s)}}};
        const StatusResult result = calculatedStatuses(input);
        QCOMPARE(result.statuses.value(prefix), status);
        QCOMPARE(result.updates.contains(prefix), update);
        QCOMPARE(result.statuses.value(u"Q"_s), MissingData); // no build fits

        input.validTargets.clear();
        QCOMPARE(calculatedStatuses(input).statuses.value(prefix), MissingData);
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
