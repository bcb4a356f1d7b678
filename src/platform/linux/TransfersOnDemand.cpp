// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Moves data in programs that may run for long before they send a request: the library that speaks HTTP and
// all that it needs are loaded with the first one, out of a module of their own, on the thread that needs
// them.

#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/linux/TransferWork.h"

#include <QCoreApplication>
#include <QLibrary>

#include <poll.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

template <typename Function> Function fromModule(const char *name)
{
    QLibrary module(
        QCoreApplication::applicationDirPath() + u"/../lib/tolvane-brevok/tolvane-brevok-network.so"_s);
    const auto function = reinterpret_cast<Function>(module.resolve(name));
    if (function == nullptr) {
        onMain(QCoreApplication::instance(), [reason = module.errorString()] { logLine(reason); });
    }
    return function;
}

// Every request fails, until the thread is told to end.
void refuseAll(TransferDesk &desk)
{
    for (;;) {
        const QList<TransferOrder> orders = desk.orders();
        for (const TransferOrder &order : orders) {
            if (order.kind == TransferOrder::Kind::End) {
                return;
            }
            if (order.kind == TransferOrder::Kind::Start) {
                HttpReply reply;
                reply.failure = HttpFailure::Unknown;
                reply.reason = Texts::tr("the library for HTTP is missing");
                desk.ended(order.transfer, reply, {});
            }
        }
        pollfd bell = {desk.bell(), POLLIN, 0};
        ::poll(&bell, 1, -1);
    }
}

} // namespace

void moveData(TransferDesk &desk, const HttpSetup &setup)
{
    using Move = void (*)(TransferDesk *, const HttpSetup *);
    if (const auto move = fromModule<Move>("moveData")) {
        move(&desk, &setup);
    } else {
        refuseAll(desk);
    }
}

QByteArray systemProxyFor(const QUrl &url)
{
    using LookUp = void (*)(const QUrl *, QByteArray *);
    QByteArray proxy;
    if (const auto lookUp = fromModule<LookUp>("systemProxyFor")) {
        lookUp(&url, &proxy);
    }
    return proxy;
}

} // namespace brevok
