// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QString>

class QHttpServerRequest;

namespace brevok::demo {

/// What the service was sent, one JSON object a line. Passwords never get there, session ids not whole.
class RequestLog final {
public:
    explicit RequestLog(const QString &path);
    Q_DISABLE_COPY_MOVE(RequestLog)

    /// @return what went wrong; empty when the file can be appended to
    [[nodiscard]] QString open();

    /// Appends @p request; @p session says what its session cookie is worth: "none", "known" or "unknown".
    void append(const QHttpServerRequest &request, const QString &session);

private:
    QFile m_file;
};

/// Text of a request's method, as HTTP writes it.
[[nodiscard]] QString methodName(const QHttpServerRequest &request);

/// The value of the cookie "SessionId" of @p request; empty when there is none.
[[nodiscard]] QString sessionCookie(const QHttpServerRequest &request);

} // namespace brevok::demo
