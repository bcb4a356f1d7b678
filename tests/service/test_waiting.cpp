// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "platform/linux/network/TransferWork.h"
#include "ServiceStage.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QTest>

#include <atomic>
#include <mutex>
#include <semaphore>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = ServiceStage;
using namespace std::chrono_literals;

namespace {

// Look-ups that hang until they are let go.
struct LookUps {
    std::mutex mutex;
    QStringList hosts;
    std::counting_semaphore<> ends{0};
};

LookUps &lookUps()
{
    static auto &all = *new LookUps;
    return all;
}

QStringList lookedUp()
{
    const std::lock_guard lock(lookUps().mutex);
    return lookUps().hosts;
}

constexpr int turns = 6;

} // namespace

// In place of the system's, which asks nobody but the environment here.
QByteArray brevok::systemProxyFor(const QUrl &url)
{
    {
        const std::lock_guard lock(lookUps().mutex);
        lookUps().hosts.append(url.host());
    }
    lookUps().ends.acquire();
    return "http://127.0.0.1:1"; // where nobody listens
}

/// What one request has to do with another.
class WaitingTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        FolderTest::init();
        m_context = std::make_unique<QObject>();
        m_errors.clear();
    }
    void cleanup()
    {
        m_context.reset();
        FolderTest::cleanup();
    }

    void nobodyWaitsForAnother_data() { addRows({"TLS", "plain"}); }

    // "localhost" has two addresses on most machines, and only one of them is listened at.
    void nobodyWaitsForAnother()
    {
        Stage stage;
        FaultServer plain{FaultServer::Plain()};
        FaultServer &server = currentRow() == u"TLS"_s ? stage.server : plain;
        server.on(u"/silent"_s, Response::silent());
        server.on(u"/quick"_s, Response::ok("icon"));
        send(stage, stage.network.request(server.url(u"/silent"_s)));
        QCOMPARE(stage.file(server.url(u"/quick"_s)).body, "icon"_ba);
        QVERIFY(m_errors.isEmpty());
        m_context.reset();
        QTRY_VERIFY_WITH_TIMEOUT(server.connections() <= 1, patient);
    }

    void turnsKeepOnlyTheirLikeWaiting_data()
    {
        const Table<bool, bool> row;
        row("icons", true, false);
        row("archives", true, true);
        row("lists", false, false);
    }

    void turnsKeepOnlyTheirLikeWaiting()
    {
        const auto [takesTurns, isFile] = columns<bool, bool>();
        Stage stage;
        stage.server.on(u"/hangs"_s, Response::silent());
        stage.server.on(u"/post"_s, Response::ok("[]"));
        stage.server.on(u"/icon"_s, Response::ok("[]"));
        stage.server.on(u"/hasty"_s, Response::ok("[]"));
        ExchangeRequest hangs = stage.network.request(stage.server.url(u"/hangs"_s));
        hangs.takesTurns = takesTurns;
        hangs.destination = isFile ? path(u"a.zip"_s) : QString();
        auto first = std::make_unique<QObject>();
        m_context.swap(first);
        send(stage, hangs);
        m_context.swap(first);
        for (int i = 1; i < turns; ++i) {
            send(stage, hangs);
        }
        QTRY_COMPARE_WITH_TIMEOUT(stage.server.requests(u"/hangs"_s).size(), turns, patient);

        ExchangeRequest icon = stage.network.request(stage.server.url(u"/icon"_s));
        icon.takesTurns = true;
        send(stage, icon);
        ExchangeRequest hasty = hangs; // waiting for its turn counts
        hasty.url = stage.server.url(u"/hasty"_s);
        hasty.limits.wholeMs = takesTurns ? shortTimeout : patient;
        send(stage, hasty);
        ExchangeRequest post = stage.network.request(stage.server.url(u"/post"_s));
        post.method = "POST";
        send(stage, post);
        QTRY_VERIFY_WITH_TIMEOUT(m_errors.contains(u"/post"_s, 0), patient);
        QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
        QVERIFY(!takesTurns || isFile || stage.server.requests(u"/icon"_s).isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(m_errors.contains(u"/hasty"_s, takesTurns ? -2 : 0), patient);
        QCOMPARE(stage.server.requests(u"/hasty"_s).isEmpty(), takesTurns);
        first.reset();
        QTRY_VERIFY_WITH_TIMEOUT(m_errors.contains(u"/icon"_s, 0), patient);
    }

    void archivesThatDripLoseTheirTurns()
    {
        Stage stage(TestCertificates::shared().valid(), 2000); // enough for an honest one
        HttpServiceClient client = stage.client();
        stage.server.on(u"/drips"_s, {.body = QByteArray(1000000, ' '), .dripMs = 10});
        stage.server.on(u"/whole"_s, Response::ok("archive"));
        const auto download = [&](const QString &what, int number, qint64 size) {
            const QString destination = path(QString::number(number));
            client.download({stage.server.url(what), destination, size}, m_context.get(), {},
                [this, what](const DownloadResult &result) {
                    m_errors.insert(what, result.error ? result.error->code : 0);
                });
        };
        for (int i = 0; i < turns; ++i) {
            download(u"/drips"_s, i, 1000000);
        }
        download(u"/whole"_s, turns, 7);
        QTRY_COMPARE_WITH_TIMEOUT(m_errors.values(u"/whole"_s), QList<int>{0}, patient);
        QTRY_COMPARE_WITH_TIMEOUT(m_errors.values(u"/drips"_s), QList<int>(turns, timedOutCode), patient);
        QCOMPARE(entries(path()), QStringList{QString::number(turns)});
    }

    void aLookUpThatHangsHoldsNothingUp()
    {
        Stage stage;
        const auto ask = [&](const QString &address, int silenceMs) {
            ExchangeRequest request = stage.network.request(QUrl(address));
            request.limits.silenceMs = silenceMs;
            send(stage, request);
        };
        for (const QString &address :
            {u"https://one.example/late"_s, u"https://one.example/one"_s, u"https://two.example/two"_s,
                u"https://two.example/other"_s, u"https://three.example/three"_s}) {
            ask(address, address.endsWith(u"/late"_s) ? shortTimeout : patient);
        }
        QTRY_COMPARE_WITH_TIMEOUT(lookedUp().size(), 3, patient);
        std::atomic<bool> done = false;
        inBackground([&done] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, patient);
        QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
        QTRY_VERIFY_WITH_TIMEOUT(m_errors.contains(u"/late"_s, timedOutCode), patient);
        QCOMPARE(m_errors.size(), 1);

        lookUps().ends.release(3);
        QTRY_COMPARE_WITH_TIMEOUT(m_errors.size(), 5, patient);
        ask(u"https://one.example/again"_s, patient);
        QTRY_VERIFY_WITH_TIMEOUT(m_errors.contains(u"/again"_s, -1004), patient);
        QStringList hosts = lookedUp();
        hosts.sort();
        QCOMPARE(hosts, (QStringList{u"one.example"_s, u"three.example"_s, u"two.example"_s}));
    }

    void proxiesMayChange()
    {
        const auto transfers = createHttpTransfers({.userAgent = {}, .proxyRemembered = 1ms});
        const qsizetype before = lookedUp().size();
        lookUps().ends.release(1000); // one may begin while the one before is still to be counted
        const auto again = [&] {
            transfers->start({.url = QUrl(u"https://four.example/"_s)}, {}, [](const HttpReply &) {});
            return lookedUp().size() >= before + 2;
        };
        QTRY_VERIFY(again());
    }

private:
    /// Sends it, and notes the error that it ends with (0: none) behind its path.
    void send(Stage &stage, const ExchangeRequest &request)
    {
        const QString path = request.url.path();
        stage.network.send(request, m_context.get(), [this, path](const ServiceReply &reply) {
            m_errors.insert(path, reply.error ? reply.error->code : 0);
        });
    }

    std::unique_ptr<QObject> m_context;
    QMultiHash<QString, int> m_errors;
};

QTEST_GUILESS_MAIN(WaitingTest)
#include "test_waiting.moc"
