// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/CurlTransfer.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <map>

namespace brevok {

namespace {

constexpr int turnsOfHost = 6; // for files, and as many for memory
constexpr long keptConnections = 8;

/// All requests of the thread.
class CurlTransfers final {
public:
    CurlTransfers(TransferDesk &desk, const HttpSetup &setup)
        : m_desk(desk)
        , m_setup(setup)
        , m_multi(curl_multi_init())
    {
        curl_multi_setopt(m_multi, CURLMOPT_MAXCONNECTS, keptConnections);
    }
    ~CurlTransfers()
    {
        for (const auto &[number, transfer] : m_running) {
            curl_multi_remove_handle(m_multi, transfer->handle());
        }
        m_running.clear();
        curl_multi_cleanup(m_multi);
    }
    Q_DISABLE_COPY_MOVE(CurlTransfers)

    void run()
    {
        while (takeOrders()) {
            startWaiting();
            int running = 0;
            curl_multi_perform(m_multi, &running);
            endReady();
            endLate();
            curl_waitfd bell = {m_desk.bell(), CURL_WAIT_POLLIN, 0};
            curl_multi_poll(m_multi, &bell, 1, m_endedSome ? 0 : untilDeadline(), nullptr);
        }
    }

private:
    using Clock = CurlTransfer::Clock;

    /// @return false when the thread is to end
    bool takeOrders()
    {
        const QList<TransferOrder> orders = m_desk.orders();
        for (const TransferOrder &order : orders) {
            switch (order.kind) {
            case TransferOrder::Kind::End:
                return false;
            case TransferOrder::Kind::Start:
                m_waiting.append(order);
                break;
            case TransferOrder::Kind::Cancel:
                m_waiting.removeIf([&order](const auto &one) { return one.transfer == order.transfer; });
                drop(order.transfer);
                break;
            }
        }
        return true;
    }

    // One host is not asked for all icons or all archives at once. Nothing else waits for another request.
    void startWaiting()
    {
        m_endedSome = false;
        std::map<std::pair<QString, bool>, int> open;
        const auto slot = [](const TransferOrder &order) {
            return std::pair(order.request.url.authority(), order.request.destination.isEmpty());
        };
        for (const auto &[number, transfer] : m_running) {
            open[slot(transfer->order())] += transfer->order().request.takesTurns ? 1 : 0;
        }
        m_waiting.removeIf([&](const TransferOrder &order) {
            if (order.request.takesTurns && ++open[slot(order)] > turnsOfHost) {
                return false;
            }
            auto transfer = std::make_unique<CurlTransfer>(m_desk, m_setup, order);
            curl_multi_add_handle(m_multi, transfer->handle());
            m_running.emplace(order.transfer, std::move(transfer));
            return true;
        });
    }

    void drop(quint64 number)
    {
        const auto found = m_running.find(number);
        if (found != m_running.end()) {
            curl_multi_remove_handle(m_multi, found->second->handle());
            m_running.erase(found);
            m_endedSome = true;
        }
    }

    void endReady()
    {
        int left = 0;
        while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
            if (message->msg == CURLMSG_DONE) {
                CurlTransfer *transfer = CurlTransfer::of(message->easy_handle);
                transfer->end(message->data.result);
                drop(transfer->number());
            }
        }
    }

    void endLate()
    {
        const Clock::time_point now = Clock::now();
        QList<quint64> late;
        for (const auto &[number, transfer] : m_running) {
            if (transfer->deadline() <= now) {
                transfer->endLate();
                late.append(number);
            }
        }
        for (const quint64 number : late) {
            drop(number);
        }
        m_waiting.removeIf([this, now](const TransferOrder &order) {
            const bool isLate = order.wholeDeadline() <= now;
            if (isLate) {
                m_desk.ended(order.transfer,
                    {.failure = HttpFailure::TooSlow, .reason = QStringLiteral("It was not its turn")}, {});
            }
            return isLate;
        });
    }

    [[nodiscard]] int untilDeadline() const
    {
        Clock::time_point next = Clock::time_point::max();
        for (const auto &[number, transfer] : m_running) {
            next = std::min(next, transfer->deadline());
        }
        for (const TransferOrder &order : m_waiting) {
            next = std::min(next, order.wholeDeadline());
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now());
        return static_cast<int>(std::clamp<qint64>(left.count(), 0, INT_MAX));
    }

    TransferDesk &m_desk;
    const HttpSetup &m_setup;
    CURLM *m_multi;
    std::map<quint64, std::unique_ptr<CurlTransfer>> m_running;
    QList<TransferOrder> m_waiting; ///< for a connection
    bool m_endedSome = false; ///< so that others may begin
};

} // namespace

void moveData(TransferDesk &desk, const HttpSetup &setup)
{
    // A server that hangs up is no reason to end.
    sigset_t hangUp;
    sigemptyset(&hangUp);
    sigaddset(&hangUp, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &hangUp, nullptr);
    curl_global_init(CURL_GLOBAL_DEFAULT);
    CurlTransfers(desk, setup).run();
}

} // namespace brevok
