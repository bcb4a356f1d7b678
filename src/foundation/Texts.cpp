// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Texts.h"

#include <QLocale>

namespace brevok {

QString andMore(QString first, qsizetype others)
{
    if (others == 0) {
        return first;
    }
    if (first.endsWith(u'.') || first.endsWith(u'。')) {
        first.chop(1);
    }
    return Texts::tr("%1 (and %2 more)").arg(first, QLocale().toString(others));
}

} // namespace brevok
