// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Files of the program's own are handed to the helper as copies in the temporary folder.

#include "platform/linux/privileges/BusInstaller.h"
#include "support/FileSizeLimit.h"
#include "support/SampleBundles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <sys/file.h>
#include <unistd.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::writeFile;

class BusInstallerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void copiesGoWithTheirOwner();
    void copiesAreWholeOrNotHandedOver();
    void nothingIsWaitedForWithoutABus();
};

void BusInstallerTest::copiesGoWithTheirOwner()
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

void BusInstallerTest::copiesAreWholeOrNotHandedOver()
{
    const QTemporaryDir folder;
    QString source = u"/etc/passwd"_s; // somebody else's
    if (::getuid() == 0) {
        source = folder.filePath(u"Tolvane.xml"_s);
        QVERIFY(writeFile(source, QByteArray(10000, 'x')));
        QCOMPARE(::chown(QFile::encodeName(source).constData(), 65534, 65534), 0);
    }
    const testing::FileSizeLimit limit(100);
    const InstallResult result = BusInstaller(QDBusConnection(u"none"_s), true)
                                     .install({.source = source, .target = folder.filePath(u"there"_s)});
    QVERIFY(!result.answer && result.failure);
    QCOMPARE(result.failure->code, EFBIG);
}

void BusInstallerTest::nothingIsWaitedForWithoutABus()
{
    BusInstaller installer(QDBusConnection(u"none"_s), true);
    std::optional<BrevokError> error;
    QVERIFY(!installer.removeItemAtPath(u"/nowhere/Tolvane/A.InDesignPlugin"_s, &error));
    QVERIFY(error && !error->description.isEmpty());
}

QTEST_GUILESS_MAIN(BusInstallerTest)
#include "test_bus_installer.moc"
