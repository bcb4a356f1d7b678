// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/statusitem/linux/NotifierWatch.h"
#include "ui/statusitem/StatusBar.h"

#include <QList>
#include <QRectF>

class QDBusConnection;

namespace brevok {

/// The bar of a Linux desktop. An item is shown by a host of the StatusNotifierItem protocol where one runs,
/// else in the tray of an X11 bar, and follows when either comes or goes.
class LinuxStatusBar final : public StatusBar {
public:
    explicit LinuxStatusBar(const QDBusConnection &bus);
    ~LinuxStatusBar() override;
    Q_DISABLE_COPY_MOVE(LinuxStatusBar)

    /// Goes on with another connection to the bus, unless @p bus is the present one.
    void use(const QDBusConnection &bus);

    [[nodiscard]] double thickness() const override;
    [[nodiscard]] std::unique_ptr<StatusItem> makeItem(double length) override;

private:
    friend class LinuxStatusItem;
    NotifierWatch m_watch;
    double m_thickness;
};

/// A screen as the windowing system measures it, and the factor between its pixels and points.
struct ScreenArea {
    QRect pixels;
    qreal factor = 1;
};

/// Points of the virtual desktop for @p where in pixels: each screen keeps its origin and scales what it
/// holds. Outside of all screens nothing changes.
[[nodiscard]] QPoint toPoints(QPoint where, const QList<ScreenArea> &screens);
/// The same for a frame, which belongs to the screen of its middle: it may end where that screen does.
[[nodiscard]] QRect frameInPoints(const QRect &frame, const QList<ScreenArea> &screens);

} // namespace brevok
