// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QByteArray>
#include <QJsonDocument>

#include <optional>

namespace brevok {

/// The header that carries the program's protocol version with every request, and its value.
inline constexpr auto versionHeader = "X-Tolvane-Brevok-Version";
inline constexpr auto versionHeaderValue = "2";
/// The reply header by which the service demands a newer version of the program.
inline constexpr auto responseCodeHeader = "X-Tolvane-Brevok-Response-Code";

/// The JSON of a reply: an array, or a dictionary with a numeric "ErrorCode". @p status is the HTTP status.
/// Nothing is done when @p error is null or already holds an error; otherwise it is filled exactly when
/// nothing is returned.
[[nodiscard]] std::optional<QJsonDocument> jsonObjectFromData(
    const QByteArray &data, int status, std::optional<BrevokError> *error);

/// The error of a reply that is not what was asked for. If its status is not 200, it names just that.
[[nodiscard]] BrevokError unexpectedReply(int status);

/// The platform's text for an HTTP status code, such as "not found".
[[nodiscard]] QString localizedStringForStatusCode(int status);

/// The service's error codes that the session acts upon.
enum ServiceErrorCode : int {
    ServiceSuccess = 0,
    ServiceFailed = 1,
    ServiceWrongPassword = 2,
    ServiceInvalidSession = 3,
    ServiceLoggedOnly = 8,
    ServiceHandledAsSuccess = 9,
    ServiceSecurityViolation = 98,
    ServiceInternalError = 99,
};

/// What a session request does; the numbers travel with the request.
enum SessionAction : int { SessionReady = 0, SessionSignin = 1, SessionSignout = 2 };

/// The name of an action in log lines.
[[nodiscard]] QString sessionActionName(int action);

/// What the service's error code means for the request that got it.
struct ReplyVerdict {
    bool succeeded = false;
    bool logged = false; ///< as an error of the service
    QString message{}; ///< null when there is nothing to tell the user
    bool quiet = false; ///< the message goes to the log only
    bool dropsSessionId = false; ///< signed out at once, without a request
    bool sendsSignout = false;
};

/// @p errorMessage is the reply's "ErrorMessage", empty when it has none.
[[nodiscard]] ReplyVerdict verdictFor(
    qint64 errorCode, int action, bool sessionIdHeld, const QString &errorMessage);

} // namespace brevok
