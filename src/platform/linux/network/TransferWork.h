// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HttpTransfers.h"

#include <chrono>

namespace brevok {

/// What the main thread wants of the thread that moves the data.
struct TransferOrder {
    using Clock = std::chrono::steady_clock;
    enum class Kind { Start, Cancel, End };

    Kind kind = Kind::End; ///< End: of the thread
    quint64 transfer = 0;
    HttpRequest request{};
    QByteArray proxy{}; ///< empty: none
    Clock::time_point given = Clock::now();

    /// When the whole has taken too long.
    [[nodiscard]] Clock::time_point wholeDeadline() const
    {
        const int wholeMs = request.limits.wholeMs;
        return wholeMs > 0 ? given + std::chrono::milliseconds(wholeMs) : Clock::time_point::max();
    }
};

/// The program, as the thread that moves the data sees it. Called on that thread.
class TransferDesk {
public:
    TransferDesk() = default;
    virtual ~TransferDesk() = default;
    Q_DISABLE_COPY_MOVE(TransferDesk)

    /// A descriptor that can be read from when there are orders.
    [[nodiscard]] virtual int bell() const = 0;
    [[nodiscard]] virtual QList<TransferOrder> orders() = 0;
    virtual void received(quint64 transfer, qint64 bytes) = 0;
    /// @p part is a whole file that waits for its name; empty when there is none.
    virtual void ended(quint64 transfer, const HttpReply &reply, const QString &part) = 0;
};

/// Moves data until it is told to end.
void moveData(TransferDesk &desk, const HttpSetup &setup);

/// The proxy of the user's settings and environment for @p url, as the library takes it; empty for none. May
/// fetch and run a script. Any thread.
[[nodiscard]] QByteArray systemProxyFor(const QUrl &url);

} // namespace brevok
