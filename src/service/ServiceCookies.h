// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HttpTransfers.h"

#include <QDateTime>

namespace brevok {

/// The cookies that the service set in this run; they go back to the service alone. What the user signed in
/// with is none of them: a cookie "SessionId" of a reply's is not kept. Main thread.
class ServiceCookies final {
public:
    /// Takes what @p headers set, of a reply of the service to @p url.
    void take(const HeaderFields &headers, const QUrl &url);
    /// The Cookie header for @p url on the service; empty when there is nothing.
    [[nodiscard]] QByteArray headerFor(const QUrl &url) const;

private:
    struct Cookie {
        QByteArray name;
        QByteArray value;
        QByteArray path;
        QDateTime expires; ///< invalid: never
    };

    void keep(Cookie cookie);

    QList<Cookie> m_cookies; ///< the oldest first
};

} // namespace brevok
