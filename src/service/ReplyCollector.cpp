// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/ReplyCollector.h"

#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "service/NetworkFactory.h"
#include "service/TransportErrors.h"

#include <array>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t pieceSize = size_t{64} * 1024;
constexpr qint64 readBuffer = qint64{1024} * 1024;

} // namespace

ReplyCollector::ReplyCollector(QNetworkReply *reply, qint64 limit, int milliseconds, QObject *context,
    ServiceClient::ReplyHandler handler, QObject *parent)
    : QObject(parent)
    , m_reply(reply)
    , m_limit(limit)
    , m_context(context)
    , m_handler(std::move(handler))
{
    reply->setParent(this);
    reply->setReadBufferSize(readBuffer);
    connect(reply, &QNetworkReply::readyRead, this, &ReplyCollector::collect);
    connect(reply, &QNetworkReply::finished, this, &ReplyCollector::ended);
    connect(context, &QObject::destroyed, this, [this] { settle(std::nullopt); });
    if (milliseconds > 0) {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, [this, milliseconds] {
            settle(transportErrorFor(QNetworkReply::TimeoutError, m_reply->url(),
                u"Not complete after %1 ms"_s.arg(milliseconds)));
        });
        m_timer.start(milliseconds);
    }
}

ReplyCollector::~ReplyCollector() = default;

void ReplyCollector::collect()
{
    // Read through a buffer of its own: an array that the reply fills keeps the room for a whole piece.
    std::array<char, pieceSize> piece;
    while (m_handler) {
        const qint64 count = m_reply->read(piece.data(), pieceSize);
        if (count <= 0) {
            return;
        }
        m_body.append(piece.data(), count);
        if (m_body.size() > m_limit) {
            settle(replyError(-1, Texts::tr("The server sent more data than expected."), m_reply->url()));
        }
    }
}

void ReplyCollector::ended()
{
    const std::optional<BrevokError> error = NetworkFactory::transportError(*m_reply);
    if (!error) {
        collect();
    }
    settle(error);
}

void ReplyCollector::settle(const std::optional<BrevokError> &error)
{
    if (!m_handler) {
        return;
    }
    m_body.squeeze(); // whoever keeps it keeps no more than it
    const ServiceReply reply{
        .status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
        .body = error ? QByteArray() : std::exchange(m_body, {}),
        .headers = m_reply->rawHeaderPairs(),
        .error = error,
    };
    const auto handler = std::exchange(m_handler, nullptr);
    if (m_context) {
        onMain(m_context, [handler, reply] { handler(reply); });
    }
    m_reply->disconnect(this);
    m_reply->abort();
    deleteLater();
}

} // namespace brevok
