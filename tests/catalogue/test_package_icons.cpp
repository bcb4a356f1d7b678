// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "PackagesFixture.h"
#include "support/LogCapture.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = PackagesFixture;

namespace {

const QByteArray png("\x89PNG\r\n\x1a\nrest");

} // namespace

using IconsThatCannotBeCached = Table<QString, QByteArray, bool, bool>;
using IconFileNames = Table<QString, QString>;

class PackageIconsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { QVERIFY(finishBackgroundWork(10000)); }

    void iconsAreDownloadedAndCached()
    {
        Fixture f;
        BrevokPackages &packages = f.start();
        const QSignalSpy changed(&packages, &BrevokPackages::packagesIconsChanged);
        const QString address = u"https://icons.test/a/b/one.png?x=1"_s;
        const QJsonArray list{package(u"A"_s, u"P"_s, address),
            package(u"B"_s, u"Q"_s, u"https://icons.test/two.png"_s), package(u"C"_s, u"R"_s)};
        packages.updateWithArray(list);
        QCOMPARE(f.service.files.size(), 2);
        QCOMPARE(f.service.files[0].url, QUrl(address));
        QVERIFY(packages.packagesIcons().value(u"A"_s).isGeneric());

        f.answerFile(200, png);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(packages.packagesIcons().value(u"A"_s).data, png);
        f.answerFile(200, "no image");
        QCOMPARE(changed.size(), 1);
        QVERIFY(packages.packagesIcons().value(u"B"_s).isGeneric());
        QTRY_COMPARE(f.iconPath(u"B"_s), f.dataFolder + u"/two.png"_s);
        QCOMPARE(f.iconPath(u"A"_s), f.dataFolder + u"/one.png"_s);
        QFile file(f.iconPath(u"A"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), png);

        // The next list forgets the path and fetches again; what is shown stays.
        packages.updateWithArray(list);
        QVERIFY(!packages.packageRecords()[0].contains(PackageKeys::iconPath));
        QCOMPARE(packages.packagesIcons().value(u"A"_s).data, png);
        QCOMPARE(f.service.files.size(), 2);
        // A path that the service gives itself is used in place of a download.
        packages.updateWithArray(
            {with(package(u"B"_s, u"Q"_s, address), u"IconPath"_s, f.dataFolder + u"/one.png"_s)});
        QTRY_COMPARE(packages.packagesIcons().value(u"B"_s).data, png);
        QCOMPARE(f.service.files.size(), 2);
        // Where it names no image, the download follows.
        packages.updateWithArray({with(package(u"C"_s, u"R"_s, address), u"IconPath"_s, f.dataFolder)});
        QTRY_COMPARE(f.service.files.size(), 3);
    }

    void iconsThatCannotBeCached_data()
    {
        const IconsThatCannotBeCached row;
        row("transport error", "https://x/a.png", png, true, false);
        row("empty", "https://x/a.png", {}, false, false);
        row("parent for name", "https://x/y/%2E%2E", png, false, true);
        row("folder in the way", "https://x/taken", png, false, true);
        row("too long", u"https://x/"_s + QString(300, u'a'), png, false, true);
    }

    void iconsThatCannotBeCached()
    {
        const auto [address, body, failed, shown] = IconsThatCannotBeCached::current();
        Fixture f;
        QVERIFY(QDir().mkpath(f.dataFolder + u"/taken"_s));
        f.start().updateWithArray(
            {package(u"A"_s, u"P"_s, address), package(u"next"_s, u"P"_s, u"https://x/next.png"_s)});
        f.answerFile(200, body, failed ? std::optional(BrevokError{}) : std::nullopt);
        QCOMPARE(!f.packages->packagesIcons().value(u"A"_s).isGeneric(), shown);
        f.answerFile(200, png);
        QTRY_VERIFY(!f.iconPath(u"next"_s).isEmpty()); // written after the first one
        QVERIFY(f.iconPath(u"A"_s).isEmpty());
        QCOMPARE(
            QDir(f.dataFolder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name),
            (QStringList{u"next.png"_s, u"taken"_s}));
    }

    void manyIconsAreDownloadedFewAtATime()
    {
        Fixture f;
        QVERIFY(writeFile(f.dataFolder, "a file in place of the folder"));
        QJsonArray list{package(u"local"_s, u"P"_s, u"file:///etc/hostname"_s)};
        for (int i = 0; i < 100; ++i) {
            list.append(package(u"p%1"_s.arg(i), u"P"_s, u"https://x/%1.png"_s.arg(i)));
        }
        f.start().updateWithArray(list);
        int answered = 0;
        for (; answered < 100; ++answered) {
            QTRY_VERIFY(!f.service.files.isEmpty());
            QVERIFY(f.service.files.size() <= 8);
            f.answerFile(200, png);
        }
        QVERIFY(finishBackgroundWork(10000));
        QVERIFY(f.service.files.isEmpty());
        QVERIFY(!f.packages->packagesIcons().value(u"p99"_s).isGeneric());
        QVERIFY(f.iconPath(u"p99"_s).isEmpty());
    }

    void storedIconsAreLoaded()
    {
        Fixture f;
        QVERIFY(writeFile(f.dataFolder + u"/good.png"_s, png));
        QVERIFY(writeFile(f.dataFolder + u"/bad.png"_s, "text"));
        QFile large(f.dataFolder + u"/large.png"_s);
        QVERIFY(
            large.open(QIODevice::WriteOnly) && large.write(png) && large.resize(qint64{9} * 1024 * 1024));
        QJsonObject stored;
        for (const QString &name : {u"good"_s, u"bad"_s, u"large"_s, u"missing"_s}) {
            stored.insert(name, with(package(name), u"IconPath"_s, f.dataFolder + u'/' + name + u".png"_s));
        }
        stored.insert(u"dir"_s, with(package(u"dir"_s), u"IconPath"_s, f.dataFolder));
        stored.insert(u"zero"_s, with(package(u"zero"_s), u"IconPath"_s, u"/dev/zero"_s));
        stored.insert(u"odd"_s, with(package(u"odd"_s), u"IconPath"_s, 8));
        f.storePackages(stored);
        const BrevokPackages &packages = f.start();
        QTRY_VERIFY(!packages.packagesIcons().value(u"good"_s).isGeneric());
        const QHash<QString, PackageIcon> icons = packages.packagesIcons();
        QCOMPARE(icons.size(), stored.size());
        for (auto icon = icons.cbegin(); icon != icons.cend(); ++icon) {
            QCOMPARE(icon->isGeneric(), icon.key() != u"good");
        }
    }

    void iconFileNames_data()
    {
        const IconFileNames row;
        row("plain", "https://x/y/icon.png", "icon.png");
        row("encoded", "https://x/my%20icon.png?v=2#a", "my icon.png");
        row("parent", "https://x/y/%2E%2E", QString());
        row("separator", "https://x/..%2f..%2fetc", "etc");
        row("hidden", "https://x/.png", ".png");
        row("other script", u"https://x/%F0%9F%90%98 \u00e4.png"_s, u"\U0001F418 \u00e4.png"_s);
        for (const char *taken : {"160", "-3", "1e+20", "updates", "State.sqlite-wal", "any.lock"}) {
            row(taken, u"https://x/y/"_s + QString::fromLatin1(taken), QString());
        }
        row("begins like one that is taken", "https://x/Updates.png", "Updates.png");
        row("escape", "https://x/a%1B[31m.png", QString());
        row("turned round", "https://x/%E2%80%AEgnp.exe", QString());
    }

    void iconFileNames()
    {
        const auto [address, name] = IconFileNames::current();
        QCOMPARE(iconFileName(address), name);
    }
};

QTEST_GUILESS_MAIN(PackageIconsTest)
#include "test_package_icons.moc"
