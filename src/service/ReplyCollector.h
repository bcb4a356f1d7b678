// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/ServiceClient.h"

#include <QPointer>
#include <QTimer>

namespace brevok {

/// Collects the body of one reply in memory, up to a limit, then hands it over and deletes itself. Owns the
/// reply.
class ReplyCollector final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ReplyCollector)

public:
    /// @p limit in bytes; @p milliseconds for the whole reply, 0 for no limit. Without @p context the reply
    /// is given up and @p handler not called.
    ReplyCollector(QNetworkReply *reply, qint64 limit, int milliseconds, QObject *context,
        ServiceClient::ReplyHandler handler, QObject *parent);
    ~ReplyCollector() override;

private:
    void collect();
    void ended();
    void settle(const std::optional<BrevokError> &error);

    QNetworkReply *m_reply;
    qint64 m_limit;
    QPointer<QObject> m_context;
    ServiceClient::ReplyHandler m_handler;
    QTimer m_timer;
    QByteArray m_body;
};

} // namespace brevok
