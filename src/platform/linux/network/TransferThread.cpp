// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/TransferThread.h"

#include "foundation/Tasks.h"
#include "platform/DurableFile.h"
#include "platform/InternetAddress.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <QTimer>

#include <sys/eventfd.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Proxies may differ by scheme, host and port; by path they do so in no setting worth a look-up a request.
QString originOf(const QUrl &url)
{
    return url.toString(QUrl::RemovePath | QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

// It is reached without a proxy, always.
bool isThisMachine(const QUrl &url)
{
    const QString host = url.host();
    return host == "localhost"_L1 || host.endsWith(".localhost"_L1)
        || InternetAddress::fromText(host).isLoopback();
}

} // namespace

std::unique_ptr<HttpTransfers> createHttpTransfers(const HttpSetup &setup)
{
    return std::make_unique<TransferThread>(setup);
}

TransferThread::TransferThread(HttpSetup setup)
    : m_setup(std::move(setup))
    , m_bell(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    m_thread.setMaxThreadCount(1);
}

TransferThread::~TransferThread()
{
    give({.kind = TransferOrder::Kind::End});
    m_thread.waitForDone();
    const std::lock_guard guard(m_lock); // for ThreadSanitizer, which does not see how Qt waits
    m_orders.clear();
}

quint64 TransferThread::start(HttpRequest request, Progress progress, Handler handler)
{
    const quint64 transfer = ++m_last;
    m_running.insert(transfer, {std::move(progress), std::move(handler), request.destination});
    if (transfer == 1) {
        inBackground(m_thread, [this] { moveData(*this, m_setup); });
    }
    const bool direct = isThisMachine(request.url);
    TransferOrder order{TransferOrder::Kind::Start, transfer, std::move(request)};
    direct ? give(std::move(order)) : askForProxy(std::move(order));
    return transfer;
}

// A script of the proxies' is waited for no longer than a server, and asked once for all that wait.
void TransferThread::askForProxy(TransferOrder order)
{
    const QString origin = originOf(order.request.url);
    Proxy &proxy = m_proxies[origin];
    if (proxy.age.isValid() && !proxy.age.hasExpired(m_setup.proxyRemembered.count())) {
        order.proxy = proxy.address;
        give(std::move(order));
        return;
    }
    if (!std::exchange(proxy.lookedUp, true)) {
        inBackgroundApart([self = QPointer<TransferThread>(this), origin, url = order.request.url] {
            const QByteArray address = systemProxyFor(url);
            onMain(QCoreApplication::instance(), [self, origin, address] {
                if (self) {
                    self->takeProxy(origin, address);
                }
            });
        });
    }
    const auto late = [this, origin, transfer = order.transfer] {
        const auto isIt = [transfer](const TransferOrder &one) {
            return one.transfer == transfer;
        };
        if (m_proxies[origin].waiting.removeIf(isIt) > 0) {
            settle(transfer, {.failure = HttpFailure::TimedOut});
        }
    };
    QTimer::singleShot(order.request.limits.silenceMs, this, late);
    proxy.waiting.append(std::move(order));
}

void TransferThread::takeProxy(const QString &origin, const QByteArray &address)
{
    Proxy &proxy = m_proxies[origin];
    proxy.address = address;
    proxy.age.start();
    proxy.lookedUp = false;
    for (TransferOrder &order : std::exchange(proxy.waiting, {})) {
        if (m_running.contains(order.transfer)) {
            order.proxy = address;
            give(std::move(order));
        }
    }
}

void TransferThread::cancel(quint64 transfer)
{
    if (m_running.remove(transfer) > 0) {
        give({.kind = TransferOrder::Kind::Cancel, .transfer = transfer});
    }
}

void TransferThread::give(TransferOrder order)
{
    {
        const std::lock_guard guard(m_lock);
        m_orders.append(std::move(order));
    }
    ::eventfd_write(m_bell.get(), 1);
}

QList<TransferOrder> TransferThread::orders()
{
    eventfd_t rings = 0;
    ::eventfd_read(m_bell.get(), &rings);
    const std::lock_guard guard(m_lock);
    return std::exchange(m_orders, {});
}

void TransferThread::received(quint64 transfer, qint64 bytes)
{
    onMain(this, [this, transfer, bytes] {
        if (const Progress progress = m_running.value(transfer).progress) {
            progress(bytes);
        }
    });
}

void TransferThread::ended(quint64 transfer, const HttpReply &reply, const QString &part)
{
    if (part.isEmpty()) {
        onMain(this, [this, transfer, reply] { settle(transfer, reply); });
        return;
    }
    // Unless it gets its name it goes with whoever knew of it last, also when the program ends meanwhile.
    std::shared_ptr<const QString> file(new QString(part), [](const QString *path) {
        QFile::remove(*path);
        delete path;
    });
    onMain(this, [this, transfer, reply, file = std::move(file)]() mutable {
        store(transfer, reply, std::exchange(file, nullptr));
    });
}

// Waiting for the disk is no work for the main thread, nor for the one that moves the data of others.
void TransferThread::store(
    quint64 transfer, const HttpReply &reply, const std::shared_ptr<const QString> &part)
{
    const QString destination = m_running.value(transfer).destination;
    const auto rename = [reply, part, destination] {
        std::optional<BrevokError> error;
        // No destination: nobody waits any more.
        if (destination.isEmpty() || !renameDurably(*part, destination, &error)) {
            QFile::remove(*part); // before anybody hears of it
        }
        HttpReply result = reply;
        if (error) {
            result.failure = HttpFailure::NotStored;
            result.code = error->code;
            result.reason = error->description;
        }
        return result;
    };
    inBackgroundThen(this, rename, [this, transfer](const HttpReply &result) { settle(transfer, result); });
}

void TransferThread::settle(quint64 transfer, const HttpReply &reply)
{
    if (m_running.contains(transfer)) {
        const Handler handler = m_running.take(transfer).handler;
        handler(reply);
    }
}

} // namespace brevok
