// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/BrevokError.h"

#include <QStringList>

namespace brevok {

QString BrevokError::userInfoText() const
{
    QStringList facts;
    if (!description.isEmpty()) {
        facts << QStringLiteral("Description = \"%1\"").arg(description);
    }
    if (!recoverySuggestion.isEmpty()) {
        facts << QStringLiteral("RecoverySuggestion = \"%1\"").arg(recoverySuggestion);
    }
    for (auto fact = details.cbegin(); fact != details.cend(); ++fact) {
        facts << QStringLiteral("%1 = \"%2\"").arg(fact.key(), fact.value());
    }
    if (facts.isEmpty()) {
        return QStringLiteral("-");
    }
    return QStringLiteral("{%1}").arg(facts.join(QStringLiteral("; ")));
}

} // namespace brevok
