// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace brevok {

/// Hands the answer to @p call, or its error, to @p then, on a later turn of the loop and while @p context
/// lives.
template <typename Then> void whenAnswered(QObject *context, const QDBusPendingCall &call, Then then)
{
    auto *watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, then = std::move(then)] {
        watcher->deleteLater();
        then(watcher->reply());
    });
}

} // namespace brevok
