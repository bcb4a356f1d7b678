// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/LinuxFileOperations.h"
#include "support/FileSizeLimit.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/Privileges.h"
#include "support/SampleBundles.h"
#include "support/ZipWriter.h"

#include <QProcess>
#include <QTest>

#include <cerrno>
#include <clocale>

#include <sys/stat.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class ZipExtractionTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        FolderTest::init();
        m_folder = path(u"Tolvane"_s);
        m_error.reset();
        QVERIFY(m_files.prepareFolder(m_folder, path(), &m_error));
    }

    void bundleIsUnpacked()
    {
        QVERIFY(QFile::link(path(u"outside"_s), m_folder + u"/.tolvane-unpack-link"_s));
        QVERIFY(writeFile(m_folder + u"/.tolvane-unpack-stale/half"_s, "left by a crash"));
        const mode_t mask = ::umask(077);
        const bool done = extract(zipArchive(
            {{"./", {}, zipFolder}, {"./A/", {}, 0040777}, {"A/Versions/1//code", "program", 0100711, true},
                {"A/data", "data", 0100666}, {"A/Versions/Current", "1", zipLink},
                {"A/code", "./Versions/Current/code", zipLink}, {"A/Versions/back", "../data", zipLink},
                /* called a pipe, but with contents: a file */ {"A/pipe", "flow", 0010644},
                {"__MACOSX/A/._data", "fork"}, {"A/._data", "fork"}, {"A/.DS_Store", "view"}}));
        ::umask(mask);
        QVERIFY2(done, m_error ? qPrintable(m_error->description) : "");
        QFile::remove(m_folder + u"/.tolvane-unpack-link"_s);
        QCOMPARE(unpacked(), QStringList{u"A"_s});
        QCOMPARE(entries(m_folder + u"/A"_s), (QStringList{u"Versions"_s, u"code"_s, u"data"_s, u"pipe"_s}));
        QCOMPARE(contentsOf(m_folder + u"/A/code"_s), QByteArray("program"));
        QCOMPARE(contentsOf(m_folder + u"/A/Versions/back"_s), QByteArray("data"));
        QCOMPARE(contentsOf(m_folder + u"/A/pipe"_s), QByteArray("flow"));
        QCOMPARE(modeOf(m_folder + u"/A"_s), mode_t(0755));
        QCOMPARE(modeOf(m_folder + u"/A/Versions/1"_s), mode_t(0755));
        QCOMPARE(modeOf(m_folder + u"/A/Versions/1/code"_s), mode_t(0755));
        QCOMPARE(modeOf(m_folder + u"/A/data"_s), mode_t(0644));
        QCOMPARE(QFileInfo(m_folder + u"/A/data"_s).lastModified().date(), QDate(2024, 1, 1));

        // What stands there is replaced whole, a folder by a file too.
        QVERIFY(extract(zipArchive({{"A", "now a file"}, {"B.txt", "new"}})));
        QCOMPARE(unpacked(), QStringList{u"A"_s});
        QCOMPARE(contentsOf(m_folder + u"/A"_s), QByteArray("now a file"));
        // A refused archive replaces nothing.
        QVERIFY(!extract(zipArchive({{"A", "newer"}, {"../out", "x"}})));
        QCOMPARE(contentsOf(m_folder + u"/A"_s), QByteArray("now a file"));
    }

    void archiveOfAnotherProgramIsUnpacked()
    {
        const QByteArray large = noise(700'000);
        QVERIFY(writeFile(path(u"A.InDesignPlugin/Contents/large"_s), large));
        QVERIFY(QFile::link(u"large"_s, path(u"A.InDesignPlugin/Contents/link"_s)));
        QCOMPARE(QProcess::execute(u"bsdtar"_s,
                     {u"--format"_s, u"zip"_s, u"-cf"_s, path(u"b.zip"_s), u"-C"_s, path(),
                         u"A.InDesignPlugin"_s}),
            0);
        QVERIFY(extractFile(path(u"b.zip"_s), m_folder + u"/A.InDesignPlugin"_s));
        QCOMPARE(contentsOf(m_folder + u"/A.InDesignPlugin/Contents/link"_s), large);
    }

    void namesAreUtf8InEveryLocale()
    {
        constexpr quint16 utf8Flag = 0x0800;
        const QByteArray name = u"Gr\u00fc\u00dfe \u65e5\u672c"_s.toUtf8();
        // NOLINTBEGIN(concurrency-mt-unsafe): this test has no other thread
        const QByteArray before = std::setlocale(LC_ALL, nullptr);
        std::setlocale(LC_ALL, "C");
        const bool done =
            extract(zipArchive({{name + "/a", "x", zipFile, false, -1, utf8Flag}, {name + "/b", "y"}}),
                QString::fromUtf8(name));
        std::setlocale(LC_ALL, before.constData());
        // NOLINTEND(concurrency-mt-unsafe)
        QVERIFY2(done, m_error ? qPrintable(m_error->description) : "");
        QCOMPARE(contentsOf(m_folder + u'/' + QString::fromUtf8(name) + u"/a"_s), QByteArray("x"));
        QCOMPARE(contentsOf(m_folder + u'/' + QString::fromUtf8(name) + u"/b"_s), QByteArray("y"));
    }

    void unusableDestinations()
    {
        const QString archive = path(u"a.zip"_s);
        QVERIFY(writeFile(archive, zipArchive({{"A/f", "x"}})));
        const auto codeOf = [&](const QString &from, const QString &folder) {
            m_error.reset();
            const bool done = extractFile(from, folder + u"/A"_s);
            return done || !m_error ? 0 : m_error->code;
        };
        QCOMPARE(codeOf(archive, path(u"missing"_s)), ENOENT);
        QCOMPARE(codeOf(archive, archive), ENOTDIR);
        QCOMPARE(codeOf(path(u"missing.zip"_s), m_folder), ENOENT);
        QCOMPARE(codeOf(m_folder, m_folder), EINVAL);
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe.zip"_s)).constData(), 0600), 0);
        QCOMPARE(codeOf(path(u"pipe.zip"_s), m_folder), EINVAL);
        QCOMPARE(::chmod(QFile::encodeName(m_folder).constData(), 0555), 0);
        {
            const WithoutPrivileges plain;
            QCOMPARE(codeOf(archive, m_folder), EACCES);
        }
        QCOMPARE(unpacked(), QStringList());
    }

    void fullDiskLeavesNothing()
    {
        const QByteArray archive =
            zipArchive({{"A/first", noise(100'000)}, {"A/second", noise(2'000'000), zipFile, true}});
        QVERIFY(writeFile(path(u"a.zip"_s), archive));
        {
            const FileSizeLimit limit(500'000);
            QVERIFY(!extractFile(path(u"a.zip"_s), m_folder + u"/A"_s));
        }
        QCOMPARE(m_error->code, EFBIG);
        QVERIFY(m_error->description.contains(u"A/second"_s));
        QCOMPARE(unpacked(), QStringList());
    }

private:
    [[nodiscard]] bool extract(const QByteArray &archive, const QString &name = u"A"_s)
    {
        return writeFile(path(u"a.zip"_s), archive) && extractFile(path(u"a.zip"_s), m_folder + u'/' + name);
    }

    [[nodiscard]] bool extractFile(const QString &archive, const QString &target)
    {
        const std::unique_ptr<QFile> source = m_files.openVerified(archive, {}, &m_error);
        return source && m_files.extractZip(*source, target, &m_error);
    }

    [[nodiscard]] QStringList unpacked() const { return entries(m_folder); }

    LinuxFileOperations m_files;
    QString m_folder;
    std::optional<BrevokError> m_error;
};

QTEST_GUILESS_MAIN(ZipExtractionTest)
#include "test_zip_extraction.moc"
