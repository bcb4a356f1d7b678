// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>

class QDBusArgument;

namespace brevok {

/// A picture on the bus: 32 bits a pixel, alpha first, in network byte order, not premultiplied.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray argb;
};
using NotifierPixmaps = QList<NotifierPixmap>;

struct NotifierToolTip {
    QString iconName;
    NotifierPixmaps icons;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const NotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierToolTip &toolTip);

/// Once before the types are used.
void registerNotifierTypes();

} // namespace brevok

Q_DECLARE_METATYPE(brevok::NotifierPixmap)
Q_DECLARE_METATYPE(brevok::NotifierToolTip)
