// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPackages.h"
#include "CatalogueFixture.h"
#include "foundation/Tasks.h"
#include "support/FakePlatform.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "targets/BrevokTargetApps.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

const QByteArray png("\x89PNG\r\n\x1a\nrest");

struct Fixture : CatalogueFixture {
    QTemporaryDir folder;
    FakeApplicationSearch search;
    BrevokTargetApps targets{settings, search};
    BrevokPlugins plugins{settings, service, alerts};
    QString dataFolder = folder.path() + u"/data"_s;
    std::unique_ptr<BrevokPackages> packages;

    BrevokPackages &start()
    {
        packages.reset();
        service.lists.clear();
        packages = std::make_unique<BrevokPackages>(
            BrevokPackages::Collaborators{settings, service, alerts, plugins, targets, dataFolder, {}});
        return *packages;
    }
    void answerFile(int status, const QByteArray &body, std::optional<BrevokError> error = {})
    {
        const FakeServiceClient::FileRequest request = service.files.takeFirst();
        request.handler({.status = status, .body = body, .headers = {}, .error = std::move(error)});
    }
    [[nodiscard]] QStringList names() const
    {
        QStringList names;
        for (const Record &record : packages->packageRecords()) {
            names << record.value(PackageKeys::name).toString();
        }
        return names;
    }
    [[nodiscard]] QString iconPath(const QString &name) const
    {
        const Record record = stored(CatalogueSettings::packagesData).value(name).toObject();
        return record.value(PackageKeys::iconPath).toString();
    }
    /// A target with version 140 in which the plug-in @p name is installed.
    QString target(const QString &name, const QString &version)
    {
        QString path = folder.path() + u"/App/Plug-Ins/"_s;
        writeInstalledPlugin(path, name, version, u"14.0"_s);
        targets.insertTarget(path, u"InDesign"_s, u"140"_s);
        return path;
    }
};

} // namespace

class PackagesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { QVERIFY(finishBackgroundWork(10000)); }

    void elementsAreChecked_data();
    void elementsAreChecked();
    void recordsAreOrderedAndKept();
    void repliesAreHandled();
    void storedRubbishIsSurvived_data();
    void storedRubbishIsSurvived();
    void iconsAreDownloadedAndCached();
    void iconsThatCannotBeCached_data();
    void iconsThatCannotBeCached();
    void manyIconsAreDownloadedFewAtATime();
    void storedIconsAreLoaded();
    void iconFileNames_data();
    void iconFileNames();
    void imagesAreRecognised_data();
    void imagesAreRecognised();
    void statusesFollowEveryChange();
    void callsDuringACalculationAreServedAfterIt();
    void usersCheckTellsOfNewUpdates_data();
    void usersCheckTellsOfNewUpdates();
    void announcedOnceIsNotNew();
    void veryLongListsAreTaken();
};

void PackagesTest::elementsAreChecked_data()
{
    QTest::addColumn<QJsonValue>("element");
    QTest::addColumn<bool>("taken");
    QTest::addColumn<QString>("line");
    const QString notDictionary = u"package is not nsdirectory!"_s;
    const QString incomplete = u"package data do not containe name!"_s;
    const Record good = Fixture::package(u"A"_s, u"P"_s);
    const auto mutated = [&](const char *key, const QJsonValue &value) {
        return QJsonValue(Fixture::with(good, QString::fromLatin1(key), value));
    };
    QTest::addRow("good") << QJsonValue(good) << true << QString();
    QTest::addRow("without prefix") << mutated("Prefix", QJsonValue(QJsonValue::Undefined)) << true
                                    << QString();
    QTest::addRow("number") << QJsonValue(1) << false << notDictionary;
    QTest::addRow("list") << QJsonValue(QJsonArray{good}) << false << notDictionary;
    QTest::addRow("other platform") << mutated("Platform", u"Win"_s) << false << QString();
    QTest::addRow("nameless, other platform")
        << QJsonValue(QJsonObject{{u"Platform"_s, u"Win"_s}}) << false << QString();
    QTest::addRow("no name") << mutated("Name", u""_s) << false << incomplete;
    QTest::addRow("number for name") << mutated("Name", 3) << false << incomplete;
    QTest::addRow("no publication") << mutated("Published", QJsonValue()) << false << incomplete;
    QTest::addRow("number for version") << mutated("Version", 1.5) << false << incomplete;
}

void PackagesTest::elementsAreChecked()
{
    QFETCH(QJsonValue, element);
    QFETCH(bool, taken);
    QFETCH(QString, line);
    Fixture f;
    BrevokPackages &packages = f.start();
    const LogCapture log;
    packages.updateWithArray({element});
    QCOMPARE(packages.packageRecords().size(), taken ? 1 : 0);
    QCOMPARE(packages.packagesIcons().size(), taken ? 1 : 0);
    QCOMPARE(LogCapture::lines(), line.isEmpty() ? QStringList() : QStringList(line));
}

void PackagesTest::recordsAreOrderedAndKept()
{
    Fixture f;
    f.start().updateWithArray({Fixture::package(u"gamma"_s, u"1"_s), Fixture::package(u"Beta"_s, u"2"_s),
        Fixture::package(u"alpha"_s, u"3"_s), Fixture::package(u"Beta"_s, u"4"_s)});
    QCOMPARE(f.names(), (QStringList{u"alpha"_s, u"Beta"_s, u"gamma"_s}));
    QCOMPARE(f.packages->packageRecords()[1].value(PackageKeys::prefix).toString(), u"4"_s);

    const Record extra = Fixture::with(Fixture::package(u"delta"_s, u"5"_s), u"Unknown"_s, QJsonArray{1});
    f.packages->updateWithArray({extra});
    QCOMPARE(f.start().packageRecords().size(), 4);
    QCOMPARE(f.packages->packageRecords()[2], extra);
    QCOMPARE(BrevokPackages::packages(), f.packages.get());
}

void PackagesTest::repliesAreHandled()
{
    Fixture f;
    f.settings.values.insert(
        CatalogueSettings::productsUpdateDate, QDateTime::currentDateTimeUtc().addDays(9).addSecs(60));
    BrevokPackages &packages = f.start();
    QCOMPARE(f.service.lists[0].path, u"/api/product/list"_s);
    const QSignalSpy finished(&packages, &BrevokPackages::checkFinished);
    const LogCapture log;
    f.service.answerList({.status = 0, .body = {}, .headers = {}, .error = BrevokError{}});
    QCOMPARE(packages.updateTimer()->interval(), 60000);
    QCOMPARE(f.presenter.shown.size(), 1);
    QCOMPARE(f.presenter.shown[0].messageText, u"Failed to update Products data"_s);
    QCOMPARE(
        f.presenter.shown[0].informativeText, u"Unable to contact the Tolvane Brevok server for 9 days."_s);
    QVERIFY(LogCapture::contains(u"Packages update failed with error"_s));

    packages.updateTimer()->start(0);
    QTRY_COMPARE(f.service.lists.size(), 1);
    f.service.answerList(Fixture::good({Fixture::package(u"A"_s, u"P"_s)}));
    QCOMPARE(packages.updateTimer()->interval(), 3600000);
    QVERIFY(f.settings.dateValue(CatalogueSettings::productsUpdateDate)
        < QDateTime::currentDateTimeUtc().addDays(1));

    packages.checkForUpdates();
    f.service.answerList({.status = 200, .body = "{}", .headers = {}, .error = {}});
    QVERIFY(LogCapture::contains(u"Packages definitions update failed!"_s));
    QVERIFY(packages.updateTimer()->isActive());
    packages.checkForUpdates();
    f.service.answerList({.status = 500, .body = {}, .headers = {}, .error = {}});
    QVERIFY(LogCapture::contains(u"Packages update failed with response: 500 - internal server error"_s));
    QVERIFY(!packages.updateTimer()->isActive());
    f.service.reachable = false;
    packages.checkForUpdates();
    QCOMPARE(finished.size(), 5);
    QVERIFY(finished[1][0].toBool() && !finished[4][0].toBool());
    QCOMPARE(packages.packageRecords().size(), 1);
}

void PackagesTest::storedRubbishIsSurvived_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("setAside");
    const Record good = Fixture::package(u"A"_s, u"P"_s);
    const QJsonObject odd{{u"A"_s, good}, {u"B"_s, 1}, {u"C"_s, QJsonObject()},
        {u"D"_s, QJsonObject{{u"Name"_s, 4}}}, {u"E"_s, QJsonArray{good}}};
    QTest::addRow("bytes") << QVariant(QByteArray("\x00\xffx", 3)) << true;
    QTest::addRow("list") << QVariant(archived(QJsonArray{good})) << true;
    QTest::addRow("text list") << QVariant(QStringList{u"a"_s}) << true;
    QTest::addRow("wrong shapes inside") << QVariant(archived(odd)) << false;
}

void PackagesTest::storedRubbishIsSurvived()
{
    QFETCH(QVariant, value);
    QFETCH(bool, setAside);
    Fixture f;
    for (const QLatin1StringView key : {CatalogueSettings::packagesData,
             CatalogueSettings::productsUpdateDate, CatalogueSettings::notifiedPackages}) {
        f.settings.values.insert(key, value);
    }
    const LogCapture log;
    BrevokPackages &packages = f.start();
    QCOMPARE(f.settings.keysSetAside.contains(CatalogueSettings::packagesData), setAside);
    QCOMPARE(packages.packageRecords().size(), setAside ? 0 : 1);
    QCOMPARE(LogCapture::contains(u"Stored packages: 4 unusable values left out."_s), !setAside);
    packages.notifyPackageStatuses();
    QVERIFY(f.settings.stringListValue(CatalogueSettings::notifiedPackages).isEmpty());
}

void PackagesTest::iconsAreDownloadedAndCached()
{
    Fixture f;
    BrevokPackages &packages = f.start();
    const QSignalSpy changed(&packages, &BrevokPackages::packagesIconsChanged);
    const QString address = u"https://icons.test/a/b/one.png?x=1"_s;
    const QJsonArray list{Fixture::package(u"A"_s, u"P"_s, address),
        Fixture::package(u"B"_s, u"Q"_s, u"https://icons.test/two.png"_s), Fixture::package(u"C"_s, u"R"_s)};
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
    QCOMPARE(f.iconPath(u"A"_s), f.dataFolder + u"/one.png"_s);
    QCOMPARE(f.iconPath(u"B"_s), f.dataFolder + u"/two.png"_s);
    QFile file(f.iconPath(u"A"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), png);

    // The next list forgets the path and fetches again; what is shown stays.
    packages.updateWithArray(list);
    QVERIFY(f.iconPath(u"A"_s).isEmpty());
    QCOMPARE(packages.packagesIcons().value(u"A"_s).data, png);
    QCOMPARE(f.service.files.size(), 2);
    // A path that the service gives itself is used in place of a download.
    packages.updateWithArray({Fixture::with(
        Fixture::package(u"B"_s, u"Q"_s, address), u"IconPath"_s, f.dataFolder + u"/one.png"_s)});
    QCOMPARE(f.service.files.size(), 2);
    QCOMPARE(packages.packagesIcons().value(u"B"_s).data, png);
}

void PackagesTest::iconsThatCannotBeCached_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("failed");
    QTest::addColumn<bool>("shown");
    QTest::addRow("transport error") << u"https://x/a.png"_s << png << true << false;
    QTest::addRow("empty") << u"https://x/a.png"_s << QByteArray() << false << false;
    QTest::addRow("parent for name") << u"https://x/y/%2E%2E"_s << png << false << true;
    QTest::addRow("no name") << u"https://x/"_s << png << false << true;
    QTest::addRow("folder in the way") << u"https://x/taken"_s << png << false << true;
}

void PackagesTest::iconsThatCannotBeCached()
{
    QFETCH(QString, address);
    QFETCH(QByteArray, body);
    QFETCH(bool, failed);
    QFETCH(bool, shown);
    Fixture f;
    QVERIFY(QDir().mkpath(f.dataFolder + u"/taken"_s));
    f.start().updateWithArray({Fixture::package(u"A"_s, u"P"_s, address)});
    f.answerFile(200, body, failed ? std::optional(BrevokError{}) : std::nullopt);
    QCOMPARE(!f.packages->packagesIcons().value(u"A"_s).isGeneric(), shown);
    QVERIFY(f.iconPath(u"A"_s).isEmpty());
    QCOMPARE(QDir(f.dataFolder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{u"taken"_s});
}

void PackagesTest::manyIconsAreDownloadedFewAtATime()
{
    Fixture f;
    QVERIFY(writeFile(f.dataFolder, "a file in place of the folder"));
    QJsonArray list{Fixture::package(u"local"_s, u"P"_s, u"file:///etc/hostname"_s)};
    for (int i = 0; i < 100; ++i) {
        list.append(Fixture::package(u"p%1"_s.arg(i), u"P"_s, u"https://x/%1.png"_s.arg(i)));
    }
    f.start().updateWithArray(list);
    int answered = 0;
    while (!f.service.files.isEmpty()) {
        QVERIFY(f.service.files.size() <= 8);
        f.answerFile(200, png);
        ++answered;
    }
    QCOMPARE(answered, 100);
    QVERIFY(!f.packages->packagesIcons().value(u"p99"_s).isGeneric());
    QVERIFY(f.iconPath(u"p99"_s).isEmpty());
}

void PackagesTest::storedIconsAreLoaded()
{
    Fixture f;
    QVERIFY(writeFile(f.dataFolder + u"/good.png"_s, png));
    QVERIFY(writeFile(f.dataFolder + u"/bad.png"_s, "text"));
    QFile large(f.dataFolder + u"/large.png"_s);
    QVERIFY(large.open(QIODevice::WriteOnly) && large.write(png) && large.resize(qint64{9} * 1024 * 1024));
    QJsonObject stored;
    for (const QString &name : {u"good"_s, u"bad"_s, u"large"_s, u"missing"_s}) {
        stored.insert(name,
            Fixture::with(
                Fixture::package(name, u"P"_s), u"IconPath"_s, f.dataFolder + u'/' + name + u".png"_s));
    }
    stored.insert(u"dir"_s, Fixture::with(Fixture::package(u"dir"_s, u"P"_s), u"IconPath"_s, f.dataFolder));
    stored.insert(
        u"zero"_s, Fixture::with(Fixture::package(u"zero"_s, u"P"_s), u"IconPath"_s, u"/dev/zero"_s));
    stored.insert(u"odd"_s, Fixture::with(Fixture::package(u"odd"_s, u"P"_s), u"IconPath"_s, 8));
    f.archive(CatalogueSettings::packagesData, stored);
    const QHash<QString, PackageIcon> icons = f.start().packagesIcons();
    QCOMPARE(icons.size(), stored.size());
    for (auto icon = icons.cbegin(); icon != icons.cend(); ++icon) {
        QCOMPARE(icon->isGeneric(), icon.key() != u"good");
    }
}

void PackagesTest::iconFileNames_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("name");
    QTest::addRow("plain") << u"https://x/y/icon.png"_s << u"icon.png"_s;
    QTest::addRow("encoded") << u"https://x/my%20icon.png?v=2#a"_s << u"my icon.png"_s;
    QTest::addRow("folder") << u"https://x/y/"_s << QString();
    QTest::addRow("parent") << u"https://x/y/%2E%2E"_s << QString();
    QTest::addRow("separator") << u"https://x/..%2f..%2fetc"_s << u"etc"_s;
    QTest::addRow("zero") << u"https://x/a%00b"_s << QString();
    QTest::addRow("folder of archives") << u"https://x/160"_s << QString();
    QTest::addRow("empty") << QString() << QString();
}

void PackagesTest::iconFileNames()
{
    QFETCH(QString, address);
    QFETCH(QString, name);
    QCOMPARE(iconFileName(address), name);
}

void PackagesTest::imagesAreRecognised_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("image");
    QTest::addRow("png") << png << true;
    QTest::addRow("jpeg") << QByteArray("\xff\xd8\xff\xe0") << true;
    QTest::addRow("gif") << QByteArray("GIF89a...") << true;
    QTest::addRow("bmp") << QByteArray("BM....") << true;
    QTest::addRow("tiff, little") << QByteArray("II*\0....", 8) << true;
    QTest::addRow("tiff, big") << QByteArray("MM\0*....", 8) << true;
    QTest::addRow("webp") << QByteArray("RIFF\1\2\3\4WEBPVP8 ") << true;
    QTest::addRow("wave") << QByteArray("RIFF\1\2\3\4WAVEfmt ") << false;
    QTest::addRow("icns") << QByteArray("icns....") << true;
    QTest::addRow("svg") << QByteArray("\xef\xbb\xbf\n<svg xmlns=''/>") << true;
    QTest::addRow("svg in xml") << QByteArray("<?xml version='1.0'?><svg/>") << true;
    QTest::addRow("other xml") << QByteArray("<?xml version='1.0'?><plist/>") << false;
    QTest::addRow("page") << QByteArray("<html>Not found") << false;
    QTest::addRow("short") << QByteArray("\x89P") << false;
    QTest::addRow("empty") << QByteArray() << false;
}

void PackagesTest::imagesAreRecognised()
{
    QFETCH(QByteArray, data);
    QFETCH(bool, image);
    QCOMPARE(looksLikeImage(data), image);
}

void PackagesTest::statusesFollowEveryChange()
{
    Fixture f;
    BrevokPackages &packages = f.start();
    const QSignalSpy settled(&packages, &BrevokPackages::statusesSettled);
    const auto status = [&] {
        return packages.packagesStatus().value(u"P"_s, PackageStatus::MissingData);
    };
    packages.updateWithArray({Fixture::package(u"A"_s, u"P"_s)});
    QVERIFY(packages.updating());
    QTRY_VERIFY(!settled.isEmpty());
    QCOMPARE(status(), PackageStatus::MissingData);
    f.plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"2.0"_s, 140)});
    const QString target = f.target(u"A"_s, u"1.0"_s);
    QTRY_COMPARE(status(), PackageStatus::NotUpdated);
    writeInstalledPlugin(target, u"A"_s, u"2.0"_s, u"14.0"_s);
    f.plugins.updateWithArray({});
    QTRY_COMPARE(status(), PackageStatus::UpToDate);
    f.targets.setTarget(target, false);
    QTRY_COMPARE(status(), PackageStatus::MissingData);
    QVERIFY(packages.statusTimer()->isActive());
    QCOMPARE(packages.statusTimer()->interval(), 1000);
}

void PackagesTest::callsDuringACalculationAreServedAfterIt()
{
    Fixture f;
    f.archive(CatalogueSettings::packagesData, QJsonObject{{u"A"_s, Fixture::package(u"A"_s, u"P"_s)}});
    BrevokPackages &packages = f.start();
    QVERIFY(!packages.updating());
    const QSignalSpy changed(&packages, &BrevokPackages::packagesStatusChanged);
    const QSignalSpy settled(&packages, &BrevokPackages::statusesSettled);
    for (int i = 0; i < 10; ++i) {
        packages.calculatePackageStatuses();
        QVERIFY(packages.updating());
    }
    QVERIFY(packages.needUpdate());
    QTRY_COMPARE(settled.size(), 1);
    QVERIFY(!packages.updating() && !packages.needUpdate());
    QVERIFY(changed.size() <= 4);
    packages.calculatePackageStatuses();
    f.packages.reset(); // while it runs
}

void PackagesTest::usersCheckTellsOfNewUpdates_data()
{
    QTest::addColumn<int>("outdated");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("label");
    QTest::addRow("none") << 0 << u"You're up-to-date!"_s << u"There are no new Plug-In updates available."_s;
    QTest::addRow("one") << 1 << u"Plug-In update available!"_s << u"p0 Plug-In update is available."_s;
    QTest::addRow("three") << 3 << u"Plug-In updates available!"_s
                           << u"You have 3 Plug-In updates available."_s;
}

void PackagesTest::usersCheckTellsOfNewUpdates()
{
    QFETCH(int, outdated);
    QFETCH(QString, title);
    QFETCH(QString, label);
    Fixture f;
    BrevokPackages &packages = f.start();
    QJsonArray list{Fixture::package(u"current"_s, u"C"_s)};
    QJsonArray builds{Fixture::build(u"C"_s, u"C"_s, u"1.0"_s, 140)};
    f.target(u"C"_s, u"1.0"_s);
    for (int i = 0; i < outdated; ++i) {
        const QString name = u"p%1"_s.arg(i);
        list.append(Fixture::package(name, name));
        builds.append(Fixture::build(name, name, u"2.0"_s, 140));
        f.target(name, u"1.0"_s);
    }
    f.plugins.updateWithArray(builds);
    const QSignalSpy progress(&packages, &BrevokPackages::updateProgressWanted);
    const QSignalSpy result(&packages, &BrevokPackages::updateResult);
    const QSignalSpy count(&packages, &BrevokPackages::updatesChanged);
    packages.checkForUpdates(false);
    QCOMPARE(progress.size(), 1);
    f.service.lists.swapItemsAt(0, f.service.lists.size() - 1);
    f.service.answerList(Fixture::good(list));
    QTRY_COMPARE(result.size(), 1); // by way of the lazy notification
    QCOMPARE(result[0][0].toString(), title);
    QCOMPARE(result[0][1].toString(), label);
    QCOMPARE(count.last()[0].toInt(), outdated);
    QCOMPARE(packages.updates(), outdated);
    QCOMPARE(f.settings.stringListValue(CatalogueSettings::notifiedPackages).size(), outdated);
    packages.notifyPackageStatuses();
    QCOMPARE(result.size(), 1);
}

void PackagesTest::announcedOnceIsNotNew()
{
    Fixture f;
    BrevokPackages &packages = f.start();
    f.plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"2.0"_s, 140)});
    f.target(u"A"_s, u"1.0"_s);
    packages.updateWithArray({Fixture::package(u"A"_s, u"P"_s)});
    QTRY_COMPARE(packages.packagesStatus().value(u"P"_s), PackageStatus::NotUpdated);
    const QSignalSpy result(&packages, &BrevokPackages::updateResult);
    for (const QString &title : {u"Plug-In update available!"_s, u"You're up-to-date!"_s}) {
        packages.checkForUpdates(false);
        packages.notifyPackageStatuses();
        QCOMPARE(result.last()[0].toString(), title);
        QCOMPARE(packages.updates(), 1);
    }
    // An automatic check in between takes the result window back.
    packages.checkForUpdates(false);
    packages.checkForUpdates();
    packages.notifyPackageStatuses();
    QCOMPARE(result.size(), 2);
}

void PackagesTest::veryLongListsAreTaken()
{
    Fixture f;
    BrevokPackages &packages = f.start();
    QJsonArray list;
    for (int i = 0; i < 100000; ++i) {
        list.append(i % 10 == 0 ? QJsonValue(u"x"_s)
                                : QJsonValue(Fixture::package(QString::number(i), QString::number(i / 3))));
    }
    const LogCapture log;
    f.service.lists.clear();
    packages.checkForUpdates();
    f.service.answerList(Fixture::good(list));
    QCOMPARE(packages.packageRecords().size(), 90000);
    QCOMPARE(LogCapture::count(u"package is not nsdirectory!"_s), 10000);
    QTRY_VERIFY(!packages.updating());
}

QTEST_GUILESS_MAIN(PackagesTest)
#include "test_packages.moc"
