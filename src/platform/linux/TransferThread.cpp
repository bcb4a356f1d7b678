// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/TransferThread.h"

#include "foundation/Tasks.h"
#include "platform/DurableFile.h"
#include "platform/InternetAddress.h"

#include <QFile>
#include <QPointer>
#include <QTimer>

#include <chrono>

#include <sys/eventfd.h>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto proxyRemembered = 60s;

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
    const QString origin = originOf(request.url);
    const auto known = m_proxies.constFind(origin);
    if (isThisMachine(request.url)) {
        give({TransferOrder::Kind::Start, transfer, std::move(request), {}});
    } else if (known != m_proxies.cend() && !known->age.hasExpired(proxyRemembered / 1ms)) {
        give({TransferOrder::Kind::Start, transfer, std::move(request), known->address});
    } else {
        askForProxy(transfer, request);
    }
    return transfer;
}

// A script of the proxies' is waited for no longer than a server.
void TransferThread::askForProxy(quint64 transfer, const HttpRequest &request)
{
    auto *late = new QTimer(this);
    late->setSingleShot(true);
    connect(late, &QTimer::timeout, this, [this, transfer, late] {
        late->deleteLater();
        settle(transfer, {.failure = HttpFailure::TimedOut});
    });
    late->start(request.limits.silenceMs);
    inBackgroundThen(
        this, [url = request.url] { return systemProxyFor(url); },
        [this, late = QPointer<QTimer>(late), transfer, request](const QByteArray &proxy) {
            delete late;
            if (m_running.contains(transfer)) {
                Proxy &found = m_proxies[originOf(request.url)];
                found.address = proxy;
                found.age.start();
                give({TransferOrder::Kind::Start, transfer, request, proxy});
            }
        });
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
    onMain(this, [this, transfer, reply, part] {
        if (part.isEmpty()) {
            settle(transfer, reply);
        } else {
            store(transfer, reply, part);
        }
    });
}

// Waiting for the disk is no work for the main thread, nor for the one that moves the data of others.
void TransferThread::store(quint64 transfer, const HttpReply &reply, const QString &part)
{
    const auto rename = [reply, part, destination = m_running.value(transfer).destination] {
        std::optional<BrevokError> error;
        // No destination: nobody waits any more.
        if (destination.isEmpty() || !renameDurably(part, destination, &error)) {
            QFile::remove(part);
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
