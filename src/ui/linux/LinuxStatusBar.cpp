// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/linux/LinuxStatusBar.h"

#include "ui/linux/LinuxStatusItem.h"
#include "ui/StatusItemLayout.h"

#include <QDBusConnection>

namespace brevok {

LinuxStatusBar::LinuxStatusBar(const QDBusConnection &bus)
    : m_bus(std::make_unique<QDBusConnection>(bus))
    , m_thickness(statusitem::initialLength)
{
}

LinuxStatusBar::~LinuxStatusBar() = default;

double LinuxStatusBar::thickness() const
{
    return m_thickness;
}

std::unique_ptr<StatusItem> LinuxStatusBar::makeItem(double length)
{
    return std::make_unique<LinuxStatusItem>(*this, *m_bus, length);
}

QPoint toPoints(QPoint where, const QList<ScreenArea> &screens)
{
    for (const ScreenArea &screen : screens) {
        if (screen.pixels.contains(where)) {
            return screen.pixels.topLeft()
                + (QPointF(where - screen.pixels.topLeft()) / screen.factor).toPoint();
        }
    }
    return where;
}

} // namespace brevok
