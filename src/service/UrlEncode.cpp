// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/UrlEncode.h"

#include <QUrl>

namespace brevok {

QString urlencode(const QString &text)
{
    // Every "%" of the encoded text starts an encoded byte, so "%20" is a blank and nothing else.
    return QString::fromLatin1(QUrl::toPercentEncoding(text).replace("%20", "+"));
}

} // namespace brevok
