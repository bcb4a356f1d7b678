// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PanelLayout.h"

#include <QVariantAnimation>
#include <QWidget>

#include <chrono>
#include <memory>

class QTimer;

namespace Ui {
class BrevokPanel;
}

namespace brevok {

/// The panel's window: without a frame, shaped by its background, growing out of the status item and fading
/// away. Main thread.
class BrevokPanel final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPanel)

public:
    BrevokPanel();
    ~BrevokPanel() override;

    /// The widgets of the form.
    [[nodiscard]] Ui::BrevokPanel &ui() const { return *m_ui; }

    /// Shows the window, transparent and in the item's rectangle, gives it the focus, and lets it grow to its
    /// place within @p milliseconds. A window that is fading away stays.
    void orderFront(const PanelPlace &place, int milliseconds);
    /// Fades away and is off the screen 0.2 seconds later.
    void fadeOut();
    /// Whether fadeOut() has not taken the window off the screen yet.
    [[nodiscard]] bool isFading() const;
    /// Whether a window-modal dialog of this window is up.
    [[nodiscard]] bool hasSheets() const;

Q_SIGNALS:
    void didResignKey();
    /// Escape.
    void cancelOperation();
    void willClose();
    /// The arrow down, while no control has the focus.
    void moveDown();
    /// fadeOut() has ended.
    void orderedOut();
    /// The font or palette of the system is another.
    void styleChanged();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void windowDidResize();
    void animate(int milliseconds, double toOpacity);
    void applyFrame(double progress);
    void setOpacity(double opacity);
    void orderOutWhenDue();
    void noticeFocus();

    std::unique_ptr<Ui::BrevokPanel> m_ui;
    QVariantAnimation m_animation;
    PanelPlace m_place;
    bool m_opening = false;
    double m_opacity = 0;
    double m_startOpacity = 0;
    double m_endOpacity = 0;
    QTimer *m_orderOutTimer;
    QTimer *m_focusTimer;
    std::chrono::system_clock::time_point m_fadeStart;
};

} // namespace brevok
