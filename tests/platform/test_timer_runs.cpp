// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/SystemdTimerRuns.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

const QString unitName = u"tolvane-brevok-converge.timer"_s;
const QString unitPath = u"/org/freedesktop/systemd1/unit/timer"_s;

} // namespace

/// The user's systemd on the real bus, with one unit at most.
class Manager final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Manager")

public:
    bool hasUnit = true;

public Q_SLOTS:
    QDBusObjectPath GetUnit(const QString &name)
    {
        if (!hasUnit || name != unitName) {
            sendErrorReply(u"org.freedesktop.systemd1.NoSuchUnit"_s, u"not loaded"_s);
        }
        return QDBusObjectPath(unitPath);
    }
};

/// Its timer.
class Unit final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Timer")
    Q_PROPERTY(qulonglong NextElapseUSecRealtime MEMBER next)

public:
    qulonglong next = 0;
};

class TimerRunsTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void theNextRunIsTold_data()
    {
        const Table<qulonglong, QDateTime> row;
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(1795340400000);
        row("a time", 1795340400000000ULL, time);
        row("switched off", 0ULL, QDateTime());
        row("never", std::numeric_limits<qulonglong>::max(), QDateTime());
        row("no such timer", 1ULL, QDateTime());
        row("no systemd", 1ULL, QDateTime());
    }

    void theNextRunIsTold()
    {
        const auto [microseconds, wanted] = columns<qulonglong, QDateTime>();
        const bool systemd = currentRow() != u"no systemd"_s;
        Manager manager;
        manager.hasUnit = currentRow() != u"no such timer"_s;
        Unit timer;
        timer.next = microseconds;
        if (systemd) {
            QVERIFY(m_bus.registerObject(
                u"/org/freedesktop/systemd1"_s, &manager, QDBusConnection::ExportAllSlots));
            QVERIFY(m_bus.registerObject(unitPath, &timer, QDBusConnection::ExportAllProperties));
            QVERIFY(m_bus.registerService(u"org.freedesktop.systemd1"_s));
        }
        SystemdTimerRuns runs(
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"asker"_s), unitName);
        int answers = 0;
        QDateTime told;
        runs.askNext(this, [&](const std::optional<QDateTime> &next) {
            ++answers;
            told = next.value_or(QDateTime());
        });
        QCOMPARE(answers, 0);
        QTRY_COMPARE(answers, 1);
        QCOMPARE(told, wanted);
        QCOMPARE(m_bus.unregisterService(u"org.freedesktop.systemd1"_s), systemd);
    }

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();
};

QTEST_GUILESS_MAIN(TimerRunsTest)
#include "test_timer_runs.moc"
