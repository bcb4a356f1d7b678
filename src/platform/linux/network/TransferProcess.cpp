// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// moveData() and systemProxyFor() of programs that wait for hours between two requests: what speaks HTTP, and
// all that it needs, is in a process of its own, which begins with a request and ends when there was none for
// a while. Some of those libraries never give back what they hold, nor can they be unloaded.

#include "foundation/Texts.h"
#include "platform/linux/network/TransferWire.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSet>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int idleMs = 5000; // longer than what comes between two requests of one job
constexpr int longestEndMs = 5000;

QString programThatMovesData()
{
    return QCoreApplication::applicationDirPath() + u"/../lib/tolvane-brevok/tolvane-brevok-network"_s;
}

/// The process, as the thread that gives it its orders sees it.
class TransferProcess final {
public:
    TransferProcess(TransferDesk &desk, const HttpSetup &setup)
        : m_desk(desk)
        , m_setup(setup)
        , m_program(::open(QFile::encodeName(programThatMovesData()).constData(), O_PATH | O_CLOEXEC))
    {
    }
    ~TransferProcess() { end(); }
    Q_DISABLE_COPY_MOVE(TransferProcess)

    void run()
    {
        while (takeOrders()) {
            const bool idle = m_wire && m_running.isEmpty();
            std::array<pollfd, 2> ends{
                pollfd{m_desk.bell(), POLLIN, 0}, pollfd{m_wire ? m_wire->descriptor() : -1, POLLIN, 0}};
            if (m_wire && m_wire->hasUnsent()) {
                ends[1].events |= POLLOUT;
            }
            if (::poll(ends.data(), ends.size(), idle ? idleMs : -1) == 0) {
                end();
            } else if (m_wire && ends[1].revents != 0) {
                goOn();
            }
        }
    }

private:
    /// @return false when the thread is to end
    bool takeOrders()
    {
        const QList<TransferOrder> orders = m_desk.orders();
        return std::all_of(
            orders.cbegin(), orders.cend(), [this](const TransferOrder &order) { return take(order); });
    }

    bool take(const TransferOrder &order)
    {
        if (order.kind == TransferOrder::Kind::End) {
            return false;
        }
        if (order.kind == TransferOrder::Kind::Start) {
            m_running.insert(order.transfer);
            begin();
        } else {
            m_running.remove(order.transfer);
        }
        if (m_wire) {
            m_wire->put(order);
        } else {
            failAll(Texts::tr("the process that speaks HTTP cannot be started"));
        }
        return true;
    }

    void begin()
    {
        std::array<int, 2> ends{};
        if (m_wire || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            return;
        }
        FileDescriptor ours(ends[0]);
        const FileDescriptor theirs(ends[1]);
        const QByteArray program = "/proc/self/fd/" + QByteArray::number(m_program.get());
        QByteArray name = QFile::encodeName(programThatMovesData());
        std::array<char *, 2> words{name.data(), nullptr};
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, theirs.get(), STDIN_FILENO);
        if (::posix_spawn(&m_process, program.constData(), &actions, nullptr, words.data(), environ) == 0) {
            m_wire.emplace(std::move(ours));
            m_wire->put(m_setup);
        }
        ::posix_spawn_file_actions_destroy(&actions);
    }

    void goOn()
    {
        const bool sent = m_wire->flush();
        const bool alive = m_wire->fetch() && sent;
        tellDesk();
        if (!alive) {
            end();
            failAll(Texts::tr("the process that speaks HTTP has ended"));
        }
    }

    void tellDesk()
    {
        while (const std::optional<QByteArray> message = m_wire->next()) {
            QDataStream stream(*message);
            quint64 transfer = 0;
            qint64 bytes = 0;
            stream >> transfer >> bytes;
            if (bytes >= 0) {
                m_desk.received(transfer, bytes);
                continue;
            }
            HttpReply reply;
            QString part;
            stream >> reply >> part;
            m_running.remove(transfer);
            m_desk.ended(transfer, reply, part);
        }
    }

    // What it still has to say is listened to: a whole file may wait for its name. Not for ever: quitting
    // waits for it.
    void end()
    {
        if (!m_wire) {
            return;
        }
        ::shutdown(m_wire->descriptor(), SHUT_WR);
        while (m_wire->fetch()) {
            pollfd word = {m_wire->descriptor(), POLLIN, 0};
            if (::poll(&word, 1, longestEndMs) == 0) {
                ::kill(m_process, SIGKILL);
            }
        }
        tellDesk();
        m_wire.reset();
        while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) { }
    }

    void failAll(const QString &reason)
    {
        const QSet<quint64> running = std::exchange(m_running, {});
        for (const quint64 transfer : running) {
            m_desk.ended(transfer, {.failure = HttpFailure::Unknown, .reason = reason}, {});
        }
    }

    TransferDesk &m_desk;
    const HttpSetup &m_setup;
    const FileDescriptor m_program; ///< kept: an update of the package may put another version in its place
    QSet<quint64> m_running;
    std::optional<TransferWire> m_wire; ///< to the process, while there is one
    pid_t m_process = 0;
};

} // namespace

void moveData(TransferDesk &desk, const HttpSetup &setup)
{
    TransferProcess(desk, setup).run();
}

QByteArray systemProxyFor(const QUrl &url)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(programThatMovesData(), {u"--proxy"_s});
    process.write(url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment));
    process.closeWriteChannel();
    process.waitForFinished(-1);
    return process.readAllStandardOutput();
}

} // namespace brevok
