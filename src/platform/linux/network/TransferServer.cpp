// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/TransferServer.h"

#include "platform/linux/network/TransferWire.h"

#include <poll.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace brevok {

namespace {

/// The program, at the other end of the wire.
class FarDesk final : public TransferDesk {
public:
    explicit FarDesk(TransferWire &wire)
        : m_wire(wire)
    {
    }

    [[nodiscard]] int bell() const override { return m_wire.descriptor(); }

    [[nodiscard]] QList<TransferOrder> orders() override
    {
        const bool goesOn = m_wire.fetch();
        QList<TransferOrder> orders;
        while (const std::optional<QByteArray> message = m_wire.next()) {
            QDataStream stream(*message);
            stream >> orders.emplaceBack();
        }
        if (!goesOn) {
            orders.append(TransferOrder());
        }
        return orders;
    }

    void received(quint64 transfer, qint64 bytes) override
    {
        m_wire.put(transfer, bytes);
        sendAll();
    }

    void ended(quint64 transfer, const HttpReply &reply, const QString &part) override
    {
        m_wire.put(transfer, qint64(-1), reply, part);
        sendAll();
    }

private:
    void sendAll()
    {
        while (m_wire.flush() && m_wire.hasUnsent()) {
            pollfd room = {m_wire.descriptor(), POLLOUT, 0};
            ::poll(&room, 1, -1);
        }
    }

    TransferWire &m_wire;
};

} // namespace

void serveTransfers()
{
    ::prctl(PR_SET_NAME, "brevok-network"); // it was started by the number of an open file
    TransferWire wire{FileDescriptor(STDIN_FILENO)};
    std::optional<QByteArray> first;
    while (!first) {
        pollfd word = {wire.descriptor(), POLLIN, 0};
        ::poll(&word, 1, -1);
        const bool goesOn = wire.fetch();
        first = wire.next();
        if (!goesOn && !first) {
            return;
        }
    }
    HttpSetup setup;
    QDataStream stream(*first);
    stream >> setup;
    FarDesk desk(wire);
    moveData(desk, setup);
}

} // namespace brevok
