// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/HelperProgram.h"

#include "daemon/HelperService.h"
#include "daemon/HelperSetup.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "platform/linux/files/RootFile.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <QTimer>

#include <cstdlib>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

/// A call may wait for a slow disk; that must not keep the others waiting.
constexpr int workers = 16;
/// After the name was given back: until calls that were on their way have arrived.
constexpr int farewellMs = 500;
constexpr int finishMs = 60'000;

/// Who may only start this program, as root even, must not have it believe a bus of his own.
bool isTrusted(const QString &address)
{
    const QString start = u"unix:path="_s;
    return address.startsWith(start + u'/') && !address.contains(u';') && !address.contains(u',')
        && !address.contains(u'%') && rootfile::isRootsPlace(address.mid(start.size()));
}

QDBusConnection connectTo(const QString &address)
{
    if (!address.isEmpty() && !isTrusted(address)) {
        logLine(u"the bus is not where only root can have put it"_s);
        return QDBusConnection(u"none"_s);
    }
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SystemBus, u"helper"_s)
                             : QDBusConnection::connectToBus(address, u"helper"_s);
}

int setUp(const HelperOptions &options)
{
    // A scratch root has nothing to do with the system's bus.
    const HelperSetup setup(options.prefix,
        options.prefix.isEmpty() || !options.address.isEmpty() ? connectTo(options.address)
                                                               : QDBusConnection(u"none"_s));
    std::optional<BrevokError> error;
    bool done = true;
    if (options.task == HelperOptions::Task::Obey) {
        setup.obeyStandardInput();
    } else {
        done = options.task == HelperOptions::Task::Install ? setup.install(&error) : setup.remove(&error);
    }
    logError(error);
    return done ? 0 : 1;
}

int failed(const QString &line)
{
    logLine(line);
    return 1;
}

/// Leaves when nothing was asked for a while. The name goes first: whoever calls from then on gets another
/// helper.
void leaveWhenIdle(HelperService &service, int idleSeconds)
{
    auto *farewell = new QTimer(&service);
    farewell->setSingleShot(true);
    QObject::connect(farewell, &QTimer::timeout, &service, [&service, farewell] {
        if (service.isIdle()) {
            QCoreApplication::quit();
        } else {
            farewell->start(farewellMs);
        }
    });
    auto *idle = new QTimer(&service);
    idle->setSingleShot(true);
    QObject::connect(idle, &QTimer::timeout, &service, [&service, idle, farewell, idleSeconds] {
        if (!service.isIdle()) {
            idle->start(idleSeconds * 1000);
            return;
        }
        service.withdraw();
        farewell->start(farewellMs);
    });
    QObject::connect(&service, &HelperService::active, idle, [idle, farewell, idleSeconds] {
        if (!farewell->isActive()) {
            idle->start(idleSeconds * 1000);
        }
    });
    idle->start(idleSeconds * 1000);
}

/// Tells the program that its bus has gone.
class BusEnd final : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void left()
    {
        logLine(u"the bus has gone"_s);
        QCoreApplication::quit();
    }
};

int serve(const HelperOptions &options)
{
    std::optional<BrevokError> error;
    if (!rootfile::makePrivateFolder(options.stateFolder, &error)) {
        logError(error);
        return 1;
    }
    QDBusConnection bus = connectTo(options.address);
    if (!bus.isConnected()) {
        return failed(u"there is no bus: %1"_s.arg(bus.lastError().message()));
    }
    BusEnd end;
    bus.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
        u"Disconnected"_s, &end, SLOT(left()));
    HelperService service(bus, options.stateFolder);
    if (!service.publish()) {
        return failed(u"the helper's name belongs to somebody else: %1"_s.arg(bus.lastError().message()));
    }
    QThreadPool::globalInstance()->setMaxThreadCount(workers);
    // Calls are served from the loop on, so nobody comes in between.
    service.repair();
    leaveWhenIdle(service, options.idleSeconds);
    const int status = QCoreApplication::exec();
    if (!finishBackgroundWork(finishMs)) {
        // It hangs on somebody's file system, and would be waited for again at the regular end.
        logLine(u"work goes on that does not end"_s);
        std::_Exit(1);
    }
    return status;
}

} // namespace

std::optional<HelperOptions> parseHelperOptions(const QStringList &arguments, QString *complaint)
{
    using Purpose = HelperOptions::Task;
    const QHash<QString, Purpose> tasks{{u"--install"_s, Purpose::Install}, {u"--remove"_s, Purpose::Remove},
        {u"--obey"_s, Purpose::Obey}, {u"--version"_s, Purpose::ShowVersion},
        {u"--help"_s, Purpose::ShowHelp}};
    HelperOptions options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (const auto task = tasks.constFind(argument); task != tasks.constEnd()) {
            options.task = *task;
            continue;
        }
        const QString value = arguments.value(i + 1);
        bool usable = !value.isEmpty();
        if (argument == u"--prefix"_s || argument == u"--state"_s) {
            usable = value.startsWith(u'/');
            (argument == u"--prefix"_s ? options.prefix : options.stateFolder) = value;
        } else if (argument == u"--address"_s) {
            options.address = value;
        } else if (argument == u"--idle-seconds"_s) {
            options.idleSeconds = value.toInt(&usable);
            usable = usable && options.idleSeconds > 0 && options.idleSeconds <= 86400;
        } else {
            *complaint = u"unknown option: %1"_s.arg(argument);
            return std::nullopt;
        }
        if (!usable) {
            *complaint = u"unusable value of %1: %2"_s.arg(argument, value.isEmpty() ? u"-"_s : value);
            return std::nullopt;
        }
        ++i;
    }
    return options;
}

int runHelper(const HelperOptions &options)
{
    return options.task == HelperOptions::Task::Serve ? serve(options) : setUp(options);
}

} // namespace brevok

#include "HelperProgram.moc"
