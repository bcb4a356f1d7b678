// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "platform/linux/network/Gunzip.h"
#include "service/TransportErrors.h"
#include "ServiceStage.h"
#include "support/SampleBundles.h"

#include <QCryptographicHash>
#include <QLocale>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/resource.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

using Framing = Response::Framing;
using Fault = Response::Fault;

class DownloadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanupTestCase() { QVERIFY(finishBackgroundWork(patient)); }

    void downloads_data();
    void downloads();
    void theChecksumDecides_data();
    void theChecksumDecides();
    void aDownloadCarriesNothingOfTheUser();
    void aDownloadThatCannotBeStoredLeavesNothing_data();
    void aDownloadThatCannotBeStoredLeavesNothing();
    void leftoversGoButRunningDownloadsStay();
    void aDownloadNobodyWaitsForIsGivenUp();
    void aProgramThatEndsLeavesNothing();
    void lengthsAreToldInTheUsersDigits();
    void gunzipWantsAllOfIt_data();
    void gunzipWantsAllOfIt();
};

void DownloadTest::downloads_data()
{
    QTest::addColumn<Response>("response");
    QTest::addColumn<qint64>("difference"); // of the expected size from the body's
    QTest::addColumn<QString>("domain");
    QTest::addColumn<int>("code");
    const QByteArray body = sampleBody(3000000);
    const QString none;
    const QString transport = QString::fromLatin1(transportErrorDomain);
    const QString content = QString::fromLatin1(connectionErrorDomain);
    const auto row = [](const char *name, const Response &response, qint64 difference, const QString &domain,
                         int code) {
        QTest::newRow(name) << response << difference << domain << code;
    };
    row("plain", Response::ok(body), 0, none, 0);
    row("chunked", {.body = body, .framing = Framing::Chunked}, 0, none, 0);
    row("until close", {.body = body, .framing = Framing::UntilClose}, 0, none, 0);
    row("gzip on the way", {.body = body, .gzip = true}, 0, none, 0);
    row("empty", Response::ok({}), 0, none, 0);
    row("redirect", Response::redirect("/elsewhere"), 3, none, 0);
    row("redirect, with a body that never ends",
        {.status = 302,
            .headers = {{"Location", "/elsewhere"}},
            .body = body,
            .fault = Fault::Stall,
            .faultAfter = 2000000},
        3 - body.size(), none, 0);

    row("one byte too long", Response::ok(body), -1, content, 200);
    row("one byte too short", Response::ok(body), 1, content, 200);
    row("empty, too short", Response::ok({}), 1, content, 200);
    row("endless", {.body = body, .repeat = 1000000}, 5000000, content, 200);
    row("cut short without a length",
        {.body = body, .framing = Framing::UntilClose, .fault = Fault::Close, .faultAfter = 2000000}, 0,
        content, 200);
    row("404", Response::of(404, body), 0, content, 404);
    row("404 without a word", Response::of(404), 0, content, 404);
    row("500, endless", {.status = 500, .body = body, .repeat = 1000000}, 0, content, 500);
    row("cut short", {.body = body, .fault = Fault::Close, .faultAfter = 2000000}, 0, transport, -1005);
    row("cut short, gzip", {.body = body, .gzip = true, .fault = Fault::Close, .faultAfter = 2000000}, 0,
        transport, -1005);
    row("reset", {.body = body, .fault = Fault::Reset, .faultAfter = 2000000}, 0, transport, -1005);
    row("silent", Response::silent(), 0, transport, timedOutCode);
    row("stalls", {.body = body, .fault = Fault::Stall, .faultAfter = 2000000}, 0, transport, timedOutCode);
    row("redirect loop", Response::redirect("/a.zip"), 0, transport, -1007);
}

void DownloadTest::downloads()
{
    QFETCH(Response, response);
    QFETCH(qint64, difference);
    QFETCH(QString, domain);
    QFETCH(int, code);
    Stage stage(TestCertificates::shared().valid(), code == timedOutCode ? shortTimeout : patient);
    stage.server.on(u"/a.zip"_s, response);
    stage.server.on(u"/elsewhere"_s, Response::ok("zip"));
    const QTemporaryDir folder;
    const QString destination = folder.filePath(u"a.zip"_s);
    QVERIFY(writeFile(destination, "older"));

    const qint64 expected = response.body.size() + difference;
    const DownloadResult result = stage.download(stage.server.url(u"/a.zip"_s), destination, expected);
    const BrevokError error = result.error.value_or(BrevokError());
    QCOMPARE(error.domain, domain);
    QCOMPARE(error.code, code);
    QCOMPARE(result.stored, domain.isEmpty());

    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"a.zip"_s});
    QFile file(destination);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray whole = response.status == 302 ? "zip"_ba : response.body;
    QCOMPARE(file.readAll(), result.stored ? whole : "older"_ba);
    if (result.stored) {
        QCOMPARE(result.received, expected);
        QCOMPARE(stage.progress.last(), expected);
        QVERIFY(std::is_sorted(stage.progress.cbegin(), stage.progress.cend()));
    } else {
        QVERIFY(result.received <= 10000000);
    }
}

void DownloadTest::theChecksumDecides_data()
{
    QTest::addColumn<Response>("response");
    QTest::addColumn<QByteArray>("announced"); // whose checksum is
    QTest::addColumn<bool>("stored");
    const QByteArray body(1000000, 'a');
    QTest::addRow("its own") << Response::ok(body) << body << true;
    QTest::addRow("its own, compressed on the way") << Response{.body = body, .gzip = true} << body << true;
    QTest::addRow("of nothing") << Response::ok({}) << QByteArray() << true;
    QTest::addRow("another's") << Response::ok(body) << body + 'a' << false;
}

void DownloadTest::theChecksumDecides()
{
    QFETCH(Response, response);
    QFETCH(QByteArray, announced);
    QFETCH(bool, stored);
    Stage stage;
    stage.server.on(u"/a.zip"_s, response);
    const QTemporaryDir folder;
    const DownloadResult result = stage.download(stage.server.url(u"/a.zip"_s), folder.filePath(u"a.zip"_s),
        response.body.size(), QCryptographicHash::hash(announced, QCryptographicHash::Sha256));
    QCOMPARE(result.stored, stored);
    QCOMPARE(result.error.value_or(BrevokError()).description,
        stored ? QString() : u"The download does not match the catalogue."_s);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), stored ? 1 : 0);
}

void DownloadTest::aDownloadCarriesNothingOfTheUser()
{
    Stage stage;
    stage.sessionId = u"abc"_s;
    stage.server.on(u"/list"_s, {.headers = {{"Set-Cookie", "lb=one"}}, .body = "[]"});
    stage.server.on(u"/a.zip"_s, Response::ok("zip"));
    stage.list(u"/list"_s);
    const QTemporaryDir folder;
    QVERIFY(stage.download(stage.server.url(u"/a.zip"_s), folder.filePath(u"a.zip"_s), 3).stored);
    const Request request = stage.server.requests(u"/a.zip"_s).value(0);
    QVERIFY(request.header("Cookie").isNull());
    QVERIFY(request.header("X-Tolvane-Brevok-Version").isNull());
}

void DownloadTest::aDownloadThatCannotBeStoredLeavesNothing_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("full disk") << EFBIG;
    QTest::newRow("no folder") << ENOENT;
    QTest::newRow("folder goes meanwhile") << ENOENT;
    QTest::newRow("a folder has the name") << EISDIR;
}

void DownloadTest::aDownloadThatCannotBeStoredLeavesNothing()
{
    QFETCH(int, code);
    const QByteArray row = QTest::currentDataTag();
    Stage stage;
    const QTemporaryDir scratch;
    const QString folder = scratch.filePath(u"140"_s);
    const QString destination = folder + u"/a.zip"_s;
    QDir().mkpath(row == "a folder has the name" ? destination + u"/inside"_s : folder);
    if (row == "no folder") {
        QDir(folder).removeRecursively();
    }
    const QByteArray body = sampleBody(2000000);
    stage.server.on(u"/a.zip"_s, [&](const Request &) {
        if (row == "folder goes meanwhile") {
            QDir(folder).removeRecursively();
        }
        return Response::ok(body);
    });
    // The system's limit for one file stands for the end of the disk.
    rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    if (row == "full disk") {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {.rlim_cur = 1000000, .rlim_max = before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    const DownloadResult result = stage.download(stage.server.url(u"/a.zip"_s), destination, body.size());
    ::setrlimit(RLIMIT_FSIZE, &before);

    QVERIFY(!result.stored);
    const BrevokError error = result.error.value_or(BrevokError());
    QCOMPARE(error.domain, QString::fromLatin1(fileErrorDomain));
    QCOMPARE(error.code, code);
    QVERIFY(QDir(folder).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

void DownloadTest::leftoversGoButRunningDownloadsStay()
{
    Stage stage;
    const QTemporaryDir folder;
    const QString destination = folder.filePath(u"a.zip"_s);
    QVERIFY(writeFile(destination + u".part-killed"_s, "half"));
    QVERIFY(writeFile(folder.filePath(u"b.zip.part-killed"_s), "half"));
    stage.server.on(u"/a.zip"_s, {.body = sampleBody(), .delayMs = 50});

    HttpServiceClient client(
        stage.network, [] { return QString(); }, [] { return true; });
    int stored = 0;
    for (int i = 0; i < 3; ++i) {
        client.download({stage.server.url(u"/a.zip"_s), destination, sampleBody().size()}, this, {},
            [&stored](const DownloadResult &result) { stored += result.stored ? 1 : 0; });
    }
    QTRY_COMPARE_WITH_TIMEOUT(stored, 3, patient);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files, QDir::Name),
        (QStringList{u"a.zip"_s, u"b.zip.part-killed"_s}));
}

void DownloadTest::aDownloadNobodyWaitsForIsGivenUp()
{
    Stage stage;
    const QTemporaryDir folder;
    stage.server.on(u"/a.zip"_s, {.body = sampleBody(), .repeat = 1000000});
    HttpServiceClient client(
        stage.network, [] { return QString(); }, [] { return true; });
    auto context = std::make_unique<QObject>();
    bool called = false;
    const auto fail = [&called](const auto &) {
        called = true;
    };
    client.getList(u"/a.zip"_s, {}, context.get(), fail);
    client.download(
        {stage.server.url(u"/a.zip"_s), folder.filePath(u"a.zip"_s), 100000000000}, context.get(),
        [&context](qint64, qint64) { context.reset(); }, fail);
    QTRY_VERIFY_WITH_TIMEOUT(!context, patient);
    QTRY_COMPARE_WITH_TIMEOUT(stage.server.connections(), 0, patient);
    QVERIFY(QDir(folder.path()).isEmpty());
    QVERIFY(!called);
}

// Between the end of a transfer and the name of its file.
void DownloadTest::aProgramThatEndsLeavesNothing()
{
    auto stage = std::make_unique<Stage>();
    const QTemporaryDir folder;
    stage->server.on(u"/a.zip"_s, Response::ok("zip"));
    HttpServiceClient client(
        stage->network, [] { return QString(); }, [] { return true; });
    QEventLoop loop;
    int told = 0;
    const auto progress = [&](qint64, qint64) {
        if (++told == 2) { // the second time when all is there
            stage.reset();
            loop.quit();
        }
    };
    bool called = false;
    client.download({stage->server.url(u"/a.zip"_s), folder.filePath(u"a.zip"_s), 3}, this, progress,
        [&called](const DownloadResult &) { called = true; });
    loop.exec();
    QTRY_VERIFY(QDir(folder.path()).isEmpty());
    QVERIFY(!called);
}

void DownloadTest::lengthsAreToldInTheUsersDigits()
{
    const auto restore = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German));
    HttpRequest request;
    request.destination = u"/a.zip"_s;
    request.expectedSize = 1234567;
    QCOMPARE(
        transportErrorFor({.received = 89012, .failure = HttpFailure::BodyTooShort}, request).description,
        u"The download has 89.012 of the expected 1.234.567 bytes."_s);
    QCOMPARE(transportErrorFor({.failure = HttpFailure::BodyTooLong}, request).description,
        u"The download is longer than the expected 1.234.567 bytes."_s);
}

void DownloadTest::gunzipWantsAllOfIt_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("plain"); // null when it is refused
    const QByteArray hello = QByteArray::fromHex("1f8b0800000000000203cb48cdc9c9070086a6103605000000");
    QTest::newRow("one member") << hello << "hello"_ba;
    QTest::newRow("two members") << hello + hello << "hellohello"_ba;
    QTest::newRow("truncated") << hello.chopped(1) << QByteArray();
    QTest::newRow("second truncated") << hello + hello.first(12) << QByteArray();
    QTest::newRow("garbage behind") << hello + "garbage"_ba << QByteArray();
    QTest::newRow("wrong checksum") << QByteArray(hello).replace(17, 1, "X") << QByteArray();
    QTest::newRow("not gzip") << "[1, 2, 3]"_ba << QByteArray();
    QTest::newRow("empty") << QByteArray() << QByteArray();
}

void DownloadTest::gunzipWantsAllOfIt()
{
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, plain);
    for (const qsizetype step : {data.size(), qsizetype(1)}) {
        QByteArray result;
        Gunzip gunzip([&result](QByteArrayView piece) {
            result.append(piece);
            return true;
        });
        bool sound = !data.isEmpty();
        for (qsizetype at = 0; sound && at < data.size(); at += step) {
            sound = gunzip.add(QByteArrayView(data).sliced(at, step));
        }
        QCOMPARE(sound && gunzip.isWhole(), !plain.isNull());
        if (!plain.isNull()) {
            QCOMPARE(result, plain);
        }
    }
}

QTEST_GUILESS_MAIN(DownloadTest)
#include "test_downloads.moc"
