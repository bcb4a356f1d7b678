// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "surfaces/Surfaces.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>

namespace brevok {

class StatusBar;
class StatusItem;

/// Owns the application's item in the system's bar: the icon and, beside it, how many packages wait for an
/// update. Destroying it removes the item. Main thread.
class BrevokMenubarController final : public QObject, public StatusItemSurface {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokMenubarController)
    Q_PROPERTY(qint64 updates READ updates NOTIFY updatesChanged)

public:
    /// Puts the item into @p bar, which must outlive the controller.
    explicit BrevokMenubarController(StatusBar &bar);
    ~BrevokMenubarController() override;

    [[nodiscard]] qint64 updates() const { return m_updates; }
    /// Every call draws the item anew, the number it has already included.
    void setUpdates(int updates) override;

    /// Mirrors whether the panel is open; the drawing does not depend on it.
    [[nodiscard]] bool hasActiveIcon() const override { return m_status; }
    void setHasActiveIcon(bool active) override { m_status = active; }

    /// Where the panel opens.
    [[nodiscard]] StatusItem &statusItem() const { return *m_statusItem; }

    /// Renders icon and number into the item.
    void updateIcon();

Q_SIGNALS:
    /// At every set.
    void updatesChanged();
    /// The item was clicked; once for a double click.
    void togglePanelRequested(QPoint where);

private:
    void clicked(QPoint where);

    StatusBar &m_bar;
    std::unique_ptr<StatusItem> m_statusItem;
    QElapsedTimer m_sinceClick; ///< that counted; invalid when its double click is over
    qint64 m_updates = 0;
    bool m_status = false;
};

} // namespace brevok
