// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/linux/NotifierTypes.h"

#include <QDBusArgument>
#include <QDBusMetaType>

namespace brevok {

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.argb;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.argb;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icons << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icons >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

void registerNotifierTypes()
{
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmaps>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

} // namespace brevok
