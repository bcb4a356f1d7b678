// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>

namespace brevok {

/// Look-up of texts that users see: `Texts::tr("English text")`. The English text is the key.
class Texts {
    Q_DECLARE_TR_FUNCTIONS(Brevok)
};

/// "FIRST (and 2 more)", localised; @p first alone when there are no @p others. A full stop at the end of @p
/// first goes, since the sentence goes on.
[[nodiscard]] QString andMore(QString first, qsizetype others);

} // namespace brevok
