// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "FlowRig.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>
#include <QThreadPool>

#include <sys/stat.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

using Change = std::function<void(const QString &)>;
using TargetThatChangesIsTold = Table<Change, QString>;
using HelperIsAskedWhereItIsNeeded = Table<QString, bool>;

// What comes of an install that does not go as planned, and who is told.
class InstallOutcomeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    // However many there are, and nothing waits for the user.
    void failedDownloadsAreToldOneByOne()
    {
        constexpr int count = 9;
        InstallRig rig;
        rig.presenter.waits = true;
        rig.addTarget(u"InDesign 2019"_s, u"140"_s);
        QJsonArray builds;
        for (int i = 0; i < count; ++i) {
            builds.append(InstallRig::build(u"P"_s, u"Plug%1"_s.arg(i), 140));
        }
        rig.plugins.updateWithArray(builds);
        rig.addPackage(u"Pack"_s, u"P"_s);
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(rig.service.downloads.size(), count);
        while (!rig.service.downloads.isEmpty()) {
            rig.answerDownload("short");
        }
        QTRY_COMPARE(ended.times, 1);
        QCOMPARE(ended.outcome.failures().size(), count);
        for (int i = 1; i <= count; ++i) {
            QTRY_COMPARE(rig.presenter.shown.size(), i);
            QCOMPARE(rig.presenter.up.size(), 1);
            rig.presenter.press(alertFirstButton);
        }
    }

    // It does not stay stored, and the failure stays until the next attempt or until the lists are read anew.
    void uselessArchiveIsFetchedAnew()
    {
        OnePackage rig;
        Ended ended;
        QVERIFY(rig.install(ended, {}, InstallRig::damagedArchiveOf(u"Plug"_s, 140)));
        const QList<PluginOutcome> failures = ended.outcome.failures();
        QCOMPARE(failures.size(), 1);
        QCOMPARE(failures[0].brief(), u"InDesign CC 2019: the archive is damaged"_s);
        QCOMPARE(failures[0].target, rig.target);
        QCOMPARE(failures[0].sentence(), u"Plug, InDesign CC 2019: the archive is damaged"_s);
        QVERIFY(LogCapture::mentions(u"failed: Plug, InDesign CC 2019: the archive is damaged"_s));
        QVERIFY(!rig.stored(u"P"_s, 0).contains(PluginKeys::savedVersion));
        QVERIFY(!QFile::exists(rig.archive));
        QVERIFY(rig.presenter.shown.isEmpty());
        QCOMPARE(rig.flow.lastFailures().of(u"P"_s).failureSentences(), ended.outcome.failureSentences());

        Q_EMIT rig.packages.checkFinished(false);
        QVERIFY(!rig.flow.lastFailures().all().isEmpty());
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QVERIFY(rig.flow.lastFailures().all().isEmpty());
        QTRY_COMPARE(rig.service.downloads.size(), 1);
        rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
        QTRY_COMPARE(ended.times, 2);
        QCOMPARE(ended.outcome.entries.size(), 1);
        QCOMPARE(ended.outcome.entries[0].end, PluginOutcome::End::Installed);

        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(ended.times, 3);
        QCOMPARE(ended.outcome.entries.size(), 1);
        QCOMPARE(ended.outcome.entries[0].end, PluginOutcome::End::LeftAlone);
    }

    void checksumGoesAlong()
    {
        const QByteArray checksum(64, 'A');
        OnePackage rig({{PluginKeys::checksum, QString::fromLatin1(checksum)}});
        const auto helper = rig.needHelper();
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(rig.service.downloads.size(), 1);
        QCOMPARE(rig.service.downloads[0].checksum, QByteArray::fromHex(checksum));
        rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
        QTRY_COMPARE(ended.times, 1);
        QCOMPARE(helper->lastChecksum, QByteArray::fromHex(checksum));
    }

    void checksumThatIsNoneIsAFailedDownload_data()
    {
        QTest::addColumn<QJsonValue>("checksum");
        QTest::addRow("empty") << QJsonValue(QString());
        QTest::addRow("short") << QJsonValue(QString(63, u'a'));
        QTest::addRow("long") << QJsonValue(QString(66, u'a'));
        QTest::addRow("other letters") << QJsonValue(QString(64, u'g'));
        QTest::addRow("a number") << QJsonValue(7);
    }

    void checksumThatIsNoneIsAFailedDownload()
    {
        QFETCH(QJsonValue, checksum);
        OnePackage rig({{PluginKeys::checksum, checksum}});
        // An archive that is stored already is not used either.
        writeFile(rig.archive, InstallRig::archiveOf(u"Plug"_s, 140));
        rig.left(PluginKeys::savedVersion, u"2.0"_s);
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(ended.times, 1);
        QVERIFY(rig.service.downloads.isEmpty());
        QCOMPARE(ended.outcome.failures().size(), 1);
        QCOMPARE(ended.outcome.failures()[0].reason, u"The checksum in the catalogue cannot be read."_s);
        QTRY_COMPARE(rig.presenter.shown.size(), 1);
        QVERIFY(!QFile::exists(pluginIn(rig.target, u"Plug"_s)));
    }

    void targetThatChangesIsTold_data()
    {
        const TargetThatChangesIsTold row;
        row(
            "vanishes", [](const QString &) {}, "the folder no longer exists");
        row(
            "turns into a file", [](const QString &path) { writeFile(path, "file"); },
            "something else has taken the folder's place");
        row(
            "turns into a FIFO", [](const QString &path) { ::mkfifo(qPrintable(path), 0600); },
            "something else has taken the folder's place");
        row(
            "turns into a link to nothing", [](const QString &path) { QFile::link(u"/nowhere"_s, path); },
            "the folder no longer exists");
    }

    void targetThatChangesIsTold()
    {
        const auto [change, reason] = TargetThatChangesIsTold::current();
        OnePackage rig;
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(rig.service.downloads.size(), 1);
        const QString path = rig.target.chopped(1);
        QVERIFY(QDir(path).removeRecursively());
        change(path);
        rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
        QTRY_COMPARE(ended.times, 1);
        QCOMPARE(ended.outcome.failures().size(), 1);
        QCOMPARE(ended.outcome.failures()[0].brief(), u"InDesign CC 2019: "_s + reason);
        QVERIFY(!QFile::exists(path + u"/Tolvane"_s));
        QCOMPARE(pending(rig.stored(u"P"_s, 0)), 0);
        QCOMPARE(saved(rig.stored(u"P"_s, 0)), u"2.0"_s); // the archive is not to blame
    }

    void helperIsAskedWhereItIsNeeded_data()
    {
        const HelperIsAskedWhereItIsNeeded row;
        row("the user's own folder", "Other", false);
        row("another's folder", "InDesign 2019/Plug-Ins", true);
        row("another's bundle in the user's own folder", "InDesign 2019/Plug-Ins/Tolvane/Plug.InDesignPlugin",
            true);
    }

    // Nobody asks for rights that are not needed, so that whoever would be denied them is not hindered.
    void helperIsAskedWhereItIsNeeded()
    {
        // forbidden: below the folder of applications
        const auto [forbidden, asked] = HelperIsAskedWhereItIsNeeded::current();
        OnePackage rig;
        rig.helper.authorization = -60006;
        rig.ownFiles.forbidden = {rig.folder.filePath(u"Apps/"_s + forbidden)};
        writeInstalledPlugin(rig.target, u"Plug"_s, u"1.0"_s, u"14.0"_s);
        Ended ended;
        QVERIFY(rig.install(ended));
        QVERIFY(ended.outcome.failures().isEmpty());
        rig.flow.uninstallWithPrefix(u"P"_s, ended.here());
        QTRY_COMPARE(ended.times, 2);
        QCOMPARE(ended.outcome.entries.size(), 1);
        QCOMPARE(ended.outcome.entries[0].end, PluginOutcome::End::Removed);
        QCOMPARE(rig.helper.calls.isEmpty(), !asked);
        QCOMPARE(LogCapture::contains(u"start helper"_s), asked);
        QCOMPARE(LogCapture::contains(u"Using Installer Fallback!"_s), asked);
    }

    // Background work ends although the main thread does nothing.
    void workersNeverWaitForTheMainThread()
    {
        OnePackage rig;
        rig.needHelper();
        rig.applications.running = {{.localizedName = u"InDesign"_s,
            .bundlePath = rig.folder.filePath(u"Apps/InDesign 2019/InDesign 2019.app"_s),
            .bundleVersion = u"14012"_s}};
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        rig.flow.uninstallWithPrefix(u"P"_s, ended.here());
        while (ended.times < 2) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QVERIFY(QThreadPool::globalInstance()->waitForDone(30000));
            if (!rig.service.downloads.isEmpty()) {
                rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
            }
        }
        QVERIFY(ended.outcome.failures().isEmpty());
    }
};

QTEST_GUILESS_MAIN(InstallOutcomeTest)
#include "test_install_outcome.moc"
