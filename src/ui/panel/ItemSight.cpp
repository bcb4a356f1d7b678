// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/ItemSight.h"

#include "surfaces/StatusItemPlace.h"

#include <QGuiApplication>
#include <QScreen>

namespace brevok {

namespace {

constexpr int usualBarThickness = 24;

// What a bar at the top takes of the screen.
int barThickness(const QScreen &screen)
{
    const int taken = screen.availableGeometry().y() - screen.geometry().y();
    return taken > 0 ? taken : usualBarThickness;
}

} // namespace

std::optional<QRect> ItemSight::frame() const
{
    const StatusItemPlace *item = m_item ? m_item() : nullptr;
    return item != nullptr ? item->frameOnScreen() : std::nullopt;
}

QScreen *ItemSight::screen() const
{
    const StatusItemPlace *item = m_item ? m_item() : nullptr;
    QScreen *screen = item != nullptr ? item->screen() : nullptr;
    if (const std::optional<QRect> known = frame(); screen == nullptr && known) {
        screen = QGuiApplication::screenAt(known->center());
    }
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

PanelPlace ItemSight::panel() const
{
    const std::optional<QRect> known = frame();
    const QScreen *first = QGuiApplication::primaryScreen();
    const QScreen *on = known ? screen() : first;
    return panelPlace(known, {on->geometry(), on->availableGeometry()}, barThickness(*first));
}

} // namespace brevok
