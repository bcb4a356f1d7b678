// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "FlowRig.h"
#include "foundation/Log.h"
#include "platform/PropertyLists.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

using FailedDownloadLosesNothingElse = Table<DownloadResult, int>;

class InstallFlowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void packageIsDownloadedOnceAndInstalledTwice()
    {
        InstallRig rig;
        const QString a = rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        const QString b = rig.addTarget(u"InDesign 2019 b"_s, u"141"_s);
        rig.plugins.updateWithArray(
            {InstallRig::build(u"P"_s, u"Plug"_s, 140), InstallRig::build(u"P"_s, u"Plug"_s, 150)});
        rig.addPackage(u"Pack"_s, u"P"_s);
        // Nothing may be asked of the service before the queue has reached the store.
        QList<qsizetype> queuedBeforeDownload;
        QObject::connect(&rig.plugins, &BrevokPlugins::pluginsChanged, &rig.flow, [&] {
            if (rig.service.downloads.isEmpty()) {
                queuedBeforeDownload.append(pending(rig.stored(u"P"_s, 0)));
            }
        });
        const QSignalSpy progress(&rig.flow, &InstallFlow::progress);
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(rig.service.downloads.size(), 1);
        QCOMPARE(queuedBeforeDownload.constFirst(), 2);
        QCOMPARE(saved(rig.stored(u"P"_s, 0)), u"Downloading"_s);
        QCOMPARE(rig.service.downloads[0].url, QUrl(u"https://host/Plug-140.zip"_s));
        QCOMPARE(rig.service.downloads[0].destination, rig.folder.filePath(u"data/140/Plug.zip"_s));
        rig.service.downloads[0].progress(5, 10);
        QCOMPARE(progress.value(0), (QVariantList{u"P"_s, u"Plug"_s, 5, 10}));
        QCOMPARE(ended.times, 0);

        rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
        QCOMPARE(saved(rig.stored(u"P"_s, 0)), u"2.0"_s);
        QCOMPARE(pending(rig.stored(u"P"_s, 0)), 2);
        QTRY_COMPARE(ended.times, 1);
        QCOMPARE(ended.outcome.planned, 2);
        QVERIFY(ended.outcome.failures().isEmpty());
        QVERIFY(QFile::exists(pluginIn(a, u"Plug"_s) + u"/Contents/Info.plist"_s));
        QVERIFY(QFile::exists(pluginIn(b, u"Plug"_s) + u"/Contents/Info.plist"_s));
        QCOMPARE(pending(rig.stored(u"P"_s, 0)), 0);
        QCOMPARE(saved(rig.stored(u"P"_s, 0)), u"2.0"_s);
        QVERIFY(!rig.stored(u"P"_s, 1).contains(PluginKeys::commandQueue));
    }

    void failedDownloadLosesNothingElse_data()
    {
        const FailedDownloadLosesNothingElse row;
        const BrevokError broken{.domain = u"com.tolvane.brevok.transport"_s, .description = u"broken"_s};
        row("transfer error", DownloadResult{7, false, broken}, 1);
        row("one byte short", DownloadResult{99, true, std::nullopt}, 0);
        row("one byte long", DownloadResult{101, true, std::nullopt}, 0);
        row("not stored", DownloadResult{100, false, std::nullopt}, 0);
    }

    void failedDownloadLosesNothingElse()
    {
        const auto [result, details] = FailedDownloadLosesNothingElse::current();
        InstallRig rig;
        const QString a = rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        rig.plugins.updateWithArray({InstallRig::build(u"P"_s, u"Bad"_s, 140, u"2.0"_s, 100),
            InstallRig::build(u"P"_s, u"Good"_s, 140)});
        rig.addPackage(u"Pack"_s, u"P"_s);
        rig.presenter.waits = true; // for which nothing waits
        setLogLevel(1);
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        // All at once.
        QTRY_COMPARE(rig.service.downloads.size(), 2);
        const bool badFirst = rig.service.downloads[0].url.path().contains(u"Bad"_s);
        const auto bad = rig.service.downloads.takeAt(badFirst ? 0 : 1);
        bad.handler(result);
        setLogLevel(0);
        QVERIFY(LogCapture::contains(u"Downloading start Bad"_s));
        QVERIFY(LogCapture::contains(u"Downloading cleanup Bad"_s));
        QCOMPARE(LogCapture::count(u"Error: broken"_s), details);
        const Record after = rig.record(u"140:Bad_2.0"_s);
        QVERIFY(!after.contains(PluginKeys::commandQueue) && !after.contains(PluginKeys::savedVersion));
        QCOMPARE(pending(rig.record(u"140:Good_2.0"_s)), 1);
        QCOMPARE(ended.times, 0);

        rig.answerDownload(InstallRig::archiveOf(u"Good"_s, 140));
        QTRY_COMPARE(ended.times, 1);
        QVERIFY(QFile::exists(pluginIn(a, u"Good"_s)));
        QCOMPARE(ended.outcome.failures().size(), 1);
        const QString documented = u"Failed to download Bad, from https://host/Bad-140.zip"_s;
        QCOMPARE(ended.outcome.failureSentences(),
            QStringList(u"Bad: "_s + (details > 0 ? u"broken (%1)"_s.arg(documented) : documented)));
        QTRY_COMPARE(rig.presenter.shown.size(), 1);
        QCOMPARE(rig.presenter.shown[0].messageText, u"Failed to install 'Bad.InDesignPlugin'!"_s);
    }

    void storedArchiveIsInstalledWithoutADownload()
    {
        OnePackage rig;
        rig.left(PluginKeys::savedVersion, u"2.0"_s);
        writeFile(rig.archive, InstallRig::archiveOf(u"Plug"_s, 140));
        // An old bundle, and a helper whose answer comes with an error, which is the user's to see.
        writeInstalledPlugin(rig.target, u"Plug"_s, u"1.0"_s, u"14.0"_s);
        const auto helper = rig.needHelper();
        helper->scripted = {true,
            BrevokError{.domain = QString::fromLatin1(fileErrorDomain),
                .code = ENOSPC,
                .description = u"half done"_s}};
        Ended ended;
        rig.flow.installWithPackage(rig.package(u"P"_s), u"P"_s, false, ended.here());
        QTRY_COMPARE(ended.times, 1);
        QVERIFY(rig.service.downloads.isEmpty());
        QCOMPARE(ended.outcome.failures().size(), 1);
        QTRY_COMPARE(rig.presenter.shown.size(), 1);
        // The designation is what was at hand: the record itself.
        QVERIFY(rig.presenter.shown[0].messageText->startsWith(u"Failed to install '{"_s));
        QCOMPARE(rig.presenter.shown[0].informativeText, u"Error: half done"_s);

        helper->scripted.reset();
        rig.flow.installWithPackage(rig.package(u"P"_s), u"P"_s, false, ended.here());
        QTRY_COMPARE(ended.times, 2);
        QVERIFY(ended.outcome.failures().isEmpty());
        QCOMPARE(bundleInformation(pluginIn(rig.target, u"Plug"_s))->value(u"CFBundleShortVersionString"_s),
            u"2.0"_s);
    }

    void commandsLeftBehindAreCleanedUp()
    {
        OnePackage rig;
        rig.left(PluginKeys::commandQueue, QJsonArray{QJsonValue(QJsonArray{u"removeStart"_s, u"/gone"_s})});
        Ended ended;
        QVERIFY(rig.install(ended));
        QCOMPARE(LogCapture::count(u"Cleanup 2: Plug"_s), 1);
        QVERIFY(!LogCapture::mentions(u"Cleanup 1"_s));
        const Record after = rig.stored(u"P"_s, 0);
        QVERIFY(!after.contains(PluginKeys::commandQueue) && !after.contains(PluginKeys::savedVersion));
    }

    void packageIsRemovedFromEveryTarget()
    {
        InstallRig rig;
        const QString a = rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        const QString b = rig.addTarget(u"InDesign 2020"_s, u"150"_s);
        rig.plugins.updateWithArray(
            {InstallRig::build(u"P"_s, u"Own"_s, 140), InstallRig::build(u"P"_s, u"Shared"_s, 140),
                InstallRig::build(u"Q"_s, u"Shared"_s, 140), InstallRig::build(u"Q"_s, u"Second"_s, 140)});
        rig.addPackage(u"Pack"_s, u"P"_s);
        rig.addPackage(u"Other"_s, u"Q"_s);
        for (const QString &target : {a, b}) {
            writeInstalledPlugin(target, u"Own"_s, u"2.0"_s, u"14.0"_s);
            writeInstalledPlugin(target, u"Shared"_s, u"2.0"_s, u"14.0"_s);
        }
        writeInstalledPlugin(a, u"Second"_s, u"2.0"_s, u"14.0"_s); // so that the other package is whole here
        Ended ended;
        rig.flow.uninstallWithPrefix(u"P"_s, ended.here());
        QTRY_COMPARE(ended.times, 1);
        QVERIFY(ended.outcome.failures().isEmpty());
        QCOMPARE(ended.outcome.planned, 3);
        QVERIFY(!QFile::exists(pluginIn(a, u"Own"_s)) && !QFile::exists(pluginIn(b, u"Own"_s)));
        QVERIFY(QFile::exists(pluginIn(a, u"Shared"_s)));
        QVERIFY(!QFile::exists(pluginIn(b, u"Shared"_s)));
        QVERIFY(!rig.plugins.hasUnfinishedActions());
        QVERIFY(rig.presenter.shown.isEmpty());
    }

    void operationsOnSharedBuildsWaitForEachOther()
    {
        InstallRig rig;
        const QString a = rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        rig.plugins.updateWithArray({InstallRig::build(u"P"_s, u"Plug"_s, 140),
            InstallRig::build(u"Q"_s, u"Plug"_s, 140), InstallRig::build(u"R"_s, u"Third"_s, 140)});
        for (const QString &prefix : {u"P"_s, u"Q"_s, u"R"_s}) {
            rig.addPackage(u"Pack "_s + prefix, prefix);
        }
        QStringList order;
        const auto note = [&](const QString &name) {
            return [&order, name](const InstallOutcome &outcome) {
                order.append(u"%1 %2 %3"_s.arg(name).arg(outcome.planned).arg(outcome.failures().size()));
            };
        };
        rig.flow.installWithPrefix(u"P"_s, false, note(u"P"_s));
        rig.flow.installWithPrefix(u"P"_s, false, note(u"P again"_s));
        rig.flow.installWithPrefix(u"Q"_s, false, note(u"Q"_s));
        rig.flow.installWithPrefix(u"R"_s, false, note(u"R"_s));
        // Two side by side; the others wait for what they share.
        QTRY_COMPARE(rig.service.downloads.size(), 2);
        while (!rig.service.downloads.isEmpty()) {
            const bool third = rig.service.downloads[0].destination.contains(u"Third"_s);
            rig.answerDownload(InstallRig::archiveOf(third ? u"Third"_s : u"Plug"_s, 140));
        }
        QTRY_COMPARE(order.size(), 4);
        QVERIFY(rig.service.downloads.isEmpty());
        QVERIFY(order.contains(u"R 1 0"_s));
        order.removeOne(u"R 1 0"_s);
        QCOMPARE(order, (QStringList{u"P 1 0"_s, u"P again 0 0"_s, u"Q 0 0"_s}));
        QVERIFY(QFile::exists(pluginIn(a, u"Plug"_s)) && QFile::exists(pluginIn(a, u"Third"_s)));
    }

    // Two packages bring the same plug-in in two versions, which share the place of their archive.
    void anArchiveIsNotTakenForThatOfAnotherVersion()
    {
        InstallRig rig;
        const QString a = rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        rig.plugins.updateWithArray({InstallRig::build(u"P"_s, u"Plug"_s, 140, u"1.0"_s),
            InstallRig::build(u"Q"_s, u"Plug"_s, 140, u"2.0"_s)});
        rig.addPackage(u"One"_s, u"P"_s);
        rig.addPackage(u"Other"_s, u"Q"_s);
        const QString information = u"CFBundleShortVersionString"_s;
        for (const auto &[prefix, version] :
            {std::pair(u"P"_s, u"1.0"_s), std::pair(u"Q"_s, u"2.0"_s), std::pair(u"P"_s, u"1.0"_s)}) {
            QVERIFY(QDir(pluginIn(a, u"Plug"_s)).removeRecursively());
            Ended ended;
            rig.flow.installWithPrefix(prefix, false, ended.here());
            QVERIFY(answerNext(rig, InstallRig::archiveOf(u"Plug"_s, 140, version)));
            QTRY_COMPARE(ended.times, 1);
            QCOMPARE(bundleInformation(pluginIn(a, u"Plug"_s))->value(information), version);
        }
    }

    void everyPackageOfAPrefixIsTaken()
    {
        InstallRig rig;
        rig.addPackage(u"One"_s, u"P"_s);
        rig.addPackage(u"Two"_s, u"P"_s);
        rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        rig.plugins.updateWithArray(
            {InstallRig::build(u"P"_s, u"../Plug"_s, 140), InstallRig::build(u"P"_s, u"B"_s, 140)});
        Ended ended;
        rig.flow.uninstallWithPrefix(u"P"_s, ended.here());
        QTRY_COMPARE(ended.times, 1);
        QCOMPARE(ended.outcome.planned, 2);
        // A name that leads elsewhere is refused, in both.
        QCOMPARE(ended.outcome.failures().size(), 2);
        for (const auto &[package, prefix] :
            {std::pair(Record(), u"P"_s), std::pair(rig.package(u"P"_s), QString())}) {
            rig.flow.installWithPackage(package, prefix, false, ended.here());
            rig.flow.uninstallWithPackage(package, prefix, ended.here());
        }
        rig.flow.installWithPrefix(u"nobody's"_s, false, ended.here());
        QTRY_COMPARE(ended.times, 6);
        QCOMPARE(ended.outcome.planned, 0);
        QVERIFY(ended.outcome.failures().isEmpty());
    }

    // Two versions of one build have one archive path: each is installed before the other overwrites it.
    void versionsWithOneArchivePathTakeTurns()
    {
        const QJsonArray stored{InstallRig::build(u"P"_s, u"Plug"_s, 140, u"2.0"_s),
            InstallRig::build(u"P"_s, u"Plug"_s, 140, u"2.1"_s)};
        InstallRig rig(storedDefinitions({{u"P"_s, stored}}));
        const QString a = rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        rig.addPackage(u"Pack"_s, u"P"_s);
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        for (const QString &version : {u"2.0"_s, u"2.1"_s}) {
            QCOMPARE(ended.times, 0);
            QVERIFY(answerNext(rig, InstallRig::archiveOf(u"Plug"_s, 140, version)));
        }
        QTRY_COMPARE(ended.times, 1);
        QVERIFY(ended.outcome.failures().isEmpty());
        QCOMPARE(bundleInformation(pluginIn(a, u"Plug"_s))->value(u"CFBundleShortVersionString"_s), u"2.1"_s);
    }

    void nobodyIsAskedOrTold()
    {
        OnePackage rig;
        const Manner unattended{.skipRunningTargets = true, .unattended = true};
        rig.needHelper();
        rig.helper.state.proxy = std::make_shared<HelperProxy>(rig.files, 14); // whose successor needs rights
        Ended ended;
        QVERIFY(rig.install(ended, unattended));
        QVERIFY(LogCapture::contains(u"Using Installer Fallback!"_s));
        QVERIFY(rig.helper.calls.isEmpty());
        QVERIFY(!rig.helper.asksForRights);
        rig.flow.uninstallWithPrefix(u"P"_s, unattended, ended.here());
        QTRY_COMPARE(ended.times, 2);
        QVERIFY(rig.helper.calls.isEmpty());
        QVERIFY(rig.presenter.shown.isEmpty());
        // It was no refusal: a person is asked the next time. The archive is there.
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(ended.times, 3);
        QVERIFY(!rig.helper.calls.isEmpty());
    }
};

QTEST_GUILESS_MAIN(InstallFlowTest)
#include "test_install_flow.moc"
