// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What speaks HTTP, as the application loads it with the first request.

#include "platform/linux/TransferWork.h"

extern "C" Q_DECL_EXPORT void moveData(brevok::TransferDesk *desk, const brevok::HttpSetup *setup)
{
    brevok::moveData(*desk, *setup);
}

extern "C" Q_DECL_EXPORT void systemProxyFor(const QUrl *url, QByteArray *proxy)
{
    *proxy = brevok::systemProxyFor(*url);
}
