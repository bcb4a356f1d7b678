// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Log.h"
#include "platform/SelfUpdater.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "service/ReplyDecoding.h"
#include "support/FakeRouteLookup.h"
#include "support/LogCapture.h"
#include "support/MemorySettingsStore.h"
#include "support/ScriptedAlertPresenter.h"
#include "support/servers/FaultServer.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

const QString signinPath = u"/api/machine/signin"_s;
const QString signoutPath = u"/api/machine/signout"_s;
const QString dataKey = u"OrlecSessionData"_s;
const QString password = u"pass wörd\""_s;

constexpr int otherAction = 7;

class CountingUpdater final : public SelfUpdater {
public:
    int checks = 0;
    [[nodiscard]] bool automaticallyChecksForUpdates() const override { return false; }
    void setAutomaticallyChecksForUpdates(bool) override { }
    void checkForUpdates() override { }
    void checkForUpdatesInBackground() override { ++checks; }
};

// A session with all that it needs, against a server that the test scripts.
struct Stage {
    explicit Stage(int timeoutMs = 20000, const Record &stored = {},
        const TestIdentity &identity = TestCertificates::shared().valid())
        : server(identity)
        , network({.baseUrl = server.url(),
              .extraAuthorities = TestCertificates::shared().authorities(),
              .reachabilityHost = u"public.example"_s,
              .requestTimeoutMs = timeoutMs})
        , connectivity(network, routes)
        , queue(presenter, panel)
    {
        if (!stored.isEmpty()) {
            settings.values.insert(dataKey, archived(stored));
        }
        session = std::make_unique<BrevokSession>(settings, network, connectivity, queue, updater);
        QObject::connect(session.get(), &BrevokSession::actionFinished, session.get(),
            [this](int action, bool ok, const QString &message) {
                ++ended;
                lastAction = action;
                succeeded = ok;
                told = message;
            });
        QObject::connect(
            session.get(), &BrevokSession::statusWillChange, session.get(), [this] { ++willChange; });
        QObject::connect(session.get(), &BrevokSession::statusChanged, session.get(), [this] { ++changed; });
    }

    static Record signedIn()
    {
        return {{u"SessionId"_s, u"held-id"_s}, {u"orlecId"_s, u"ada@example.com"_s}, {u"later"_s, 7}};
    }
    [[nodiscard]] Record stored() const
    {
        return unarchived(settings.values.value(dataKey).toByteArray()).toObject();
    }
    void request(int action)
    {
        if (action == SessionSignin) {
            session->signinWithID(u"ada@example.com"_s, password);
        } else if (action == SessionSignout) {
            session->signout();
        } else {
            session->connectToURL(server.url(u"/other"_s), u"GET"_s, action, true, false, {}, false);
        }
    }
    [[nodiscard]] QString shownText(qsizetype index) const
    {
        return index < presenter.shown.size() ? presenter.shown.at(index).messageText.value_or(u"-"_s) + u'|'
                + presenter.shown.at(index).informativeText.value_or(QString())
                                              : QString();
    }

    FaultServer server;
    MemorySettingsStore settings;
    FakeRouteLookup routes;
    ScriptedAlertPresenter presenter;
    RecordingPanel panel;
    NetworkFactory network;
    Connectivity connectivity;
    BrevokAlertQueue queue;
    CountingUpdater updater;
    std::unique_ptr<BrevokSession> session;
    int ended = 0;
    int lastAction = -1;
    bool succeeded = false;
    QString told;
    int willChange = 0;
    int changed = 0;
};

RawHeaders withoutTransport(const Request &request)
{
    RawHeaders ours;
    for (const auto &header : request.headers) {
        const QByteArray name = header.first.toLower();
        if (name != "host" && name != "connection" && name != "content-length" && name != "user-agent"
            && name != "accept-language") {
            ours.append(header);
        }
    }
    return ours;
}

} // namespace

class TestSession final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        log = std::make_unique<LogCapture>();
    }
    void cleanup()
    {
        log.reset();
        setLogLevel(0);
    }

    void signsInAndStays();
    void signsOutWithTheCookie();
    void replies_data();
    void replies();
    void forcedSignout_data();
    void forcedSignout();
    void unreachable_data();
    void unreachable();
    void silentServerIsAskedThrice();
    void lastTryCounts();
    void brokenTransfers_data();
    void brokenTransfers();
    void certificates_data();
    void certificates();
    void recordIsWrittenBetweenRequestsOnly();
    void storedRecords_data();
    void storedRecords();
    void redirectsLeadNowhereElse();
    void logHoldsNoSecrets();

private:
    std::unique_ptr<LogCapture> log;
};

void TestSession::signsInAndStays()
{
    Stage stage;
    stage.server.on(signinPath,
        Response{.headers = {{"Set-Cookie", "SessionId=forged"}, {"Set-Cookie", "tracker=1"}},
            .body = R"({"ErrorCode":0,"SessionId":"id-1"})",
            .gzip = true});
    stage.session->signinWithID(u"ada@example.com"_s, password);
    QCOMPARE(stage.session->orlecId(), u"ada@example.com"_s);
    QVERIFY(stage.session->isUpdating());
    QCOMPARE(stage.changed, 1);
    QTRY_COMPARE(stage.ended, 1);
    QVERIFY2(stage.succeeded, qPrintable(stage.told));
    QCOMPARE(stage.session->sessionId(), u"id-1"_s);
    QVERIFY(!stage.session->isUpdating());
    QCOMPARE(stage.willChange, stage.changed);
    QCOMPARE(stage.changed, 2);
    QVERIFY(stage.presenter.shown.isEmpty());
    QVERIFY(!stage.session->description().contains(u"id-1"_s));

    const Request request = stage.server.requests().at(0);
    QCOMPARE(request.method, "POST");
    QCOMPARE(request.body,
        QJsonDocument(QJsonObject{{u"email"_s, u"ada@example.com"_s}, {u"password"_s, password}})
            .toJson(QJsonDocument::Compact));
    QCOMPARE(withoutTransport(request),
        RawHeaders({{"Content-Type", "application/json"}, {"Accept", "application/json"},
            {"Accept-Encoding", "gzip"}, {"X-Tolvane-Brevok-Version", "2"}}));

    QCOMPARE(stage.stored().value("SessionId"_L1), u"id-1"_s);
    QCOMPARE(stage.settings.values.value(u"OrlecSessionVersion"_s).toDouble(), 1.2);
    QVERIFY(stage.settings.synchronizations > 0);
    const BrevokSession next(stage.settings, stage.network, stage.connectivity, stage.queue, stage.updater);
    QCOMPARE(next.sessionId(), u"id-1"_s);
    QCOMPARE(BrevokSession::session(), stage.session.get());

    // The cookies that the service set meanwhile do not push ours out.
    stage.server.on(signoutPath, Response::ok(R"({"ErrorCode":0})"));
    stage.session->signout();
    QTRY_COMPARE(stage.ended, 2);
    QCOMPARE(stage.server.requests(signoutPath).at(0).header("Cookie"), "SessionId=id-1");
}

void TestSession::signsOutWithTheCookie()
{
    Stage stage(20000, Stage::signedIn());
    stage.server.on(signoutPath, Response::ok(R"({"ErrorCode":0})"));
    stage.session->signout();
    QTRY_COMPARE(stage.ended, 1);
    QVERIFY(stage.succeeded);
    QVERIFY(stage.session->sessionId().isNull());
    QCOMPARE(stage.session->orlecId(), u"ada@example.com"_s);
    QCOMPARE(stage.stored(), Record({{u"orlecId"_s, u"ada@example.com"_s}, {u"later"_s, 7}}));
    const Request request = stage.server.requests().at(0);
    QVERIFY(request.body.isEmpty());
    QCOMPARE(withoutTransport(request),
        RawHeaders({{"Content-Type", "application/json"}, {"Accept", "application/json"},
            {"Accept-Encoding", "gzip"}, {"X-Tolvane-Brevok-Version", "2"},
            {"Cookie", "SessionId=held-id"}}));

    stage.session->signout();
    QTRY_COMPARE(stage.ended, 2);
    QVERIFY(stage.server.requests().at(1).header("Cookie").isNull()); // signed out: nothing to send
}

void TestSession::replies_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<Response>("response");
    QTest::addColumn<QString>("told"); // null: succeeded
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("held");
    QTest::addColumn<QString>("line");
    const QString unexpected = u"Unexpected server response."_s;
    const QString wrong = u"Wrong user name or password."_s;
    const QString update = u"There is critical update of Tolvane Brevok application."_s;
    const auto row = [](const char *name, int action, const Response &response, const QString &told,
                         const QString &shown, bool held, const QString &line = {}) {
        QTest::newRow(name) << action << response << told << shown << held << line;
    };
    row("no session id", SessionSignin, Response::ok(R"({"ErrorCode":0})"), unexpected, {}, false);
    row("list", SessionSignin, Response::ok("[1]"), unexpected, {}, false);
    row("wrong password", SessionSignin, Response::of(401, R"({"ErrorCode":2,"ErrorMessage":"no such"})"),
        wrong, u"Authentication Error|"_s + wrong, false,
        u"Server Error! connection to: \"%1\" failed: 2 with message: no such"_s);
    row("401 without JSON", SessionSignin, Response::of(401, "no"), wrong, {}, false,
        u"Session connection to: \"%1\" failed with response: 401 - unauthorized"_s);
    row("quiet", SessionSignout, Response::ok(R"({"ErrorCode":2})"), wrong, {}, false,
        u"Session action: signout failed With Error Message: "_s + wrong);
    row("code 1", SessionSignout, Response::ok(R"({"ErrorCode":1,"ErrorMessage":7})"), u"-"_s, {}, false,
        u"Server Error! connection to: \"%1\" failed: 1 with message: -"_s);
    row("text of the service", SessionSignin,
        Response::ok(R"({"ErrorCode":10,"ErrorMessage":"Password: at least nine letters"})"),
        u"Password: at least nine letters"_s, u"Authentication Error|Password: at least nine letters"_s,
        false);
    row("code 9", SessionSignin, Response::ok(R"({"ErrorCode":9,"SessionId":"new"})"), {}, {}, true);
    row("garbage at sign-out", SessionSignout, Response::ok("<html>\n"), unexpected, {}, false,
        u"Session action signout failed with error. Received 7 bytes of unexpected data"_s);
    row("garbage elsewhere", otherAction, Response::of(500, "oops"),
        u"Server responded with HTTP code: 500."_s, {}, true, u"Response string: oops"_s);
    row("long garbage", otherAction, Response::ok(QByteArray(300, 'x')), unexpected, {}, true,
        u"Response string: "_s + QString(256, u'x'));
    row("empty body", SessionSignin, Response::ok(""), unexpected, {}, false,
        u"Session action signin failed with error. Received 0 bytes of unexpected data"_s);
    row("broken gzip", SessionSignout,
        Response{.headers = {{"Content-Encoding", "gzip"}}, .body = "not gzip"}, unexpected, {}, false,
        u"Session action signout failed with error. Received 8 bytes of unexpected data"_s);
    row("chunked", otherAction, Response{.body = R"({"ErrorCode":0})", .framing = Response::Framing::Chunked},
        {}, {}, true);
    row("until close", otherAction,
        Response{.body = R"({"ErrorCode":0})", .gzip = true, .framing = Response::Framing::UntilClose}, {},
        {}, true);
    row("redirect", otherAction, Response::redirect("/elsewhere"), {}, {}, true);
    row("critical update", SessionSignin,
        Response{.headers = {{"x-tolvane-brevok-response-code", " 1x"}}, .body = R"({"ErrorCode":2})"},
        update, update + u'|', true);
    row("other response code", SessionSignout,
        Response{.headers = {{"X-Tolvane-Brevok-Response-Code", "10"}}, .body = R"({"ErrorCode":0})"}, {}, {},
        false);
}

void TestSession::replies()
{
    QFETCH(int, action);
    QFETCH(Response, response);
    QFETCH(QString, told);
    QFETCH(QString, line);
    Stage stage(20000, Stage::signedIn());
    const QString path = action == SessionSignin ? signinPath
        : action == SessionSignout               ? signoutPath
                                                 : u"/other"_s;
    stage.server.on(path, response);
    stage.server.on(u"/elsewhere"_s, Response::ok(R"({"ErrorCode":0})"));
    stage.request(action);
    QTRY_COMPARE(stage.ended, 1);
    QCOMPARE(stage.lastAction, action);
    QCOMPARE(stage.succeeded, told.isNull());
    QCOMPARE(stage.told, told);
    QTEST(stage.shownText(0), "shown");
    QVERIFY(stage.presenter.shown.size() <= 1);
    QTEST(!stage.session->sessionId().isNull(), "held");
    QVERIFY(!stage.session->isUpdating());
    QCOMPARE(stage.changed, 2);
    QCOMPARE(stage.updater.checks, told.contains(u"critical"_s) ? 1 : 0);
    if (!line.isEmpty()) {
        const QString expected = line.contains(u"%1"_s) ? line.arg(stage.server.url(path).toString()) : line;
        QVERIFY2(LogCapture::contains(expected), qPrintable(LogCapture::lines().join(u'\n')));
    }
}

void TestSession::forcedSignout_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("signouts");
    QTest::newRow("invalid session") << 3 << 0;
    QTest::newRow("security violation") << 98 << 1;
}

void TestSession::forcedSignout()
{
    QFETCH(int, code);
    QFETCH(int, signouts);
    Stage stage(20000, Stage::signedIn());
    stage.server.on(u"/other"_s, Response::ok(R"({"ErrorCode":)" + QByteArray::number(code) + '}'));
    stage.server.on(signoutPath, Response::ok(R"({"ErrorCode":98})")); // quiet: it is the answer to one
    stage.request(otherAction);
    QTRY_COMPARE(stage.ended, 1 + signouts);
    QVERIFY(stage.session->sessionId().isNull());
    QVERIFY(!stage.stored().contains("SessionId"_L1));
    QCOMPARE(stage.server.requests(signoutPath).size(), signouts);
    if (signouts > 0) {
        QCOMPARE(stage.server.requests(signoutPath).at(0).header("Cookie"), "SessionId=held-id");
    }
    QCOMPARE(stage.presenter.shown.size(), 1);
    QVERIFY(stage.shownText(0).endsWith(u"You have been logged out!\nPlease try to sign-in again."_s));
}

void TestSession::unreachable_data()
{
    QTest::addColumn<bool>("verbose");
    QTest::newRow("told") << true;
    QTest::newRow("silent") << false;
}

void TestSession::unreachable()
{
    QFETCH(bool, verbose);
    Stage stage(20000, Stage::signedIn());
    stage.routes.flags.reset();
    stage.session->connectToURL(
        stage.server.url(signoutPath), u"POST"_s, SessionSignout, true, false, {}, verbose);
    QCOMPARE(stage.ended, 0);
    QCOMPARE(stage.changed, 1);
    QCOMPARE(stage.shownText(0),
        verbose ? u"Connection Error|Network is unreachable. Is your internet connection down?"_s
                : QString());
    QTRY_COMPARE(stage.ended, 1);
    QVERIFY(!stage.succeeded && stage.told.startsWith(u"Network is unreachable"_s));
    QCOMPARE(stage.session->sessionId(), u"held-id"_s);
    QVERIFY(stage.server.requests().isEmpty());
}

void TestSession::silentServerIsAskedThrice()
{
    Stage stage(2000, Stage::signedIn());
    stage.server.on(signoutPath, Response::silent());
    bool updatingWhileTold = false;
    stage.presenter.whileShown = [&](const AlertContent &) {
        updatingWhileTold = stage.session->isUpdating();
    };
    stage.session->signout();
    QTRY_VERIFY_WITH_TIMEOUT(stage.ended == 1 && !stage.session->isUpdating(), 60000);
    QVERIFY(!stage.succeeded && updatingWhileTold);
    QCOMPARE(stage.server.requests(signoutPath).size(), 3);
    QCOMPARE(stage.server.requests().at(2).headers, stage.server.requests().at(0).headers);
    QCOMPARE(stage.presenter.shown.size(), 1);
    QCOMPARE(LogCapture::count(
                 u"Session connection to: \"%1\" failed!"_s.arg(stage.server.url(signoutPath).toString())),
        3);
    QCOMPARE(stage.changed, 4);
    QCOMPARE(stage.session->sessionId(), u"held-id"_s); // no reply handler ran
}

void TestSession::lastTryCounts()
{
    Stage stage(2000);
    stage.server.on(signinPath, [&](const Request &) {
        return stage.server.requests().size() < 3 ? Response::silent()
                                                  : Response::ok(R"({"ErrorCode":0,"SessionId":"late"})");
    });
    stage.request(SessionSignin);
    QTRY_COMPARE_WITH_TIMEOUT(stage.ended, 1, 60000);
    QVERIFY(stage.succeeded);
    QCOMPARE(stage.session->sessionId(), u"late"_s);
    QVERIFY(stage.presenter.shown.isEmpty());
}

void TestSession::brokenTransfers_data()
{
    QTest::addColumn<Response>("response");
    const QByteArray body = R"({"ErrorCode":0,"SessionId":"id"})";
    QTest::newRow("reset") << Response::reset();
    QTest::newRow("not HTTP") << Response::garbage("\x16\x03 what?\r\n\r\n");
    QTest::newRow("cut short") << Response{.body = body, .fault = Response::Fault::Close, .faultAfter = 10};
    QTest::newRow("cut short in chunks") << Response{.body = body,
        .framing = Response::Framing::Chunked,
        .fault = Response::Fault::Close,
        .faultAfter = body.size()};
    QTest::newRow("endless") << Response{.body = QByteArray(1024, ' '), .repeat = qint64{1024} * 1024};
    QTest::newRow("redirect loop") << Response::redirect(signinPath.toLatin1(), 307);
}

void TestSession::brokenTransfers()
{
    QFETCH(Response, response);
    Stage stage(20000, Stage::signedIn());
    stage.server.on(signinPath, response);
    stage.request(SessionSignin);
    QTRY_VERIFY_WITH_TIMEOUT(stage.ended == 1 && !stage.session->isUpdating(), 20000);
    QVERIFY(!stage.succeeded);
    QVERIFY(!stage.told.isEmpty());
    QCOMPARE(stage.presenter.shown.size(), 1);
    QCOMPARE(stage.presenter.shown.at(0).messageText, stage.told);
    QCOMPARE(stage.session->sessionId(), u"held-id"_s);
}

void TestSession::certificates_data()
{
    QTest::addColumn<TestIdentity>("identity");
    static const TestCertificates stranger;
    QTest::newRow("expired") << TestCertificates::shared().expired();
    QTest::newRow("other host") << TestCertificates::shared().otherHost();
    QTest::newRow("unknown authority") << stranger.valid();
}

void TestSession::certificates()
{
    QFETCH(TestIdentity, identity);
    setLogLevel(1);
    Stage stage(20000, {}, identity);
    stage.server.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":"id"})"));
    stage.request(SessionSignin);
    QTRY_VERIFY(stage.ended == 1 && !stage.session->isUpdating());
    QVERIFY(!stage.succeeded);
    QVERIFY(stage.server.requests().isEmpty()); // the password never left
    QCOMPARE(stage.presenter.shown.size(), 1);
    QCOMPARE(LogCapture::count(u"Called connection:didReceiveAuthenticationChallenge:"_s), 1);
    QVERIFY(LogCapture::contains(u"  host:                       localhost"_s));
    QVERIFY(!LogCapture::mentions(u"Trying to use credential"_s));
}

void TestSession::recordIsWrittenBetweenRequestsOnly()
{
    Stage stage;
    stage.server.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":"id"})"));
    stage.server.on(u"/other"_s, Response::silent());
    stage.session->connectToURL(stage.server.url(u"/other"_s), u"GET"_s, otherAction, true, false, {}, false);
    stage.request(SessionSignin);
    QTRY_COMPARE(stage.ended, 1);
    QCOMPARE(stage.session->sessionId(), u"id"_s);
    QVERIFY(stage.session->isUpdating());
    QVERIFY(!stage.settings.contains(dataKey));
    stage.server.stop();
    QTRY_VERIFY(!stage.session->isUpdating());
    QCOMPARE(stage.stored().value("SessionId"_L1), u"id"_s);
}

void TestSession::storedRecords_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("setAside");
    QTest::addColumn<QString>("sessionId");
    QTest::newRow("none") << QVariant() << false << QString();
    QTest::newRow("record") << QVariant(archived(Stage::signedIn())) << false << u"held-id"_s;
    QTest::newRow("wrong types") << QVariant(archived(Record{{u"SessionId"_s, 7}, {u"orlecId"_s, true}}))
                                 << false << QString();
    QTest::newRow("empty id") << QVariant(archived(Record{{u"SessionId"_s, u""_s}})) << false << QString();
    QTest::newRow("garbage") << QVariant(QByteArray("\xff\x00garbage", 9)) << true << QString();
    QTest::newRow("list") << QVariant(archived(QJsonArray{1, 2})) << true << QString();
    QTest::newRow("text") << QVariant(u"text"_s) << true << QString();
}

void TestSession::storedRecords()
{
    QFETCH(QVariant, stored);
    QFETCH(bool, setAside);
    Stage stage;
    if (stored.isValid()) {
        stage.settings.values.insert(dataKey, stored);
    }
    const BrevokSession session(
        stage.settings, stage.network, stage.connectivity, stage.queue, stage.updater);
    QTEST(session.sessionId(), "sessionId");
    QCOMPARE(stage.settings.keysSetAside, setAside ? QStringList{dataKey} : QStringList());
    QVERIFY(!session.description().contains(u"held-id"_s));
}

void TestSession::redirectsLeadNowhereElse()
{
    FaultServer elsewhere;
    elsewhere.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":"stolen"})"));
    Stage stage;
    stage.server.on(signinPath, Response::redirect(elsewhere.url(signinPath).toEncoded(), 307));
    stage.request(SessionSignin);
    QTRY_VERIFY(stage.ended == 1 && !stage.session->isUpdating());
    QVERIFY(!stage.succeeded);
    QVERIFY(elsewhere.requests().isEmpty());
}

void TestSession::logHoldsNoSecrets()
{
    setLogLevel(1);
    Stage stage(20000, Stage::signedIn());
    stage.server.on(signinPath, [](const Request &request) { // echoes, and makes a session without a code
        return Response::ok(request.body + "pass wörd\" {\"SessionId\": \"fresh-id\"}");
    });
    stage.server.on(u"/other"_s, [](const Request &request) {
        return Response{.headers = {{"Set-Cookie", request.header("Cookie")}},
            .body = R"({"ErrorCode":50,"ErrorMessage":"bad )" + request.header("Cookie") + "\"}"};
    });
    stage.request(otherAction);
    QTRY_COMPARE(stage.ended, 1);
    stage.request(SessionSignin);
    QTRY_COMPARE(stage.ended, 2);
    QVERIFY(LogCapture::mentions(u"Response string: "_s) && LogCapture::mentions(u"Session request: "_s));
    for (const QString &secret : {u"pass w"_s, u"held-id"_s, u"fresh-id"_s}) {
        QVERIFY2(!LogCapture::mentions(secret), qPrintable(LogCapture::lines().join(u'\n')));
    }
}

QTEST_GUILESS_MAIN(TestSession)
#include "test_session.moc"
