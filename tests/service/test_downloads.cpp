// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/TransportErrors.h"
#include "ServiceStage.h"
#include "support/FileSizeLimit.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QCryptographicHash>
#include <QLocale>
#include <QScopeGuard>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = ServiceStage;

using Fault = Response::Fault;

class DownloadTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    // What is expected is larger than the body by the second value.
    void downloads_data()
    {
        const Table<Response, qint64, QString, int> row;
        const QByteArray body = sampleBody(3000000);
        const QString none;
        const QString transport = QString::fromLatin1(transportErrorDomain);
        const QString content = QString::fromLatin1(connectionErrorDomain);

        row("plain", Response::ok(body), 0, none, 0);
        row("gzip on the way", {.body = body, .gzip = true}, 0, none, 0);
        row("empty", Response::ok({}), 0, none, 0);
        row("redirect, with a body that never ends",
            {.status = 302,
                .headers = {{"Location", "/elsewhere"}},
                .body = body,
                .fault = Fault::Stall,
                .faultAfter = 2000000},
            3 - body.size(), none, 0);

        row("with another checksum", Response::ok(body), 0, content, 200);
        row("one byte too long", Response::ok(body), -1, content, 200);
        row("one byte too short", Response::ok(body), 1, content, 200);
        row("endless", {.body = body, .repeat = 1000000}, 5000000, content, 200);
        row("404 without a word", Response::of(404), 0, content, 404);
        row("500, endless", {.status = 500, .body = body, .repeat = 1000000}, 0, content, 500);
        row("cut short", {.body = body, .fault = Fault::Close, .faultAfter = 2000000}, 0, transport, -1005);
        row("stalls", {.body = body, .fault = Fault::Stall, .faultAfter = 2000000}, 0, transport,
            timedOutCode);
    }

    void downloads()
    {
        const auto [response, difference, domain, code] = columns<Response, qint64, QString, int>();
        Stage stage(TestCertificates::shared().valid(), code == timedOutCode ? shortTimeout : patient);
        stage.server.on(u"/a.zip"_s, response);
        stage.server.on(u"/elsewhere"_s, Response::ok("zip"));
        const QString destination = path(u"a.zip"_s);
        QVERIFY(writeFile(destination, "older"));

        const qint64 expected = response.body.size() + difference;
        const QByteArray whole = response.status == 302 ? "zip"_ba : response.body;
        const bool other = currentRow() == u"with another checksum"_s;
        const DownloadResult result = stage.download(stage.server.url(u"/a.zip"_s), destination, expected,
            QCryptographicHash::hash(other ? whole + 'a' : whole, QCryptographicHash::Sha256));
        const BrevokError error = result.error.value_or(BrevokError());
        QCOMPARE(error.domain, domain);
        QCOMPARE(error.code, code);
        QCOMPARE(result.stored, domain.isEmpty());
        QCOMPARE(error.description == u"The download does not match the catalogue."_s, other);

        QCOMPARE(entries(path()), QStringList{u"a.zip"_s});
        QCOMPARE(contentsOf(destination), result.stored ? whole : "older"_ba);
        if (result.stored) {
            QCOMPARE(result.received, expected);
            QCOMPARE(stage.progress.last(), expected);
            QVERIFY(std::is_sorted(stage.progress.cbegin(), stage.progress.cend()));
        } else {
            QVERIFY(result.received <= 10000000);
        }
    }

    void aDownloadCarriesNothingOfTheUser()
    {
        Stage stage;
        stage.sessionId = u"abc"_s;
        stage.server.on(u"/list"_s, {.headers = {{"Set-Cookie", "lb=one"}}, .body = "[]"});
        stage.server.on(u"/a.zip"_s, Response::ok("zip"));
        stage.list(u"/list"_s);
        QVERIFY(stage.download(stage.server.url(u"/a.zip"_s), path(u"a.zip"_s), 3).stored);
        const Request request = stage.server.requests(u"/a.zip"_s).value(0);
        QVERIFY(request.header("Cookie").isNull());
        QVERIFY(request.header("X-Tolvane-Brevok-Version").isNull());
    }

    void aDownloadThatCannotBeStoredLeavesNothing_data()
    {
        const Table<int> row;
        row("full disk", EFBIG);
        row("folder goes meanwhile", ENOENT);
        row("a folder has the name", EISDIR);
    }

    void aDownloadThatCannotBeStoredLeavesNothing()
    {
        const auto [code] = columns<int>();
        const QString row = currentRow();
        Stage stage;
        const QString folder = path(u"140"_s);
        const QString destination = folder + u"/a.zip"_s;
        QVERIFY(QDir().mkpath(row == u"a folder has the name"_s ? destination + u"/inside"_s : folder));
        const QByteArray body = sampleBody(2000000);
        stage.server.on(u"/a.zip"_s, [&](const Request &) {
            if (row == u"folder goes meanwhile"_s) {
                QDir(folder).removeRecursively();
            }
            return Response::ok(body);
        });
        std::optional<FileSizeLimit> limit;
        if (row == u"full disk"_s) {
            limit.emplace(1000000);
        }
        const DownloadResult result = stage.download(stage.server.url(u"/a.zip"_s), destination, body.size());
        limit.reset();

        QVERIFY(!result.stored);
        const BrevokError error = result.error.value_or(BrevokError());
        QCOMPARE(error.domain, QString::fromLatin1(fileErrorDomain));
        QCOMPARE(error.code, code);
        QCOMPARE(entries(folder).size(), row == u"a folder has the name"_s ? 1 : 0);
    }

    void leftoversGoButRunningDownloadsStay()
    {
        Stage stage;
        const QString destination = path(u"a.zip"_s);
        QVERIFY(writeFile(destination + u".part-killed"_s, "half"));
        QVERIFY(writeFile(path(u"b.zip.part-killed"_s), "half"));
        stage.server.on(u"/a.zip"_s, {.body = sampleBody(), .delayMs = 50});

        HttpServiceClient client = stage.client();
        int stored = 0;
        for (int i = 0; i < 3; ++i) {
            client.download({stage.server.url(u"/a.zip"_s), destination, sampleBody().size()}, this, {},
                [&stored](const DownloadResult &result) { stored += result.stored ? 1 : 0; });
        }
        QTRY_COMPARE_WITH_TIMEOUT(stored, 3, patient);
        QCOMPARE(entries(path()), (QStringList{u"a.zip"_s, u"b.zip.part-killed"_s}));
    }

    void aDownloadNobodyWaitsForIsGivenUp()
    {
        Stage stage;
        stage.server.on(u"/a.zip"_s, {.body = sampleBody(), .repeat = 1000000});
        HttpServiceClient client = stage.client();
        auto context = std::make_unique<QObject>();
        bool called = false;
        const auto fail = [&called](const auto &) {
            called = true;
        };
        client.getList(u"/a.zip"_s, {}, context.get(), fail);
        client.download(
            {stage.server.url(u"/a.zip"_s), path(u"a.zip"_s), 100000000000}, context.get(),
            [&context](qint64, qint64) { context.reset(); }, fail);
        QTRY_VERIFY_WITH_TIMEOUT(!context, patient);
        QTRY_COMPARE_WITH_TIMEOUT(stage.server.connections(), 0, patient);
        QVERIFY(QDir(path()).isEmpty());
        QVERIFY(!called);
    }

    // Between the end of a transfer and the name of its file.
    void aProgramThatEndsLeavesNothing()
    {
        auto stage = std::make_unique<Stage>();
        stage->server.on(u"/a.zip"_s, Response::ok("zip"));
        HttpServiceClient client = stage->client();
        QEventLoop loop;
        int told = 0;
        const auto progress = [&](qint64, qint64) {
            if (++told == 2) { // the second time when all is there
                stage.reset();
                loop.quit();
            }
        };
        bool called = false;
        client.download({stage->server.url(u"/a.zip"_s), path(u"a.zip"_s), 3}, this, progress,
            [&called](const DownloadResult &) { called = true; });
        loop.exec();
        QTRY_VERIFY(QDir(path()).isEmpty());
        QVERIFY(!called);
    }

    void lengthsAreToldInTheUsersDigits()
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
};

QTEST_GUILESS_MAIN(DownloadTest)
#include "test_downloads.moc"
