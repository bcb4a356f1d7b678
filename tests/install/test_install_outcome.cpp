// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "FlowRig.h"
#include "support/InRow.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

// What comes of an install that does not go as planned, and who is told.
class InstallOutcomeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    // The archive does not stay stored, and the failure stays until the next attempt or until the lists are
    // read anew.
    void uselessArchiveIsFetchedAnew()
    {
        OnePackage rig;
        const LastFailures &shown = rig.flow.lastFailures();
        Ended ended;
        QVERIFY(rig.install(ended, {}, InstallRig::damagedArchiveOf(u"Plug"_s, 140)));
        QCOMPARE(shown.of(u"P"_s).failureSentences(),
            QStringList{u"Plug, InDesign CC 2019: the archive is damaged"_s});
        QVERIFY(rig.presenter.shown.isEmpty());
        Q_EMIT rig.packages.checkFinished(false);
        QVERIFY(!shown.all().isEmpty());

        QVERIFY(rig.install(ended));
        QVERIFY(shown.all().isEmpty());
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
        helper->scripted = {true, BrevokError{.code = 1}};
        Ended ended;
        rig.flow.installWithPrefix(u"P"_s, false, ended.here());
        QTRY_COMPARE(rig.service.downloads.size(), 1);
        QCOMPARE(rig.service.downloads[0].checksum, QByteArray::fromHex(checksum));
        rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
        QTRY_COMPARE(ended.times, 1);
        QCOMPARE(helper->lastChecksum, QByteArray::fromHex(checksum));
        // An error without words, of a plug-in whose name was not at hand.
        QTRY_COMPARE(rig.presenter.shown.size(), 1);
        QCOMPARE(rig.presenter.shown[0].messageText, u"Failed to install '(null).InDesignPlugin'!"_s);
        QCOMPARE(rig.presenter.shown[0].informativeText.value_or(QString()), QString());
    }

    void checksumThatIsNoneIsAFailedDownload()
    {
        const QList<std::tuple<const char *, QJsonValue>> rows{
            {"empty", QString()},
            {"short", QString(63, u'a')},
            {"long", QString(66, u'a')},
            {"other letters", QString(64, u'g')},
            {"a number", 7},
        };
        for (const auto &[name, checksum] : rows) {
            const InRow in(name);
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
            QVERIFY(!QFile::exists(pluginIn(rig.target, u"Plug"_s)));
        }
    }

    void targetThatChangesIsTold()
    {
        for (const bool vanishes : {true, false}) {
            OnePackage rig;
            Ended ended;
            rig.flow.installWithPrefix(u"P"_s, false, ended.here());
            QTRY_COMPARE(rig.service.downloads.size(), 1);
            const QString path = rig.target.chopped(1);
            QVERIFY(QDir(path).removeRecursively());
            QVERIFY(vanishes || writeFile(path, "file"));
            rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
            QTRY_COMPARE(ended.times, 1);
            QCOMPARE(ended.outcome.failures().size(), 1);
            QCOMPARE(ended.outcome.failures()[0].brief(),
                u"InDesign CC 2019: "_s
                    + (vanishes ? u"the folder no longer exists"_s
                                : u"something else has taken the folder's place"_s));
            QVERIFY(!QFile::exists(path + u"/Tolvane"_s));
            QCOMPARE(pending(rig.stored(u"P"_s, 0)), 0);
            QCOMPARE(saved(rig.stored(u"P"_s, 0)), u"2.0"_s); // the archive is not to blame
        }
    }

    // Nobody asks for rights that are not needed, so that whoever would be denied them is not hindered.
    void helperIsAskedWhereItIsNeeded()
    {
        // what the user may not write, below the folder of applications
        const QList<std::tuple<const char *, QString, bool>> rows{
            {"the user's own folder", u"Other"_s, false},
            {"another's folder", u"InDesign 2019/Plug-Ins"_s, true},
            {"another's bundle in the user's own folder",
                u"InDesign 2019/Plug-Ins/Tolvane/Plug.InDesignPlugin"_s, true},
        };
        for (const auto &[name, forbidden, asked] : rows) {
            const InRow in(name);
            OnePackage rig;
            rig.helper.failing = u"authorize"_s;
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
    }
};

QTEST_GUILESS_MAIN(InstallOutcomeTest)
#include "test_install_outcome.moc"
