// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/network/TransferWork.h"

#include <QDataStream>
#include <QIODevice>

#include <optional>

namespace brevok {

/// One end of what the program and the process that moves its data have to say to each other: messages, each
/// whole and in order. Nothing here waits.
class TransferWire final {
public:
    /// @p socket is one of a connected pair.
    explicit TransferWire(FileDescriptor socket);

    [[nodiscard]] int descriptor() const { return m_socket.get(); }

    /// Puts a message behind those that wait for flush().
    template <typename... Parts> void put(const Parts &...parts)
    {
        QByteArray message;
        QDataStream stream(&message, QIODevice::WriteOnly);
        (stream << ... << parts);
        putMessage(message);
    }
    [[nodiscard]] bool hasUnsent() const { return !m_unsent.isEmpty(); }
    /// Sends what can be sent now. @return false when the other end is gone
    [[nodiscard]] bool flush();
    /// Receives what has arrived. @return false when nothing more will
    [[nodiscard]] bool fetch();
    /// The next message that was received.
    [[nodiscard]] std::optional<QByteArray> next();

private:
    void putMessage(const QByteArray &message);

    FileDescriptor m_socket;
    QByteArray m_unsent;
    QByteArray m_received;
};

QDataStream &operator<<(QDataStream &stream, const HttpSetup &setup);
QDataStream &operator>>(QDataStream &stream, HttpSetup &setup);
QDataStream &operator<<(QDataStream &stream, const TransferOrder &order);
QDataStream &operator>>(QDataStream &stream, TransferOrder &order);
QDataStream &operator<<(QDataStream &stream, const HttpReply &reply);
QDataStream &operator>>(QDataStream &stream, HttpReply &reply);

} // namespace brevok
