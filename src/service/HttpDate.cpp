// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/HttpDate.h"

#include <QLocale>
#include <QTimeZone>

namespace brevok {

using namespace Qt::StringLiterals;

QDateTime httpDate(const QByteArray &text)
{
    const QString plain = QString::fromLatin1(text).replace(u'-', u' ').section(u", "_s, 1);
    QDateTime date = QLocale::c().toDateTime(plain, u"dd MMM yyyy HH:mm:ss 'GMT'"_s);
    date.setTimeZone(QTimeZone::utc());
    return date;
}

} // namespace brevok
