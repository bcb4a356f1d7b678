// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/SecretText.h"

#include <QRegularExpression>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

const QString hidden = u"(not logged)"_s;

} // namespace

QString withoutSentSecrets(QString text, const QStringList &sent)
{
    constexpr qsizetype shortestSecret = 4; // a shorter one stands in every text
    for (const QString &secret : sent) {
        if (secret.size() >= shortestSecret) {
            text.replace(secret, hidden);
        }
    }
    return text;
}

QString withoutSecretFields(QString text)
{
    static const QRegularExpression fields(
        uR"re(("?(?:SessionId|password)"?\s*[:=]\s*)("(?:[^"\\]|\\.)*"?|[^\s,;}"]+))re"_s,
        QRegularExpression::CaseInsensitiveOption);
    return text.replace(fields, u"\\1"_s + hidden);
}

} // namespace brevok
