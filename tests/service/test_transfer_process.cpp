// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "platform/linux/network/TransferWire.h"
#include "ServiceStage.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <chrono>
#include <csignal>
#include <semaphore>
#include <thread>

#include <unistd.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = ServiceStage;

namespace {

// Of this program; 0 for none.
pid_t processThatMovesData()
{
    const QStringList processes = QDir(u"/proc"_s).entryList({u"[1-9]*"_s}, QDir::Dirs);
    const auto found = std::find_if(processes.cbegin(), processes.cend(), [](const QString &process) {
        QFile status(u"/proc/%1/status"_s.arg(process));
        const bool ours = status.open(QIODevice::ReadOnly)
            && status.readAll().contains("\nPPid:\t" + QByteArray::number(::getpid()) + '\n');
        return ours
            && QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(process)).endsWith("/tolvane-brevok-network"_L1);
    });
    return found == processes.cend() ? 0 : found->toInt();
}

} // namespace

/// The process that moves the application's data comes and goes.
class TransferProcessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { QVERIFY(finishBackgroundWork(patient)); }

    void livesAsLongAsThereAreRequests()
    {
        Stage stage;
        QCOMPARE(processThatMovesData(), 0);
        for (int run = 0; run < 2; ++run) {
            QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
            QVERIFY(processThatMovesData() != 0);
            QTRY_COMPARE_WITH_TIMEOUT(processThatMovesData(), 0, patient);
        }
    }

    void itsEndEndsTheRequests()
    {
        Stage stage;
        stage.server.on(u"/killed"_s, [](const Request &) {
            ::kill(processThatMovesData(), SIGKILL);
            return Response::silent();
        });
        const ServiceReply reply = stage.list(u"/killed"_s);
        QVERIFY(reply.error);
        QVERIFY2(reply.error->description.contains(u"has ended"_s), qPrintable(reply.error->description));
        QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
    }

    // Whoever quits waits for the thread that gives the orders.
    void itsStandstillHoldsNobody()
    {
        std::binary_semaphore ended{0};
        std::thread rescue;
        bool rescued = false;
        {
            Stage stage;
            QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
            const pid_t process = processThatMovesData();
            ::kill(process, SIGSTOP);
            rescue = std::thread([&ended, &rescued, process] {
                if (!ended.try_acquire_for(std::chrono::milliseconds(patient))) {
                    rescued = ::kill(process, SIGKILL) == 0;
                }
            });
        }
        ended.release();
        rescue.join();
        QVERIFY2(!rescued, "the program would never have ended");
        QTRY_COMPARE_WITH_TIMEOUT(processThatMovesData(), 0, patient);
    }

    void limitsArrive()
    {
        TransferOrder sent;
        sent.request.limits = {
            .headerBytes = 1, .bodyBytes = 2, .silenceMs = 3, .leastBytes = 4, .wholeMs = 5};
        QByteArray wire;
        QDataStream out(&wire, QIODevice::WriteOnly);
        out << sent;
        TransferOrder arrived;
        QDataStream in(wire);
        in >> arrived;
        const HttpLimits &limits = arrived.request.limits;
        QCOMPARE((QList<qint64>{limits.headerBytes, limits.bodyBytes, limits.silenceMs, limits.leastBytes,
                     limits.wholeMs}),
            (QList<qint64>{1, 2, 3, 4, 5}));
    }
};

QTEST_GUILESS_MAIN(TransferProcessTest)
#include "test_transfer_process.moc"
