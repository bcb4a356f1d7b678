// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Tasks.h"
#include "support/InRow.h"
#include "support/LogCapture.h"
#include "support/ScriptedAlertPresenter.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

const QString refusal = u"Alert called from background thread."_s;

// Runs the work on another thread and waits for it. The work takes what the main thread owns: it stands
// still.
void elsewhere(const Task &work)
{
    QObject context;
    bool done = false;
    inBackground([&] {
        work();
        onMain(&context, [&] { done = true; });
    });
    QTRY_VERIFY(done);
}

auto alertSaying(AlertPresenter &presenter, const QString &text)
{
    auto alert = BrevokAlert::create(presenter);
    alert->content.messageText = text;
    return alert;
}

AlertContent contentOf(std::optional<QString> message, std::optional<QString> info)
{
    AlertContent content;
    content.messageText = std::move(message);
    content.informativeText = std::move(info);
    return content;
}

} // namespace

class TestAlerts final : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<LogCapture> log;
    std::unique_ptr<ScriptedAlertPresenter> presenter;
    std::unique_ptr<RecordingPanel> panel;
    std::unique_ptr<BrevokAlertQueue> queue;

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        log = std::make_unique<LogCapture>();
        presenter = std::make_unique<ScriptedAlertPresenter>();
        panel = std::make_unique<RecordingPanel>();
        queue = std::make_unique<BrevokAlertQueue>(*presenter, *panel);
    }
    void cleanup()
    {
        queue.reset();
        log.reset();
    }
    void cleanupTestCase() { QVERIFY(finishBackgroundWork(10000)); }

    void keysAndLogLines()
    {
        using Text = std::optional<QString>;
        const Text none;
        const QList<std::tuple<const char *, Text, Text, QString, QString>> rows{
            {"both", u"A"_s, u"b"_s, u"Ab"_s, u"Alert: A\nb"_s},
            {"no info", u"A"_s, none, u"A"_s, u"Alert: A\n-"_s},
            {"empty info", u"A"_s, u""_s, u"A"_s, u"Alert: A\n"_s},
            {"nothing", none, none, u""_s, u"Alert: -\n-"_s},
            {"places", u"%2"_s, u"%1"_s, u"%2%1"_s, u"Alert: %2\n%1"_s},
        };
        for (const auto &[name, message, info, key, line] : rows) {
            const InRow in(name);
            LogCapture::clear();
            Alert alert(*presenter, contentOf(message, info));
            QCOMPARE(alert.key(), key);
            BrevokAlertQueue fresh(*presenter, *panel); // which has not shown the same text
            QCOMPARE(fresh.runModal(alert), alertFirstButton);
            QCOMPARE(LogCapture::lines().value(0), line);
            QCOMPARE(LogCapture::lines().size(), 1);
        }
    }

    void modalAlertShowsWhatItIsGiven()
    {
        presenter->answer = alertSecondButton;
        presenter->whileShown = [&](const AlertContent &shown) {
            QCOMPARE(panel->calls, QList<bool>({true}));
            QCOMPARE(shown.messageText, u"Title"_s);
            QVERIFY(!shown.informativeText);
            QCOMPARE(shown.icon, u"image"_s);
            QCOMPARE(shown.buttons.size(), 2);
            QCOMPARE(shown.buttons.at(0).title, u"Continue"_s);
            QCOMPARE(shown.accessory, QVariant(7));
        };
        QCOMPARE(
            queue->modalAlert(u"Title"_s, {}, u"image"_s, {u"Continue"_s, u"Quit"_s}, 7), alertSecondButton);
        QCOMPARE(LogCapture::lines(), QStringList{u"Alert: Title\n"_s});
        QCOMPARE(panel->calls, QList<bool>({true, false}));
        // What was told from outside is cut before it is shown.
        presenter->whileShown = {};
        queue->tell(u"Failed"_s, QString(1'000'000, QChar(0x05D0)), {u"O\nK"_s});
        const AlertContent &told = presenter->shown.constLast();
        QVERIFY(told.informativeText->size() < 5000 && told.informativeText->endsWith(u'…'));
        QCOMPARE(told.buttons.at(0).title, u"O K"_s);
    }

    void sameTextIsShownOnceAtATime()
    {
        const QStringList ok{u"OK"_s};
        QList<int> answers;
        presenter->whileShown = [&](const AlertContent &) {
            if (answers.isEmpty()) {
                answers << queue->modalAlert(u"A"_s, u"b"_s, {}, ok);
                Alert sameKey(*presenter, contentOf(u"Ab"_s, std::nullopt));
                answers << queue->runModal(sameKey);
                answers << queue->modalAlert(u"other"_s, {}, {}, ok);
            }
        };
        QCOMPARE(queue->modalAlert(u"A"_s, u"b"_s, {}, ok), alertFirstButton);
        QCOMPARE(answers, QList<int>({alertNotShown, alertNotShown, alertFirstButton}));
        QCOMPARE(panel->calls, QList<bool>({true, true, false, false})); // not a counter
        QCOMPARE(queue->modalAlert(u"A"_s, u"b"_s, {}, ok), alertNotShown); // dismissed just now
        QCOMPARE(LogCapture::lines().size(), 5);
        bool again = false;
        QTRY_VERIFY(again = again || queue->modalAlert(u"A"_s, u"b"_s, {}, ok) == alertFirstButton);
    }

    void otherAlertsBlockTheirTextForGood()
    {
        {
            Alert plain(*presenter, contentOf(u"once"_s, {}));
            QCOMPARE(queue->runModal(plain), alertFirstButton);
            BrevokBlockingAlert blocking(*presenter, panel.get(), contentOf(u"blocking"_s, {}));
            QCOMPARE(queue->runModal(blocking), alertFirstButton);
            const auto ours = alertSaying(*presenter, u"ours"_s);
            QCOMPARE(queue->runModal(*ours), alertFirstButton);
            QCOMPARE(queue->runModal(*ours), alertNotShown); // its key stays while it lives
        }
        bool again = false;
        QTRY_VERIFY(again = again || queue->modalAlert(u"ours"_s, {}, {}, {}) == alertFirstButton);
        QCOMPARE(queue->modalAlert(u"once"_s, {}, {}, {}), alertNotShown);
        QCOMPARE(queue->modalAlert(u"blocking"_s, {}, {}, {}), alertNotShown);
        queue->removeFromQueue(u"once"_s);
        QCOMPARE(queue->modalAlert(u"once"_s, {}, {}, {}), alertFirstButton);
    }

    void errorAlert()
    {
        const auto alert = BrevokAlert::alertWithError(
            *presenter, {.description = u"It failed."_s, .recoverySuggestion = u"Try again."_s});
        QCOMPARE(alert->key(), u"It failed.Try again."_s);
        QCOMPARE(alert->content.buttons.size(), 1);
        const auto bare = BrevokAlert::alertWithError(*presenter, {.description = u"It failed."_s});
        QVERIFY(!bare->content.informativeText);
    }

    void backgroundThreadIsRefused()
    {
        BrevokBlockingAlert alert(*presenter, panel.get(), contentOf(u"A"_s, {}));
        bool created = true;
        QList<int> answers;
        elsewhere([&] {
            created = BrevokAlert::create(*presenter) != nullptr
                || BrevokAlert::alertWithError(*presenter, {}) != nullptr;
            answers << queue->runModal(alert) << queue->modalAlert(u"A"_s, {}, {}, {}) << alert.runModal();
            alert.openSheetModalForWindow(nullptr, [&](int answer) { answers << answer; });
            alert.beginSheetModalForWindow(nullptr, [&](int answer) { answers << answer; });
            alert.beginSheetModalForWindow(nullptr, &alert, [&](int answer) { answers << answer; });
        });
        QVERIFY(!created);
        QCOMPARE(answers, QList<int>({alertNotShown, alertNotShown, alertStopped}));
        QCOMPARE(LogCapture::count(u"Alert created from background thread."_s), 2);
        QCOMPARE(LogCapture::count(refusal), 6);
        QVERIFY(presenter->shown.isEmpty() && presenter->sheets.isEmpty() && panel->calls.isEmpty());
        QCOMPARE(queue->modalAlert(u"A"_s, {}, {}, {}), alertFirstButton); // the refusals took no key
    }

    void blockingAlert()
    {
        BrevokBlockingAlert orphan(*presenter, nullptr, contentOf(u"A"_s, {}));
        QCOMPARE(orphan.runModal(), alertStopped);
        orphan.beginSheetModalForWindow(nullptr, {});
        QVERIFY(presenter->shown.isEmpty() && presenter->sheets.isEmpty());

        presenter->answer = alertThirdButton;
        BrevokBlockingAlert alert(*presenter, panel.get(), contentOf(u"A"_s, {}));
        QCOMPARE(alert.runModal(), alertThirdButton);
        QCOMPARE(panel->calls, QList<bool>({true, false}));
        QCOMPARE(LogCapture::lines(), QStringList({u"Alert: A\n-"_s, u"Alert: \nA\n-"_s, u"Alert: A\n-"_s}));
        // A sheet holds the panel open only while it is being attached.
        using Support = AlertPresenter::SheetInterface;
        for (const Support support : {Support::WithHandler, Support::WithDelegate}) {
            panel->calls.clear();
            LogCapture::clear();
            presenter->sheetSupport = support;
            alert.openSheetModalForWindow(this, {});
            QCOMPARE(panel->calls, QList<bool>({true, false}));
            QVERIFY(!presenter->completions.isEmpty()); // still up
            QCOMPARE(LogCapture::lines(), QStringList({u"Alert: A\n-"_s, u"Alert: \nA\n-"_s}));
        }
    }

    void sheets()
    {
        using Support = AlertPresenter::SheetInterface;
        const QList<std::tuple<const char *, Support, QList<int>, int>> rows{
            {"with handler", Support::WithHandler, {alertSecondButton}, 0},
            {"with delegate", Support::WithDelegate, {alertContinued}, 0},
            {"none", Support::None, {}, 1},
        };
        Alert alert(*presenter, contentOf(u"A"_s, u"b"_s));
        for (const auto &[name, support, expected, shownModally] : rows) {
            const InRow in(name);
            LogCapture::clear();
            presenter->sheetSupport = support;
            QList<int> answers;
            alert.openSheetModalForWindow(this, [&](int answer) { answers << answer; });
            QCOMPARE(LogCapture::lines(), QStringList{u"Alert: A\nb"_s});
            while (!presenter->completions.isEmpty()) {
                presenter->completions.takeFirst()(alertSecondButton);
            }
            QCOMPARE(answers, expected);
            QCOMPARE(presenter->shown.size(), shownModally);
        }
        alert.closeSheet(this);
        presenter->windowsEndSheets = false;
        alert.closeSheet(this);
        QCOMPARE(presenter->endedBy, QStringList({u"window"_s, u"application"_s}));
    }

    void nobodyWaitsForAnAnswer()
    {
        presenter->waits = true;
        const auto alert = alertSaying(*presenter, u"Question"_s);
        QList<int> answers;
        auto context = std::make_unique<QObject>();
        const auto keep = [&answers](int given) {
            answers.append(given);
        };
        const AlertPresenter::Ending end = queue->beginModal(*alert, context.get(), keep);
        QCOMPARE(panel->calls, QList<bool>{true});
        queue->beginModal(*alert, this, keep);
        QCOMPARE(answers, QList{alertNotShown}); // the same text is up
        end(alertSecondButton);
        QCOMPARE(answers, (QList{alertNotShown, alertSecondButton}));
        QCOMPARE(panel->calls, QList<bool>({true, false}));
        context.reset();
        end(alertFirstButton);
        QCOMPARE(answers.size(), 2); // whoever asked is gone
    }

    // Nine at once are nine one after the other, and none holds up whoever raised it.
    void alertsWaitForEachOther()
    {
        presenter->waits = true;
        QList<int> answers;
        const auto raise = [&](const QString &text) {
            queue->show(
                alertSaying(*presenter, text), this, [&answers](int given) { answers.append(given); });
        };
        for (int i = 0; i < 9; ++i) {
            raise(u"Alert %1"_s.arg(i));
            raise(u"Alert %1"_s.arg(i)); // is up, or waits
        }
        QCOMPARE(answers, QList<int>(9, alertNotShown));
        for (int i = 0; i < 9; ++i) {
            QTRY_COMPARE(presenter->shown.size(), i + 1);
            QCOMPARE(presenter->shown[i].messageText, u"Alert %1"_s.arg(i));
            QVERIFY(panel->calls.constLast());
            presenter->press(alertFirstButton + i);
            QVERIFY(!panel->calls.constLast());
            QCOMPARE(answers.size(), 10 + i);
            QCOMPARE(answers.constLast(), alertFirstButton + i);
        }

        // One that somebody waits for is shown at once, and those behind it wait for it too.
        presenter->whileShown = [&](const AlertContent &) {
            raise(u"Behind it"_s);
            QVERIFY(presenter->up.isEmpty());
        };
        queue->modalAlert(u"Awaited"_s, {}, {}, {u"OK"_s});
        presenter->whileShown = {};
        QTRY_COMPARE(presenter->up.size(), 1);

        // What waits can be answered in the user's place, and goes with whoever kept it.
        const auto kept = alertSaying(*presenter, u"Kept"_s);
        const AlertPresenter::Ending end =
            queue->beginModal(*kept, this, [&answers](int given) { answers.append(given); });
        auto gone = alertSaying(*presenter, u"Gone"_s);
        queue->beginModal(*gone, this, [&](int) { QFAIL("it was not shown"); });
        gone.reset();
        end(alertThirdButton);
        QCOMPARE(answers.constLast(), alertThirdButton);
        raise(u"Last"_s);
        presenter->press(alertFirstButton);
        QTRY_COMPARE(presenter->up.size(), 1);
        QCOMPARE(presenter->shown.constLast().messageText, u"Last"_s);
    }

    void headless()
    {
        HeadlessAlertPresenter nobody;
        Alert alert(nobody, contentOf(u"Title"_s, u"text"_s));
        QCOMPARE(queue->runModal(alert), alertNotShown);
        QCOMPARE(LogCapture::lines(), QStringList({u"Alert: Title\ntext"_s, u"Alert not shown: Title"_s}));
        int answer = -1;
        alert.openSheetModalForWindow(this, [&](int given) { answer = given; });
        QCOMPARE(answer, alertNotShown);
    }
};

QTEST_GUILESS_MAIN(TestAlerts)
#include "test_alerts.moc"
