// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/NetworkFactory.h"

namespace brevok {

NetworkFactory::NetworkFactory(ServiceConfiguration configuration, QObject *parent)
    : QObject(parent)
    , m_configuration(std::move(configuration))
{
}

NetworkFactory::~NetworkFactory() = default;

ExchangeRequest NetworkFactory::request(const QUrl &url) const
{
    ExchangeRequest request;
    request.url = url;
    request.limits.silenceMs = m_configuration.requestTimeoutMs;
    return request;
}

void NetworkFactory::send(const ExchangeRequest &request, QObject *context,
    ServiceClient::ReplyHandler handler, HttpTransfers::Progress progress)
{
    new Exchange(*this, request, {context, std::move(progress), std::move(handler)});
}

HttpTransfers &NetworkFactory::transfers()
{
    if (!m_transfers) {
        m_transfers = createHttpTransfers(
            {QByteArrayLiteral("TolvaneBrevok/" BREVOK_VERSION), m_configuration.extraAuthorities});
    }
    return *m_transfers;
}

} // namespace brevok
