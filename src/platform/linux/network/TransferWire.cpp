// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/TransferWire.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cerrno>

#include <sys/socket.h>

namespace brevok {

namespace {

using Length = quint64; // goes before each message

bool mayComeLater()
{
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

} // namespace

TransferWire::TransferWire(FileDescriptor socket)
    : m_socket(std::move(socket))
{
}

void TransferWire::putMessage(const QByteArray &message)
{
    const Length length = qToLittleEndian(static_cast<Length>(message.size()));
    m_unsent.append(reinterpret_cast<const char *>(&length), sizeof(length)).append(message);
}

bool TransferWire::flush()
{
    qsizetype sent = 0;
    bool alive = true;
    while (alive && sent < m_unsent.size()) {
        const ssize_t count = ::send(m_socket.get(), m_unsent.constData() + sent,
            static_cast<size_t>(m_unsent.size() - sent), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0 && mayComeLater()) {
            break;
        }
        alive = count >= 0 || errno == EINTR;
        sent += std::max<ssize_t>(count, 0);
    }
    m_unsent.remove(0, sent);
    return alive;
}

bool TransferWire::fetch()
{
    std::array<char, 65536> block;
    for (;;) {
        const ssize_t count = ::recv(m_socket.get(), block.data(), block.size(), MSG_DONTWAIT);
        if (count > 0) {
            m_received.append(block.data(), count);
        } else if (count == 0 || errno != EINTR) {
            return count < 0 && mayComeLater();
        }
    }
}

std::optional<QByteArray> TransferWire::next()
{
    constexpr qsizetype head = sizeof(Length);
    if (m_received.size() < head) {
        return std::nullopt;
    }
    const auto length = static_cast<qsizetype>(qFromLittleEndian<Length>(m_received.constData()));
    if (length < 0 || m_received.size() - head < length) {
        return std::nullopt;
    }
    const QByteArray message = m_received.sliced(head, length);
    m_received.remove(0, head + length);
    return message;
}

QDataStream &operator<<(QDataStream &stream, const HttpSetup &setup)
{
    return stream << setup.userAgent << setup.extraAuthorities;
}

QDataStream &operator>>(QDataStream &stream, HttpSetup &setup)
{
    return stream >> setup.userAgent >> setup.extraAuthorities;
}

// Both processes read the same clock.
QDataStream &operator<<(QDataStream &stream, const TransferOrder &order)
{
    const HttpRequest &request = order.request;
    const HttpLimits &limits = request.limits;
    return stream << order.kind << order.transfer << order.proxy
                  << qint64(order.given.time_since_epoch().count()) << request.method << request.url
                  << request.headers << request.body << limits.headerBytes << limits.bodyBytes
                  << limits.silenceMs << limits.leastBytes << limits.wholeMs << request.destination
                  << request.expectedSize << request.takesTurns << request.checksum;
}

QDataStream &operator>>(QDataStream &stream, TransferOrder &order)
{
    HttpRequest &request = order.request;
    HttpLimits &limits = request.limits;
    qint64 given = 0;
    stream >> order.kind >> order.transfer >> order.proxy >> given >> request.method >> request.url
        >> request.headers >> request.body >> limits.headerBytes >> limits.bodyBytes >> limits.silenceMs
        >> limits.leastBytes >> limits.wholeMs >> request.destination >> request.expectedSize
        >> request.takesTurns >> request.checksum;
    order.given = TransferOrder::Clock::time_point(TransferOrder::Clock::duration(given));
    return stream;
}

QDataStream &operator<<(QDataStream &stream, const HttpReply &reply)
{
    return stream << reply.status << reply.headers << reply.body << reply.received << reply.handshake
                  << reply.failure << reply.code << reply.reason;
}

QDataStream &operator>>(QDataStream &stream, HttpReply &reply)
{
    return stream >> reply.status >> reply.headers >> reply.body >> reply.received >> reply.handshake
        >> reply.failure >> reply.code >> reply.reason;
}

} // namespace brevok
