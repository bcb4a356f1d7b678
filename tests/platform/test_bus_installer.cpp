// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Files of the program's own are handed to the helper as copies in the temporary folder.

#include "platform/linux/privileges/BusInstaller.h"
#include "support/FileSizeLimit.h"
#include "support/FolderTest.h"
#include "support/SampleBundles.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>

#include <sys/file.h>
#include <unistd.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class BusInstallerTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void copiesGoWithTheirOwner()
    {
        const QString left = QDir::temp().filePath(u"brevok-handed-over-left.xml"_s);
        const QString needed = QDir::temp().filePath(u"brevok-handed-over-needed.xml"_s);
        QVERIFY(writeFile(left, "x") && writeFile(needed, "x"));
        QFile held(needed);
        QVERIFY(held.open(QIODevice::ReadOnly) && ::flock(held.handle(), LOCK_EX) == 0);
        BusInstaller::clearLeftovers();
        QVERIFY(!QFileInfo::exists(left));
        QVERIFY(QFile::remove(needed));
    }

    void copiesAreWholeOrNotHandedOver()
    {
        QString source = u"/etc/passwd"_s; // somebody else's
        if (::getuid() == 0) {
            source = path(u"Tolvane.xml"_s);
            QVERIFY(writeFile(source, QByteArray(10000, 'x')));
            QCOMPARE(::chown(QFile::encodeName(source).constData(), 65534, 65534), 0);
        }
        const FileSizeLimit limit(100);
        const InstallResult result = BusInstaller(QDBusConnection(u"none"_s), true)
                                         .install({.source = source, .target = path(u"there"_s)});
        QVERIFY(!result.answer && result.failure);
        QCOMPARE(result.failure->code, EFBIG);
    }

    void nothingIsWaitedForWithoutABus()
    {
        BusInstaller installer(QDBusConnection(u"none"_s), true);
        std::optional<BrevokError> error;
        QVERIFY(!installer.removeItemAtPath(u"/nowhere/Tolvane/A.InDesignPlugin"_s, &error));
        QVERIFY(error && !error->description.isEmpty());
    }
};

QTEST_GUILESS_MAIN(BusInstallerTest)
#include "test_bus_installer.moc"
