// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPlugins.h"
#include "install/InstallOperation.h"
#include "install/InstallPaths.h"
#include "install/InstallPlanning.h"
#include "install/RunningTargets.h"
#include "support/Table.h"
#include "targets/BrevokTargetApps.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::Table;

namespace {

struct Disk {
    QMap<QString, Record> bundles;
    QStringList archives;

    [[nodiscard]] InstallFacts facts() const
    {
        return {[this](const QString &path) { return bundles.contains(path) || archives.contains(path); },
            [this](const QString &path) -> std::optional<Record> {
                return bundles.contains(path) ? std::optional(bundles.value(path)) : std::nullopt;
            }};
    }
};

Record target(const QString &path, const QString &version)
{
    return {{TargetKeys::path, path}, {TargetKeys::version, version}};
}

Record build(int host, const QString &version = u"2.3.1"_s)
{
    return {{PluginKeys::name, u"P"_s}, {PluginKeys::hostVersion, host}, {PluginKeys::version, version}};
}

const QString bundlePath = u"/A/Plug-Ins//Tolvane/P.InDesignPlugin"_s;

} // namespace

using BuildsAreChosenByHostVersion = Table<QString, QList<int>, QList<int>>;
using InstalledBundlesDecide = Table<QJsonValue, QJsonValue, QString, bool>;
using ArchivesAreReused = Table<QString, bool, bool>;

class InstallPlanningTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void buildsAreChosenByHostVersion_data()
    {
        const BuildsAreChosenByHostVersion add;
        const auto row = [&add](const char *version, const QList<int> &builds, const QList<int> &planned) {
            add(version, version, builds, planned);
        };
        row("75", {70, 75}, {75});
        row("74", {70, 75}, {70});
        row("163", {160, 163}, {163});
        row("162", {160, 161, 163}, {160, 161});
        row("165", {164, 166, 150}, {164});
        row("170", {171, 160, 170}, {170});
        row("199", {190, 195}, {190, 195});
        row("0", {0, 70}, {0});
        row("75x", {75}, {75});
    }

    void buildsAreChosenByHostVersion()
    {
        const auto [version, builds, planned] = BuildsAreChosenByHostVersion::current();
        QList<Record> definitions;
        for (const int host : builds) {
            definitions.append(build(host));
        }
        const InstallPlan plan =
            planInstall(definitions, {target(u"/A/Plug-Ins/"_s, version)}, u"/data"_s, Disk().facts());
        QStringList keys;
        for (const int host : planned) {
            keys.append(u"%1:P_2.3.1"_s.arg(host));
        }
        QCOMPARE(plan.downloads, keys);
        QCOMPARE(plan.installs.size(), keys.size());
        QCOMPARE(plan.installs[0].pluginPath, bundlePath);
        QCOMPARE(plan.installs[0].archivePath, u"/data/%1/P.zip"_s.arg(planned[0]));
    }

    void installedBundlesDecide_data()
    {
        const InstalledBundlesDecide row;
        const QJsonValue none = QJsonValue::Undefined;
        row("equal", u"16.3"_s, u"2.3.1"_s, "2.3.1", false);
        row("newer", u"16.3"_s, u"2.4"_s, "2.3.1", false);
        row("older", u"16.3"_s, u"2.3"_s, "2.3.1", true);
        row("for an earlier minor host", u"16.0"_s, u"2.3.1"_s, "2.3.1", false);
        row("for a later minor host", u"16.4"_s, u"2.3.1"_s, "2.3.1", true);
        row("for another major host", u"15.3"_s, u"2.3.1"_s, "2.3.1", true);
        row("no host version", none, u"2.3.1"_s, "2.3.1", true);
        row("no version", u"16.3"_s, none, "2.3.1", true);
        row("nothing offered", u"16.3"_s, u"2.3.1"_s, "", true);
    }

    void installedBundlesDecide()
    {
        const auto [host, installed, offered, planned] = InstalledBundlesDecide::current();
        Disk disk;
        Record information;
        if (!host.isUndefined()) {
            information.insert(u"TolvaneHostAppShortVersion"_s, host);
        }
        if (!installed.isUndefined()) {
            information.insert(u"CFBundleShortVersionString"_s, installed);
        }
        disk.bundles.insert(bundlePath, information);
        const QList<Record> targets{target(u"/A/Plug-Ins/"_s, u"163"_s)};
        Record definition = build(163, offered);
        const InstallPlan plan = planInstall({definition}, targets, u"/data"_s, disk.facts());
        QCOMPARE(plan.installs.size(), planned ? 1 : 0);
        QCOMPARE(plan.downloads.size(), planned ? 1 : 0);
        const QJsonValue pending(QJsonArray{u"removeStart"_s, u"/x"_s});
        definition.insert(PluginKeys::commandQueue, QJsonArray{pending});
        QCOMPARE(planInstall({definition}, targets, u"/data"_s, disk.facts()).installs.size(), 1);
    }

    void archivesAreReused_data()
    {
        const ArchivesAreReused row;
        row("stored", "2.3.1", true, false);
        row("stored, but gone", "2.3.1", false, true);
        row("another version", "2.3.0", true, true);
        row("unknown", QString(), true, true);
        row("on its way, old archive there", "Downloading", true, false);
        row("on its way", "Downloading", false, false);
    }

    void archivesAreReused()
    {
        const auto [saved, archive, download] = ArchivesAreReused::current();
        Record definition = build(160);
        if (!saved.isNull()) {
            definition.insert(PluginKeys::savedVersion, saved);
        }
        Disk disk;
        if (archive) {
            disk.archives.append(u"/data/160/P.zip"_s);
        }
        const InstallPlan plan =
            planInstall({definition}, {target(u"/A"_s, u"160"_s)}, u"/data"_s, disk.facts());
        QCOMPARE(plan.downloads.size(), download ? 1 : 0);
        QCOMPARE(plan.installs.size(), 1);
    }

    // Current in the second target, but the first has just given the definition a pending command.
    void whatOneTargetQueuesCountsForTheNext()
    {
        Disk disk;
        disk.bundles.insert(u"/B/Tolvane/P.InDesignPlugin"_s,
            {{u"TolvaneHostAppShortVersion"_s, u"16.0"_s}, {u"CFBundleShortVersionString"_s, u"2.3.1"_s}});
        const Record missing = target(u"/A"_s, u"160"_s);
        const Record current = target(u"/B"_s, u"160"_s);
        QCOMPARE(planInstall({build(160)}, {missing, current}, u"/data"_s, disk.facts()).installs.size(), 2);
        QCOMPARE(planInstall({build(160)}, {current, missing}, u"/data"_s, disk.facts()).installs.size(), 1);
    }

    void targetsWithoutDataAreIgnored()
    {
        const QList<Record> targets{{{TargetKeys::version, u"160"_s}}, {{TargetKeys::path, u"/A"_s}}, {}};
        const InstallPlan plan = planInstall({build(160)}, targets, u"/data"_s, Disk().facts());
        QVERIFY(plan.installs.isEmpty() && plan.downloads.isEmpty());
    }

    void namesThatLeadElsewhereAreRefused()
    {
        QList<Record> definitions;
        const QStringList names{u"../../evil"_s, u".."_s, u"a/b"_s, QString(), u"..fine.."_s};
        for (const QString &name : names) {
            Record definition = build(160);
            definition.insert(PluginKeys::name, name);
            definitions.append(definition);
        }
        const InstallPlan plan =
            planInstall(definitions, {target(u"/A"_s, u"160"_s)}, u"/data"_s, Disk().facts());
        QCOMPARE(plan.installs.size(), 1);
        QCOMPARE(plan.refused.size(), 4);
        QVERIFY(plan.refused[0].description.contains(u"../../evil"_s));
        // A host version that is no number never becomes a path.
        QCOMPARE(archiveFolder(u"/data"_s, {{PluginKeys::hostVersion, u"../.."_s}}), u"/data/0"_s);
    }

    void addressesAreNeverPlain()
    {
        QCOMPARE(archiveAddress(u"http://host:80/x.zip"_s), u"https://host:80/x.zip"_s);
        for (const QString &other :
            {u"https://host/http://x.zip"_s, u"ftp://host/x.zip"_s, u"http:/host"_s}) {
            QCOMPARE(archiveAddress(other), other);
        }
    }

    void applicationsAreFoundUnderFolders()
    {
        const QList<RunningApplication> running{{1, 0, u"InDesign Server"_s, u"/Apps/A/InDesign.app"_s, {}},
            {2, 0, u"InDesign"_s, u"/Apps/A 2/InDesign.app"_s, {}},
            {3, 0, u"InCopy"_s, u"/Apps/B/InCopy.app"_s, {}}};
        const QStringList names{u"InDesign"_s, u"InCopy"_s};
        QVERIFY(isAppRunning(running, u"InCopy"_s));
        QVERIFY(!isAppRunning(running, u"incopy"_s));
        QVERIFY(!isAnyAppRunning(running, {u"Tolvane Brevok"_s}));
        // Paths are compared by their first characters as they stand.
        QCOMPARE(getRunningApp(running, names, u"/Apps/A"_s)->processId, 2);
        QVERIFY(!getRunningApp(running, names, u"/Apps/C"_s));

        const auto found = getRunningApps(running, names,
            {target(u"/Apps/B/Plug-Ins/"_s, u"1"_s), target(u"/Apps/Plug-Ins"_s, u"1"_s),
                target(u"/Other/Plug-Ins/"_s, u"1"_s)});
        QCOMPARE(found.size(), 3);
        QCOMPARE(found[0].processId, 2);
        QCOMPARE(found[1].processId, 3);
        QCOMPARE(found[2].processId, 3);

        QCOMPARE(applicationFolder(u"/Apps/A/Plug-Ins//Tolvane/P.InDesignPlugin"_s), u"/Apps/A"_s);
        QCOMPARE(applicationFolder(u"/P.InDesignPlugin"_s), u"/"_s);
        QVERIFY(applicationFolder(u"Tolvane/P.InDesignPlugin"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(InstallPlanningTest)
#include "test_install_planning.moc"
