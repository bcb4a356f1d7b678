// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/BoundedWork.h"
#include "foundation/BrevokError.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Record.h"
#include "foundation/StandardVersionComparator.h"
#include "foundation/Tasks.h"
#include "support/Archived.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "support/LogCapture.h"

#include <QTest>

#include <algorithm>
#include <future>
#include <limits>
#include <semaphore>
#include <thread>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::archived;
using testing::InRow;
using testing::LogCapture;

namespace {

int sign(std::strong_ordering order)
{
    return order == std::strong_ordering::less ? -1 : order == std::strong_ordering::greater ? 1 : 0;
}

} // namespace

class FoundationTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void versionsCompare()
    {
        const QList<std::tuple<const char *, const char *, int>> rows{{"1.0", "1.1", -1}, {"2.9", "2.10", -1},
            {"0.0.1", "0.1", -1}, {"1.0", "1.0.0", 0}, {"1.01", "1.1", 0}, {"3.3 (5847)", "3.3.0 (5847)", 0},
            {"1.1.1.1818", "1.1.1.1818.0", 0}, {"1.0a1", "1.0b1", -1}, {"1.0b2", "1.0", -1},
            {"1.0b", "1.0b2", -1}, {"1.0b9", "1.0b10", -1}, {"1.0pre1", "1.0.0pre1", 0},
            {"1.5.5", "1.5.6a1", -1}, {"3.3 (5847)", "3.3.1b1 (5902)", -1}, {"1.0 (1234)", "1.0 (1235)", -1},
            {"1.0", "1.0 (7)", -1}, {"1.5.5-335d3e2", "1.5.5-a655360", 0}, {"1.5-beta", "1.5.0", 0},
            {"1_2", "1 3", -1}, {"", "1", -1}, {"", "", 0},
            {"99999999999999999999998", "99999999999999999999999", -1}};
        for (const auto &[a, b, order] : rows) {
            const QByteArray row = QByteArray(a) + " / " + b;
            const InRow in(row.constData());
            const QString older = QString::fromLatin1(a);
            const QString newer = QString::fromLatin1(b);
            QCOMPARE(sign(StandardVersionComparator::compareVersion(older, newer)), order);
            QCOMPARE(sign(StandardVersionComparator::compareVersion(newer, older)), -order);
        }
    }

    void leadingNumbers()
    {
        const QList<std::tuple<const char *, qint64, float>> rows{{"14012", 14012, 14012.0F},
            {"15.0.2", 15, 15.0F}, {"16.4", 16, 16.4F}, {" \t-7x", -7, -7.0F}, {"CC", 0, 0.0F}, {"", 0, 0.0F},
            {"99999999999999999999", std::numeric_limits<qint64>::max(), 1e20F}};
        for (const auto &[text, integer, number] : rows) {
            const InRow in(text);
            QCOMPARE(leadingInteger(QString::fromLatin1(text)), integer);
            QCOMPARE(leadingFloat(QString::fromLatin1(text)), number);
        }
    }

    void valuesReadAsThePlatformReadsThem()
    {
        QVERIFY(isNumber(QJsonValue(true)));
        QVERIFY(!isNumber(QJsonValue(u"1"_s)));
        QCOMPARE(integerValue(QJsonValue(true)), 1);
        QCOMPARE(integerValue(QJsonValue(75.9)), 75);
        QCOMPARE(integerValue(QJsonValue(1e300)), std::numeric_limits<qint64>::max());
        QCOMPARE(integerValue(QJsonValue(u"75x"_s)), 75);
        QCOMPARE(displayText(QJsonValue(140.0)), u"140"_s);
        QCOMPARE(displayText(QJsonValue(7.5)), u"7.5"_s);
        QCOMPARE(displayText(QJsonValue(QJsonValue::Undefined)), u"(null)"_s);
        QVERIFY(nonEmptyString(QJsonValue(5)).isNull());
    }

    void foldersAreTakenFromPaths()
    {
        const QList<std::pair<const char *, const char *>> rows{
            {"/A/Plug-Ins//Tolvane/P.x", "/A/Plug-Ins//Tolvane"}, {"/A/Plug-Ins//Tolvane", "/A/Plug-Ins"},
            {"/A/Plug-Ins//", "/A"}, {"/A", "/"}, {"/", "/"}, {"A/", ""}, {"", ""}};
        for (const auto &[path, folder] : rows) {
            const InRow in(path);
            QCOMPARE(deletingLastPathComponent(QString::fromLatin1(path)), QLatin1StringView(folder));
        }
    }

    void archivesKeepEveryValue()
    {
        const QJsonObject record{{u"Name"_s, u"Ä\u0000b"_s}, {u"Size"_s, qint64(9007199254740993)},
            {u"Flag"_s, true}, {u"Nothing"_s, QJsonValue()}, {u"Half"_s, 0.5},
            {u"Queue"_s, QJsonArray{QJsonArray{u"removeStart"_s, u"/a b"_s}}}};
        QCOMPARE(unarchived(archived(record)).toObject(), record);
        QCOMPARE(unarchived(archived(QJsonArray{record})).toArray(), QJsonArray{record});
    }

    void halfCharactersAreReplaced()
    {
        const QString half = u"a"_s + QChar(0xd83d) + u"b"_s;
        const QString low = QString(QChar(0xde00)) + QChar(0xd83d);
        const QString whole = u"\U0001F600"_s;
        QCOMPARE(wellFormed(half), u"a\uFFFDb"_s);
        QCOMPARE(wellFormed(low), u"\uFFFD\uFFFD"_s);
        QCOMPARE(wellFormed(whole), whole);
        QCOMPARE(wellFormed(QJsonArray{QJsonObject{{half, QJsonArray{low, 7, whole}}}, QJsonValue(), true}),
            QJsonValue(QJsonArray{
                QJsonObject{{u"a\uFFFDb"_s, QJsonArray{u"\uFFFD\uFFFD"_s, 7, whole}}}, QJsonValue(), true}));
        QVERIFY(mayHoldHalfCharacters("{\"a\":\"\\ud83d\"}") && mayHoldHalfCharacters("\\uDE00"));
        QVERIFY(!mayHoldHalfCharacters("{\"a\":\"\\u00fc\"}"));
    }

    void rubbishIsNoArchive()
    {
        const QByteArray whole = archived(QJsonObject{{u"a"_s, QJsonArray{1, 2, 3}}});
        for (const QByteArray &rubbish : {QByteArray(), QByteArray("bplist00"), QByteArray("\xff\xff\xff"),
                 QByteArray(100000, '\x9f'), whole.chopped(6), QByteArray("{\"a\":1}")}) {
            QVERIFY(unarchived(rubbish).isUndefined());
        }
    }

    void errorsAreLoggedWithTheirDetails()
    {
        const LogCapture log;
        logError(std::nullopt);
        QVERIFY(LogCapture::lines().isEmpty());

        BrevokError error{.domain = u"d"_s, .code = 1, .description = u"It failed."_s};
        logError(error);
        logError(BrevokError{});
        error.detailedErrors = {BrevokError{.description = u"why"_s}, BrevokError{}};
        logError(error);
        QCOMPARE(LogCapture::lines(),
            (QStringList{u"Error: It failed."_s, u"  {Description = \"It failed.\"}"_s, u"Error: -"_s,
                u"  -"_s, u"Error: It failed."_s, u"  DetailedError: {Description = \"why\"}"_s,
                u"  DetailedError: -"_s}));
    }

    void workIsHandedOverInOrder()
    {
        QList<int> order;
        SerialQueue queue;
        for (int i = 0; i < 50; ++i) {
            queue.add([this, i, &order] {
                QVERIFY(!onMainThread());
                onMain(this, [i, &order] { order << i; });
            });
        }
        QTRY_COMPARE(order.size(), 50);
        QVERIFY(std::is_sorted(order.cbegin(), order.cend()));
    }

    void workForAnObjectThatIsGoneIsDropped()
    {
        bool ran = false;
        std::binary_semaphore posted(0);
        auto *context = new QObject;
        inBackground([&] {
            onMain(context, [&] { ran = true; });
            posted.release();
        });
        posted.acquire();
        delete context;
        QCoreApplication::processEvents();
        QVERIFY(!ran);
    }

    void hangingWorkIsLeftToItself()
    {
        using namespace std::chrono_literals;
        const auto gate = std::make_shared<std::promise<void>>();
        std::atomic<int> back = 0;
        const auto hang = [open = gate->get_future().share()](Pulse &) {
            open.wait();
        };
        constexpr int most = 8;
        for (int i = 0; i < most; ++i) {
            QVERIFY(!runBounded(
                u"place %1"_s.arg(i), hang, [&back] { ++back; }, 1ms));
        }
        // None is begun where one hangs, nor a ninth elsewhere.
        bool begun = false;
        for (const QString &place : {u"place 3"_s, u"elsewhere"_s}) {
            QVERIFY(!runBounded(place, [&begun](Pulse &) { begun = true; }));
        }
        QVERIFY(!begun);
        gate->set_value();
        QTRY_COMPARE(back.load(), most);
        for (const QString &place : {u"place 3"_s, u"elsewhere"_s}) {
            QCOMPARE(bounded<int>(place, [](Pulse &) { return 7; }), std::optional(7));
        }
    }

    void slowWorkIsWaitedFor()
    {
        using namespace std::chrono_literals;
        const auto slow = [](Pulse &pulse) {
            for (int i = 0; i < 50; ++i) {
                pulse.beat();
                std::this_thread::sleep_for(5ms);
            }
            return true;
        };
        QVERIFY(bounded<bool>(u"slow"_s, slow, {}, 100ms).value_or(false));
    }
};

QTEST_GUILESS_MAIN(FoundationTest)
#include "test_foundation.moc"
