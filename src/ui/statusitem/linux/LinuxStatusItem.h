// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/statusitem/linux/StatusNotifier.h"
#include "ui/statusitem/StatusBar.h"

#include <QTimer>

#include <optional>

namespace brevok {

class LinuxStatusBar;
class TrayWindow;

/// The item of a LinuxStatusBar.
class LinuxStatusItem final : public StatusItem {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LinuxStatusItem)

public:
    LinuxStatusItem(LinuxStatusBar &bar, double length);
    ~LinuxStatusItem() override;

    [[nodiscard]] double length() const override { return m_length; }
    void setLength(double length) override;
    [[nodiscard]] QSizeF buttonSize() const override;
    [[nodiscard]] qreal devicePixelRatio() const override;
    void setFace(const StatusItemFace &face) override;

    /// Where the tray has its window; else a square of a bar's thickness around the pointer that clicked
    /// last.
    [[nodiscard]] std::optional<QRect> frameOnScreen() const override;
    [[nodiscard]] QScreen *screen() const override;

private:
    void hostChanged();
    void trayChanged();
    void makeTray();
    void clickedAt(QPoint where);
    void showToolTip() const;

    LinuxStatusBar &m_bar;
    StatusNotifier m_notifier;
    std::unique_ptr<TrayWindow> m_tray;
    StatusItemFace m_face;
    double m_length;
    std::optional<QPoint> m_clicked;
    QPoint m_hovered;
    QTimer m_toolTipTimer;
};

} // namespace brevok
