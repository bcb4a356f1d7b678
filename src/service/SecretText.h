// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace brevok {

/// @p text, which a service sent, fit for the log and for the user's eyes: without @p sent (what the request
/// told in confidence, should the service repeat it).
[[nodiscard]] QString withoutSentSecrets(QString text, const QStringList &sent);

/// @p text without the values of fields that hold a session id or a password, as a service may have just made
/// them.
[[nodiscard]] QString withoutSecretFields(QString text);

} // namespace brevok
