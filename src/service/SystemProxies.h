// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"

#include <QElapsedTimer>
#include <QHash>
#include <QNetworkProxy>
#include <QObject>
#include <QPointer>
#include <QUrl>

namespace brevok {

/// The user's proxy settings, as the desktop and the environment have them. Asking for them may fetch and run
/// a script, or start programs, so it happens in the background; what was found is remembered for a minute.
/// This machine itself is reached without a proxy, always. Main thread.
class SystemProxies final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SystemProxies)

public:
    explicit SystemProxies(QObject *parent = nullptr);
    ~SystemProxies() override;

    /// Calls @p then once the proxies for @p url are known: at once where they are, and not at all when @p
    /// context is gone by then.
    void whenKnown(const QUrl &url, QObject *context, Task then);

    /// The proxies for @p url, best first, as far as they are known; else none.
    [[nodiscard]] QList<QNetworkProxy> known(const QUrl &url) const;

private:
    struct Waiting {
        QPointer<QObject> context;
        Task then;
    };
    struct Entry {
        QList<QNetworkProxy> proxies;
        QElapsedTimer age; // not started before the first answer
        QList<Waiting> waiting;
    };

    void lookUp(const QString &origin, const QUrl &url);
    void found(const QString &origin, const QList<QNetworkProxy> &proxies);

    QHash<QString, Entry> m_entries;
};

} // namespace brevok
