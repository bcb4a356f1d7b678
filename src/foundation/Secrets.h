// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace brevok {

// What this process was told in confidence: passwords, session ids and the values of cookies. Any thread.

/// Has withoutSecrets() hide @p secret, a password or a session id, from now on; the latest are remembered.
void keepSecret(const QString &secret);

/// The same for the value of a cookie.
void keepCookieSecret(const QByteArray &value);

/// Whose words a text holds.
enum class Words {
    Theirs, ///< a service's: no secret is left
    OursToo, ///< in a sentence, a secret that is an ordinary word stays: the hole would tell which
};

/// @p text with "(not logged)" for every secret, as it is and as JSON, HTML, an address or base64 spell it.
/// One below four characters goes where it stands alone, such a cookie where it is the value of something.
[[nodiscard]] QString withoutSecrets(const QString &text, Words words = Words::Theirs);

/// The same, and without the values of fields that are named like a session id or a password: the service may
/// just have made them.
[[nodiscard]] QString withoutSecretFields(const QString &text);

/// What the log may hold of a reply that is not understood: the beginning, on one line, without secrets.
[[nodiscard]] QString excerpt(const QByteArray &reply);

} // namespace brevok
