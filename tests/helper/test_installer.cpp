// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "helper/BrevokInstaller.h"
#include "platform/linux/files/LinuxFileOperations.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Table.h"
#include "support/ZipWriter.h"

#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::contentsOf;
using testing::LogCapture;
using testing::modeOf;
using testing::Table;
using testing::writeFile;

namespace {

uid_t ownerOf(const QString &path)
{
    struct stat facts { };
    return ::lstat(QFile::encodeName(path).constData(), &facts) == 0 ? facts.st_uid : uid_t(-1);
}

} // namespace

using WrongInputTouchesNothing = Table<QString, QString, QString>;
using FailuresThatStillAnswerYes = Table<QString, bool>;
using Removing = Table<QString, bool, QStringList>;

class InstallerTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        FolderTest::init();
        m_error.reset();
        m_log.emplace();
    }

    void cleanup()
    {
        m_log.reset();
        FolderTest::cleanup();
    }

    void wrongInputTouchesNothing_data()
    {
        const WrongInputTouchesNothing row;
        row("no source", QString(), "T/A.InDesignPlugin", "install failed, source path is wrong: -");
        row("empty source", "", "T/A.InDesignPlugin", "install failed, source path is wrong: ");
        row("no target", "/a.zip", QString(), "install failed, target path is wrong: -");
        row("target without folder", "/a.zip", "A.InDesignPlugin/", "install failed, target path is wrong: ");
    }

    void wrongInputTouchesNothing()
    {
        const auto [source, target, line] = WrongInputTouchesNothing::current();
        QVERIFY(!m_installer.installPluginFromSource(source, target, ::getuid(), &m_error));
        QVERIFY(m_error);
        QCOMPARE(m_error->domain, QString::fromLatin1(installerErrorDomain));
        QCOMPARE(m_error->code, 1);
        QCOMPARE(m_error->description, u"Incorrect input to installPlugin:"_s);
        QCOMPARE(LogCapture::lines(), QStringList{line});
        QVERIFY(!QFileInfo::exists(target));
    }

    void archiveReplacesTheOldBundle()
    {
        const QString folder = path(u"Plug-Ins/Tolvane"_s);
        const QString target = folder + u"/A.InDesignPlugin"_s;
        const QString archive = path(u"a.ZIP"_s);
        QVERIFY(writeFile(target + u"/Contents/Old"_s, "old"));
        QVERIFY(writeFile(archive, testing::pluginArchive("A", "information", "code")));
        QVERIFY(m_installer.installPluginFromSource(archive, target, ::getuid(), &m_error));
        QVERIFY(!m_error);
        QCOMPARE(contentsOf(target + u"/Contents/Info.plist"_s), QByteArray("information"));
        const QStringList lines{u"removeItemAtPath"_s, u"removedItemAtPath: %1"_s.arg(target),
            u"unzip: %1 to: %2"_s.arg(archive, folder), u"unziped"_s};
        QCOMPARE(LogCapture::lines(), lines);
    }

    void workspaceFileIsWrittenOnce()
    {
        const QString source = path(u"Tolvane.xml"_s);
        const QString target = path(u"App/Presets/InDesign Workspaces/Tolvane.xml"_s);
        QVERIFY(QDir().mkdir(path(u"App"_s)) && writeFile(source, "first"));
        QVERIFY(m_installer.installPluginFromSource(source, target, ::getuid(), &m_error));
        QVERIFY(!m_error);
        const QStringList lines{u"copy: %1 to: %2"_s.arg(source, target), u"copied"_s};
        QCOMPARE(LogCapture::lines(), lines);

        LogCapture::clear();
        QVERIFY(writeFile(source, "second"));
        QVERIFY(!m_installer.installPluginFromSource(source, target, ::getuid(), &m_error));
        QVERIFY(m_error);
        QCOMPARE(m_error->description, u"Incorrect input to removeItemAtPath:"_s);
        QCOMPARE(contentsOf(target), QByteArray("first"));
        const QStringList refusal{
            u"remove item at path failed, wrong data: %1"_s.arg(target), u"removeItemAtPath failed"_s};
        QCOMPARE(LogCapture::lines(), refusal);
    }

    void failuresThatStillAnswerYes_data()
    {
        const FailuresThatStillAnswerYes row;
        row("archive that is none", "broken.zip", false);
        row("archive that is missing", "missing.zip", false);
        row("file that is missing", "missing.xml", true);
        row("hidden file, no archive", ".zip", true);
    }

    void failuresThatStillAnswerYes()
    {
        const auto [source, handedOver] = FailuresThatStillAnswerYes::current();
        QVERIFY(writeFile(path(u"broken.zip"_s), "no archive at all"));
        const QString target = path(u"Tolvane/A.InDesignPlugin"_s);
        QVERIFY(m_installer.installPluginFromSource(path(source), target, ::getuid(), &m_error));
        QCOMPARE(m_error.has_value(), handedOver);
        QVERIFY(LogCapture::mentions(u"Error: Could not "_s));
        QVERIFY(LogCapture::contains(handedOver ? u"copied"_s : u"unziped"_s));
        QVERIFY(LogCapture::contains(u"setUID:permissions:directory: failed missing file attributes"_s));
        QVERIFY(testing::entries(path(u"Tolvane"_s)).isEmpty());
    }

    void whatCannotGoEndsTheInstall()
    {
        const QString target = path(u"Tolvane/A.InDesignPlugin"_s);
        QVERIFY(writeFile(target, "old"));
        const QString other = target + u"/B.InDesignPlugin"_s;
        QVERIFY(!m_installer.installPluginFromSource(u"/a.zip"_s, other, ::getuid(), &m_error));
        QCOMPARE(m_error->domain, QString::fromLatin1(fileErrorDomain));
        QCOMPARE(LogCapture::lines(), QStringList{u"create dir failed %1"_s.arg(target)});
        QCOMPARE(contentsOf(target), QByteArray("old"));
    }

    void removing_data()
    {
        const Removing row;
        const QString wrong = u"remove item at path failed, wrong data: "_s;
        row("bundle", "A.InDesignPlugin", true,
            {u"removeItemAtPath"_s, u"removedItemAtPath: A.InDesignPlugin"_s});
        row("nothing there", "B.InDesignPlugin", true, {u"removeItemAtPath"_s});
        row("other kind", "Tolvane.xml", false, {wrong + u"Tolvane.xml"_s});
        row("trailing slash", "A.InDesignPlugin/", false, {wrong + u"A.InDesignPlugin/"_s});
        row("no path", QString(), false, {wrong + u'-'});
    }

    void removing()
    {
        auto [name, removed, lines] = Removing::current();
        QVERIFY(writeFile(path(u"A.InDesignPlugin/Contents/Info.plist"_s), "x"));
        QVERIFY(writeFile(path(u"Tolvane.xml"_s), "x"));
        const QString whole = name.isNull() ? QString() : path(name);
        QCOMPARE(m_installer.removeItemAtPath(whole, &m_error), removed);
        QCOMPARE(m_error.has_value(), !removed);
        if (!removed) {
            QCOMPARE(m_error->description, u"Incorrect input to removeItemAtPath:"_s);
        }
        QCOMPARE(testing::entries(path()).size(), removed && name.startsWith(u'A') ? 1 : 2);
        if (!name.isNull()) {
            lines.replaceInStrings(name, whole);
        }
        QCOMPARE(LogCapture::lines(), lines);
    }

    void attributesAreAdded()
    {
        const QString bundle = path(u"A.InDesignPlugin"_s);
        const QString outside = path(u"outside"_s);
        QVERIFY(writeFile(bundle + u"/inside/file"_s, "x"));
        QVERIFY(writeFile(outside + u"/file"_s, "x"));
        QVERIFY(QFile::link(outside, bundle + u"/link"_s));
        for (const QString &file : {bundle + u"/inside/file"_s, outside + u"/file"_s}) {
            QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0444), 0);
        }
        // Only root may give away; everybody may keep.
        const uid_t user = ::geteuid() == 0 ? 12345 : ::getuid();

        m_installer.setUID(user, 0600, bundle, false);
        QCOMPARE(modeOf(bundle + u"/inside/file"_s), mode_t(0444));
        QCOMPARE(ownerOf(bundle), user);
        m_installer.setUID(user, 0600, bundle, true);
        QCOMPARE(modeOf(bundle + u"/inside/file"_s), mode_t(0644));
        QCOMPARE(ownerOf(bundle + u"/inside/file"_s), user);
        QCOMPARE(ownerOf(bundle + u"/link"_s), user);
        QCOMPARE(modeOf(outside + u"/file"_s), mode_t(0444));
        QCOMPARE(ownerOf(outside + u"/file"_s), ::geteuid());
        QCOMPARE(LogCapture::lines(), QStringList());

        m_installer.setUID(user, 0600, QString(), true);
        m_installer.setUID(user, 0600, path(u"missing"_s), false);
        // A file of another user with a second name elsewhere is not given away; a plain user may give
        // nothing away.
        QCOMPARE(::link(QFile::encodeName(outside + u"/file"_s).constData(),
                     QFile::encodeName(bundle + u"/second"_s).constData()),
            0);
        m_installer.setUID(54321, 0, bundle + u"/second"_s, true);
        const QStringList lines{u"setUID:permissions:directory: failed missing directory path"_s,
            u"setUID:permissions:directory: failed missing file attributes"_s,
            u"Attributes change failed for: %1/second"_s.arg(bundle)};
        QCOMPARE(LogCapture::lines(), lines);
    }

private:
    std::optional<LogCapture> m_log;
    LinuxFileOperations m_files;
    BrevokInstaller m_installer{m_files};
    std::optional<BrevokError> m_error;
};

QTEST_GUILESS_MAIN(InstallerTest)
#include "test_installer.moc"
