// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/HttpTransfers.h"

#include <algorithm>

namespace brevok {

QByteArray headerValue(const HeaderFields &fields, const QByteArray &name)
{
    const auto found = std::find_if(fields.cbegin(), fields.cend(),
        [&name](const auto &field) { return field.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == fields.cend() ? QByteArray() : found->second;
}

bool leadsElsewhere(const HttpReply &reply)
{
    const int status = reply.status;
    return ((status >= 301 && status <= 303) || status == 307 || status == 308)
        && !headerValue(reply.headers, "Location").isEmpty();
}

} // namespace brevok
