// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// call_timer NAME INTERFACE COMMAND...: starts COMMAND, calls its `Status` as soon as it has the bus name
// NAME, and prints the milliseconds from exec until the call is answered. Then COMMAND is killed.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int patienceMs = 20000;
constexpr double nanosecondsOfMillisecond = 1e6;

} // namespace

class Caller : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Caller)

public:
    explicit Caller(QStringList words)
        : m_name(words.takeFirst())
        , m_interface(words.takeFirst())
        , m_watcher(m_name, m_bus, QDBusServiceWatcher::WatchForRegistration)
    {
        connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &Caller::call);
        // Answered, so the bus knows already what is watched for, and that the owner before is gone.
        while (m_bus.interface()->isServiceRegistered(m_name)) { }
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.setProgram(words.takeFirst());
        m_process.setArguments(words);
        m_time.start();
        m_process.start();
    }
    ~Caller() override
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    void call()
    {
        const QDBusMessage status = QDBusMessage::createMethodCall(
            m_name, QStringLiteral("/com/tolvane/brevok/Control"), m_interface, QStringLiteral("Status"));
        auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(status), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
            answer->deleteLater();
            if (answer->isError()) {
                call(); // it is too early
                return;
            }
            std::printf("%.3f\n", static_cast<double>(m_time.nsecsElapsed()) / nanosecondsOfMillisecond);
            QCoreApplication::quit();
        });
    }

    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QString m_name;
    QString m_interface;
    QDBusServiceWatcher m_watcher;
    QProcess m_process;
    QElapsedTimer m_time;
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const Caller caller(QCoreApplication::arguments().mid(1));
    QTimer::singleShot(patienceMs, &application, [] { QCoreApplication::exit(EXIT_FAILURE); });
    return QCoreApplication::exec();
}

#include "call_timer.moc"
