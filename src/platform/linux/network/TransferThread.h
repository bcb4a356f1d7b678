// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/network/TransferWork.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QThreadPool>

#include <memory>
#include <mutex>

namespace brevok {

/// The main thread's end of the transfers. One thread moves the data of all; it begins with the first
/// request.
class TransferThread final : public QObject, public HttpTransfers, private TransferDesk {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransferThread)

public:
    explicit TransferThread(HttpSetup setup);
    ~TransferThread() override;

    quint64 start(HttpRequest request, Progress progress, Handler handler) override;
    void cancel(quint64 transfer) override;

private:
    struct Running {
        Progress progress;
        Handler handler;
        QString destination;
    };

    struct Proxy {
        QByteArray address;
        QElapsedTimer age; ///< invalid before the first look-up has ended
        bool lookedUp = false; ///< at the moment
        QList<TransferOrder> waiting; ///< for it
    };

    void askForProxy(TransferOrder order);
    void takeProxy(const QString &origin, const QByteArray &address);
    void give(TransferOrder order);
    void settle(quint64 transfer, const HttpReply &reply);

    [[nodiscard]] int bell() const override { return m_bell.get(); }
    [[nodiscard]] QList<TransferOrder> orders() override;
    void received(quint64 transfer, qint64 bytes) override;
    void ended(quint64 transfer, const HttpReply &reply, const QString &part) override;
    void store(quint64 transfer, const HttpReply &reply, const std::shared_ptr<const QString> &part);

    HttpSetup m_setup;
    QHash<QString, Proxy> m_proxies; ///< by scheme, host and port
    quint64 m_last = 0;
    QHash<quint64, Running> m_running;
    FileDescriptor m_bell;
    std::mutex m_lock; ///< of m_orders alone
    QList<TransferOrder> m_orders;
    QThreadPool m_thread; ///< of one
};

} // namespace brevok
