// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "UpdaterStage.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Phase = UpdateState::Phase;

namespace {

constexpr int patient = 30000;
const QString feedPath = UpdaterStage::feedPath();

} // namespace

class SelfUpdaterTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void failingChecks()
    {
        const QList<std::tuple<const char *, Response, bool>> rows{
            {"server error", Response::of(500, "oops"), true},
            {"endless", Response{.body = QByteArray(1 << 20, ' '), .repeat = 1 << 10}, true},
            {"unsafe offer",
                Response::ok(sampleFeed(SampleItem{.version = "101", .url = "http://localhost/x"}.xml())),
                true},
            {"no network", Response::ok({}), false},
        };
        for (const auto &[name, response, reachable] : rows) {
            const InRow in(name);
            UpdaterStage stage;
            stage.reachable = reachable;
            stage.server.on(feedPath, response);
            QSignalSpy wanted(stage.updater.get(), &BrevokSelfUpdater::windowWanted);

            stage.updater->checkForUpdates();
            QCOMPARE(wanted.size(), 1);
            QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Failed, patient);
            QVERIFY(!stage.error().isEmpty());
            stage.updater->installUpdate();
            QCOMPARE(stage.phase(), Phase::Failed);
            stage.updater->dismiss();
            QCOMPARE(stage.phase(), Phase::Idle);

            // In the background the same is nobody's business.
            const qsizetype asked = stage.server.requests().size();
            stage.updater->checkForUpdatesInBackground();
            QTRY_COMPARE_WITH_TIMEOUT(stage.server.requests().size(), asked + (reachable ? 1 : 0), patient);
            stage.serveGoodPackage();
            QTRY_VERIFY_WITH_TIMEOUT(
                (stage.updater->checkForUpdatesInBackground(), stage.phase() == Phase::Offered) || !reachable,
                patient);
            QCOMPARE(wanted.size(), reachable ? 2 : 1);
        }
    }

    void notes()
    {
        const QList<std::tuple<const char *, Response, QByteArray, QString>> rows{
            {"from their page", Response::ok("<p>Näher</p>"), "https", u"<p>Näher</p>"_s},
            {"their page is missing", Response::of(404), "https", u"Inside"_s},
            {"their page is huge", Response::ok(QByteArray(300LL * 1024, 'x')), "https", u"Inside"_s},
            {"their page is not secure", Response::ok("x"), "http", u"Inside"_s},
        };
        for (const auto &[name, response, scheme, notes] : rows) {
            const InRow in(name);
            UpdaterStage stage;
            stage.server.on(u"/notes"_s, response);
            SampleItem item = stage.item(stage.maker.sign(stage.package), stage.package.size());
            QUrl link = stage.server.url(u"/notes"_s);
            link.setScheme(QString::fromLatin1(scheme));
            item.more = "<description>Inside</description><sparkle:releaseNotesLink>" + link.toEncoded()
                + "</sparkle:releaseNotesLink>";
            stage.serve(item.xml());
            QCOMPARE(stage.check(), Phase::Offered);
            QCOMPARE(stage.updater->state().notes, notes);
        }
    }

    void skipping()
    {
        UpdaterStage stage;
        stage.serveGoodPackage();
        QCOMPARE(stage.check(), Phase::Offered);
        stage.updater->skipVersion();
        QCOMPARE(stage.phase(), Phase::Idle);

        LogCapture::clear();
        stage.updater->checkForUpdatesInBackground();
        QTRY_VERIFY_WITH_TIMEOUT(LogCapture::contains(u"Tolvane Brevok is up to date."_s), patient);
        QCOMPARE(stage.phase(), Phase::Idle);
        QCOMPARE(stage.check(), Phase::Offered);
    }

    // The user left the answer to an earlier check open.
    void openAnswersHoldNothingUp()
    {
        for (const Response &earlier : {Response::ok(sampleFeed({})), Response::of(500)}) {
            UpdaterStage stage;
            stage.server.on(feedPath, earlier);
            stage.updater->checkForUpdates();
            QTRY_VERIFY_WITH_TIMEOUT(
                stage.phase() == Phase::UpToDate || stage.phase() == Phase::Failed, patient);
            stage.serveGoodPackage();
            stage.updater->checkForUpdatesInBackground();
            QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Offered, patient);
            QVERIFY(!stage.updater->state().byUser);
        }
    }

    void aBuildWithoutKey()
    {
        const QString text = u"This version cannot check for updates."_s;
        UpdaterStage stage;
        stage.serveGoodPackage();
        stage.updater = stage.makeUpdater({});
        stage.updater->checkForUpdatesInBackground();
        stage.updater->checkForUpdatesInBackground();
        QCOMPARE(LogCapture::count(text), 1);
        QCOMPARE(stage.phase(), Phase::Idle);
        stage.updater->checkForUpdates();
        QCOMPARE(stage.phase(), Phase::Failed);
        QCOMPARE(stage.error(), text);
        QVERIFY(stage.server.requests().isEmpty());
    }

    void automaticChecks()
    {
        using namespace std::chrono_literals;
        UpdaterStage stage({.first = 1ms, .look = 1ms, .period = 24h});
        stage.serve({});
        QVERIFY(!stage.updater->automaticallyChecksForUpdates());
        stage.updater->setAutomaticallyChecksForUpdates(true);
        QVERIFY(stage.settings.boolValue(u"SUEnableAutomaticChecks"_s));
        const QString answered = u"Tolvane Brevok is up to date."_s;
        QTRY_COMPARE_WITH_TIMEOUT(LogCapture::count(answered), 1, patient);

        // What was checked today is not checked again, not even by the next run.
        stage.updater = stage.makeUpdater();
        const QDateTime last = stage.state.store.date(AutomaticChecks::lastCheckKey);
        QVERIFY(last > QDateTime::currentDateTimeUtc().addDays(-1));
        stage.state.store.setDate(AutomaticChecks::lastCheckKey, last.addDays(-1));
        stage.updater = stage.makeUpdater();
        QTRY_COMPARE_WITH_TIMEOUT(LogCapture::count(answered), 2, patient);
        QCOMPARE(stage.server.requests(feedPath).size(), 2);
        stage.updater->setAutomaticallyChecksForUpdates(false);
        QVERIFY(!stage.updater->findChild<QTimer *>(u"automaticUpdateChecks"_s)->isActive());
    }

    // As the program does it.
    void checksComeDaily()
    {
        using namespace std::chrono_literals;
        UpdaterStage stage;
        stage.updater->setAutomaticallyChecksForUpdates(true);
        const auto *timer = stage.updater->findChild<QTimer *>(u"automaticUpdateChecks"_s);
        QVERIFY(timer->isActive() && timer->intervalAsDuration() > 0s && timer->intervalAsDuration() < 5min);
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QVERIFY(AutomaticChecks::isDue(now.addDays(-1), now, stage.times.period));
        QVERIFY(!AutomaticChecks::isDue(now.addDays(-1).addSecs(1), now, stage.times.period));
        QVERIFY(AutomaticChecks::isDue(now.addSecs(1), now, stage.times.period)); // by a clock that was wrong
    }
};

QTEST_GUILESS_MAIN(SelfUpdaterTest)
#include "test_self_updater.moc"
