// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/LinuxFileOperations.h"
#include "platform/linux/files/SafePath.h"
#include "platform/PartFiles.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/Privileges.h"
#include "support/SampleBundles.h"
#include "support/Table.h"
#include "support/ZipWriter.h"

#include <QTest>

#include <atomic>
#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

bool changeMode(const QString &path, mode_t mode)
{
    return ::chmod(QFile::encodeName(path).constData(), mode) == 0;
}

/// Somebody who swaps the folder "inner" of a bundle for a link to @p outside and back, wherever below
/// @p folder the bundle stands, as fast as possible.
void swapFolders(const QString &folder, const QString &outside, const std::atomic_bool &stop)
{
    const QByteArray target = QFile::encodeName(outside);
    while (!stop) {
        const QStringList places = entries(folder);
        for (const QString &place : places) {
            const QString bundle =
                folder + u'/' + place + (place.startsWith(u".tolvane"_s) ? u"/A.InDesignPlugin"_s : u""_s);
            const QByteArray inner = QFile::encodeName(bundle + u"/inner"_s);
            if (::rename(inner.constData(), (inner + "-away").constData()) == 0) {
                (void)::symlink(target.constData(), inner.constData());
                std::this_thread::yield();
                (void)::unlink(inner.constData());
                (void)::rename((inner + "-away").constData(), inner.constData());
            }
        }
    }
}

} // namespace

class FileOperationsTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        FolderTest::init();
        m_error.reset();
    }

    void existenceFollowsLinks()
    {
        QVERIFY(writeFile(path(u"folder/file"_s), "x"));
        QVERIFY(QFile::link(path(u"folder"_s), path(u"link"_s)));
        QVERIFY(QFile::link(path(u"missing"_s), path(u"dangling"_s)));
        bool isFolder = false;
        QVERIFY(m_files.fileExists(path(u"link"_s), &isFolder) && isFolder);
        QVERIFY(m_files.fileExists(path(u"folder/file"_s), &isFolder) && !isFolder);
        QVERIFY(!m_files.fileExists(path(u"dangling"_s)));
    }

    void testsAnswerForTheEffectiveUser_data()
    {
        const Table<int, int, bool, bool, bool, bool> row;
        row("plain", 0755, 0644, true, true, false, true);
        row("write-protected", 0755, 0555, true, false, true, true);
        row("secret", 0755, 0200, false, true, false, true);
        row("folder write-protected", 0555, 0644, true, true, false, false);
        row("folder shut", 0600, 0777, false, false, false, false);
        row("own file in a shared folder", 01777, 0644, true, true, false, true);
    }

    void testsAnswerForTheEffectiveUser()
    {
        const auto [folderMode, fileMode, readable, writable, executable, deletable] =
            columns<int, int, bool, bool, bool, bool>();
        const QString file = path(u"folder/file"_s);
        QVERIFY(writeFile(file, "x"));
        QVERIFY(changeMode(file, static_cast<mode_t>(fileMode)));
        QVERIFY(changeMode(path(u"folder"_s), static_cast<mode_t>(folderMode)));
        {
            const WithoutPrivileges plain;
            QCOMPARE(m_files.isReadable(file), readable);
            QCOMPARE(m_files.isWritable(file), writable);
            QCOMPARE(m_files.isExecutable(file), executable);
            QCOMPARE(m_files.isDeletable(file), deletable);
        }
        QVERIFY(changeMode(path(u"folder"_s), 0755));
        QVERIFY(!m_files.isDeletable(path(u"folder/missing"_s)));
        QVERIFY(!m_files.isDeletable(u"/"_s));
    }

    void foldersAreMadeBelowWhatIsThere()
    {
        const QString above = path();
        QVERIFY(m_files.prepareFolder(path(u"a/b/c"_s), above, &m_error));
        QVERIFY(m_files.prepareFolder(path(u"a/b/c"_s), path(u"a/b"_s), &m_error));
        QVERIFY(QFileInfo(path(u"a/b/c"_s)).isDir());
        QVERIFY(writeFile(path(u"file"_s), "x"));
        const auto codeOf = [&](const QString &folder, const QString &within) {
            m_error.reset();
            return m_files.prepareFolder(folder, within, &m_error) ? 0 : m_error->code;
        };
        QCOMPARE(codeOf(path(u"file"_s), above), ENOTDIR);
        QCOMPARE(codeOf(path(u"file/inside"_s), above), ENOTDIR);
        QVERIFY(m_error->description.contains(path(u"file/inside"_s)));
        QCOMPARE(codeOf(path(u"gone/inside"_s), path(u"gone"_s)), ENOENT);
        QCOMPARE(entries(above), (QStringList{u"a"_s, u"file"_s}));
    }

    void removingStaysInside()
    {
        QVERIFY(writeFile(path(u"outside/file"_s), "x"));
        QVERIFY(writeFile(path(u"tree/a/b/file"_s), "x"));
        QVERIFY(QFile::link(path(u"outside"_s), path(u"tree/a/link"_s)));
        QVERIFY(QFile::link(path(u"outside"_s), path(u"link"_s)));
        QVERIFY(m_files.removeItem(path(u"tree/"_s), &m_error));
        QVERIFY(m_files.removeItem(path(u"link"_s), &m_error));
        QCOMPARE(entries(path()), QStringList{u"outside"_s});
        QCOMPARE(entries(path(u"outside"_s)), QStringList{u"file"_s});
        for (const QString &wrong :
            {path(u"missing"_s), u"/"_s, path(u"outside/."_s), path(u"outside/.."_s)}) {
            m_error.reset();
            QVERIFY(!m_files.removeItem(wrong, &m_error));
            QCOMPARE(m_error->code, wrong.endsWith(u"missing"_s) ? ENOENT : EINVAL);
        }
        QVERIFY(QFileInfo::exists(path(u"outside/file"_s)));
    }

    void removalTakesOutOfSightFirst()
    {
        const LogCapture log;
        QVERIFY(writeFile(path(u"tree/a/file"_s), "x"));
        QVERIFY(changeMode(path(u"tree/a"_s), 0555));
        {
            // What resists does so out of sight.
            const WithoutPrivileges plain;
            QVERIFY(m_files.removeItem(path(u"tree"_s), &m_error));
        }
        QCOMPARE(m_error->code, EACCES);
        const QStringList left = entries(path());
        QCOMPARE(left.size(), 1);
        QVERIFY(left.first().startsWith(u".tolvane-removed-"_s));
        QVERIFY(LogCapture::mentions(u"what was removed could not be deleted yet: Permission denied"_s));
        QVERIFY(changeMode(path(left.first() + u"/a"_s), 0755));
        QVERIFY(clearLeftovers(path()));
        QCOMPARE(entries(path()), QStringList());

        QVERIFY(writeFile(path(u"tree/file"_s), "x"));
        QVERIFY(changeMode(path(), 0555));
        {
            const WithoutPrivileges plain;
            QVERIFY(!m_files.removeItem(path(u"tree"_s), &m_error));
        }
        QVERIFY(changeMode(path(), 0755));
        QCOMPARE(m_error->domain, QString::fromLatin1(fileErrorDomain));
        QCOMPARE(m_error->code, EACCES);
        QCOMPARE(m_error->description, u"Could not remove \"%1\": Permission denied."_s.arg(path(u"tree"_s)));
        QCOMPARE(m_error->detailedErrors.first().description, u"no permission to change the folder"_s);
        QVERIFY(QFileInfo::exists(path(u"tree/file"_s)));
    }

    void deepTreesNeedFewDescriptors()
    {
        constexpr int levels = 500;
        QVERIFY(QDir().mkpath(path(u"tree"_s)));
        FileDescriptor folder(::open(QFile::encodeName(path(u"tree"_s)).constData(), O_RDONLY));
        for (int i = 0; i < levels; ++i) {
            QCOMPARE(::mkdirat(folder.get(), "deeper", 0755), 0);
            folder = FileDescriptor(::openat(folder.get(), "deeper", O_RDONLY | O_DIRECTORY));
        }
        QVERIFY(writeFile(path(u"file"_s), "x"));
        for (int i = 0; i < 3000; ++i) {
            QCOMPARE(::linkat(AT_FDCWD, QFile::encodeName(path(u"file"_s)).constData(), folder.get(),
                         QByteArray::number(i).constData(), 0),
                0);
        }
        QVERIFY(QDir().mkpath(path(u"tree/.tolvane-deep-1"_s)));
        rlimit before{};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
        const rlimit few{200, before.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &few), 0);
        const bool removed = m_files.removeItem(path(u"tree"_s), &m_error);
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
        QVERIFY2(removed, m_error ? qPrintable(m_error->description) : "");
        QVERIFY(!QFileInfo::exists(path(u"tree"_s)));
    }

    void copiesAreWhole()
    {
        const QByteArray large(1'000'000, 'x');
        QVERIFY(writeFile(path(u"tree/a/large"_s), large));
        QVERIFY(writeFile(path(u"tree/program"_s), "run"));
        QVERIFY(changeMode(path(u"tree/program"_s), 04755));
        QVERIFY(changeMode(path(u"tree/a"_s), 0555));
        QCOMPARE(::symlink("/nowhere", QFile::encodeName(path(u"tree/link"_s)).constData()), 0);
        QVERIFY(m_files.copyItem(path(u"tree"_s), path(u"copy"_s), &m_error));
        QCOMPARE(contentsOf(path(u"copy/a/large"_s)), large);
        QCOMPARE(modeOf(path(u"copy/a"_s)), mode_t(0555));
        QCOMPARE(modeOf(path(u"copy/program"_s)), mode_t(0755));
        QCOMPARE(QFile::symLinkTarget(path(u"copy/link"_s)), u"/nowhere"_s);
        QVERIFY(changeMode(path(u"copy/a"_s), 0755) && changeMode(path(u"tree/a"_s), 0755));
        QCOMPARE(entries(path()), (QStringList{u"copy"_s, u"tree"_s}));
    }

    void aSourceThatBecameShorterIsAFailure()
    {
        QVERIFY(writeFile(path(u"source"_s), "0123456789"));
        QVERIFY(writeFile(path(u"target"_s), ""));
        const FileDescriptor from(::open(QFile::encodeName(path(u"source"_s)).constData(), O_RDONLY));
        const FileDescriptor to(::open(QFile::encodeName(path(u"target"_s)).constData(), O_WRONLY));
        errno = EINTR; // what an earlier call may have left
        QVERIFY(!safepath::copyAll(from.get(), to.get(), 20));
        QCOMPARE(errno, EIO);
        QVERIFY(safepath::copyAll(from.get(), to.get(), 5));
        QCOMPARE(contentsOf(path(u"target"_s)), "012345678901234"_ba);
    }

    void holesCostNothing()
    {
        constexpr off_t large = off_t(64) * 1024 * 1024;
        const QByteArray name = QFile::encodeName(path(u"source"_s));
        const FileDescriptor source(::open(name.constData(), O_RDWR | O_CREAT, 0600));
        for (const off_t at : {off_t(0), large}) {
            QCOMPARE(::pwrite(source.get(), "bytes", 5, at), ssize_t(5));
        }
        QCOMPARE(::ftruncate(source.get(), 2 * large), 0);
        QVERIFY(m_files.copyItem(path(u"source"_s), path(u"copy"_s), &m_error));
        struct stat facts { };
        QCOMPARE(::stat(QFile::encodeName(path(u"copy"_s)).constData(), &facts), 0);
        QCOMPARE(facts.st_size, 2 * large);
        QVERIFY(facts.st_blocks * 512 < large / 16);
        QFile copy(path(u"copy"_s));
        QVERIFY(copy.open(QIODevice::ReadOnly) && copy.seek(large));
        QCOMPARE(copy.read(6), QByteArray("bytes\0", 6));
    }

    void copiesThatAreRefused_data()
    {
        const Table<QString, QString, int> row;
        row("target exists", u"tree"_s, u"file"_s, EEXIST);
        row("target is a dangling link", u"tree"_s, u"dangling"_s, EEXIST);
        row("no source", u"missing"_s, u"copy"_s, ENOENT);
        row("no target folder", u"file"_s, u"missing/copy"_s, ENOENT);
        row("pipe inside", u"tree"_s, u"copy"_s, EINVAL);
        row("into itself", u"tree"_s, u"tree/copy"_s, EINVAL);
    }

    void copiesThatAreRefused()
    {
        const auto [source, target, code] = columns<QString, QString, int>();
        QVERIFY(writeFile(path(u"file"_s), "x"));
        QVERIFY(writeFile(path(u"tree/a/file"_s), "x"));
        QVERIFY(QFile::link(path(u"missing"_s), path(u"dangling"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"tree/pipe"_s)).constData(), 0600), 0);
        QVERIFY(!m_files.copyItem(path(source), path(target), &m_error));
        QCOMPARE(m_error->code, code);
        QCOMPARE(entries(path()), (QStringList{u"dangling"_s, u"file"_s, u"tree"_s}));
        QCOMPARE(entries(path(u"tree"_s)), (QStringList{u"a"_s, u"pipe"_s}));
    }

    void partsOfEarlierRunsGo()
    {
        const QStringList names{u"140/a.zip"_s, u"140/a.zip.part-1-1"_s, u"state.part-1-1"_s,
            u"140/a.zip.part-2-1"_s, u"140/a.zip.part-3-1"_s};
        const QDateTime start = QDateTime::currentDateTime();
        for (const QString &name : names) {
            QVERIFY(writeFile(path(name), "x"));
            QFile file(path(name));
            QVERIFY(file.open(QIODevice::ReadWrite));
            const int age = name.endsWith(u"2-1") ? 0 : name.endsWith(u"3-1") ? -1 : 1;
            QVERIFY(file.setFileTime(start.addDays(-age), QFileDevice::FileModificationTime));
        }
        removePartsOf(path(), start);
        QCOMPARE(entries(path()), QStringList{u"140"_s});
        QCOMPARE(entries(path(u"140"_s)), (QStringList{u"a.zip"_s, u"a.zip.part-2-1"_s}));
    }

    void nothingOutsideChangesInARace()
    {
        moveToMemory(); // the disk would only slow the race down
        const QString folder = path(u"Tolvane"_s);
        const QString bundle = folder + u"/A.InDesignPlugin"_s;
        const QString outside = path(u"outside"_s);
        QList<ZipMember> members;
        QStringList names;
        for (int i = 10; i < 50; ++i) {
            members.append({"A.InDesignPlugin/inner/deep/" + QByteArray::number(i), "overwritten"});
            names.append(QString::number(i));
            QVERIFY(writeFile(outside + u"/deep/"_s + names.last(), "untouched"));
            QVERIFY(changeMode(outside + u"/deep/"_s + names.last(), 0444));
        }
        members.append(ZipMember{"A.InDesignPlugin/inner/new/file", "new"});
        QVERIFY(writeFile(path(u"a.zip"_s), zipArchive(members)));
        QVERIFY(m_files.prepareFolder(folder, path(), &m_error));
        const std::unique_ptr<QFile> archive = m_files.openVerified(path(u"a.zip"_s), {}, &m_error);
        QVERIFY(archive);

        std::atomic_bool stop = false;
        std::thread adversary([&] { swapFolders(folder, outside, stop); });
        for (int i = 0; i < 200; ++i) {
            // Each may fail, none may do harm.
            m_files.extractZip(*archive, bundle, nullptr);
            (void)m_files.addPermissionsAndOwnerToTree(bundle, 0600, ::getuid());
            m_files.copyItem(bundle, folder + u"/copy"_s, nullptr);
            m_files.removeItem(bundle, nullptr);
            m_files.removeItem(folder + u"/copy"_s, nullptr);
        }
        stop = true;
        adversary.join();

        QCOMPARE(entries(outside), QStringList{u"deep"_s});
        QCOMPARE(entries(outside + u"/deep"_s), names);
        for (const QString &name : names) {
            QCOMPARE(contentsOf(outside + u"/deep/"_s + name), QByteArray("untouched"));
            QCOMPARE(modeOf(outside + u"/deep/"_s + name), mode_t(0444));
        }
    }

private:
    LinuxFileOperations m_files;
    std::optional<BrevokError> m_error;
};

QTEST_GUILESS_MAIN(FileOperationsTest)
#include "test_file_operations.moc"
