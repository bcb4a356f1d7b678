// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/linux/LinuxStatusBar.h"

#include "ui/statusitem/linux/LinuxStatusItem.h"
#include "ui/statusitem/StatusItemLayout.h"

#include <QDBusConnection>

#include <algorithm>

namespace brevok {

LinuxStatusBar::LinuxStatusBar(const QDBusConnection &bus)
    : m_watch(bus)
    , m_thickness(statusitem::initialLength)
{
}

LinuxStatusBar::~LinuxStatusBar() = default;

void LinuxStatusBar::use(const QDBusConnection &bus)
{
    if (bus.name() != m_watch.bus().name()) {
        m_watch.use(bus);
    }
}

double LinuxStatusBar::thickness() const
{
    return m_thickness;
}

std::unique_ptr<StatusItem> LinuxStatusBar::makeItem(double length)
{
    return std::make_unique<LinuxStatusItem>(*this, length);
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

QRect frameInPoints(const QRect &frame, const QList<ScreenArea> &screens)
{
    const auto screen = std::find_if(screens.cbegin(), screens.cend(),
        [&frame](const ScreenArea &area) { return area.pixels.contains(frame.center()); });
    if (screen == screens.cend()) {
        return frame;
    }
    const QPoint origin = screen->pixels.topLeft();
    return {origin + (QPointF(frame.topLeft() - origin) / screen->factor).toPoint(),
        (QSizeF(frame.size()) / screen->factor).toSize()};
}

} // namespace brevok
