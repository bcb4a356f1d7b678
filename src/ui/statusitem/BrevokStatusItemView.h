// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/widgets/TemplateImage.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace brevok {

class StatusItem;

/// A view that draws the status item itself: icon, highlight, number, click. Main thread.
class BrevokStatusItemView final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokStatusItemView)

public:
    /// Becomes the view of @p statusItem, which must outlive it, at the bar's @p thickness in points.
    BrevokStatusItemView(StatusItem &statusItem, double thickness);
    ~BrevokStatusItemView() override;

    [[nodiscard]] StatusItem &statusItem() const { return m_statusItem; }

    /// These draw the view anew when they change something; the alternate image only while highlighted.
    [[nodiscard]] const TemplateImage &image() const { return m_image; }
    void setImage(const TemplateImage &image);
    [[nodiscard]] const TemplateImage &alternateImage() const { return m_alternateImage; }
    void setAlternateImage(const TemplateImage &image);
    [[nodiscard]] bool isHighlighted() const { return m_highlighted; }
    void setHighlighted(bool highlighted);
    [[nodiscard]] qint64 updates() const { return m_updates; }
    void setUpdates(qint64 updates);

    /// The slot or invokable of the target that a click calls, with the view as its one argument if it takes
    /// a QWidget, else with none. "togglePanel" at first.
    [[nodiscard]] QByteArray action() const { return m_action; }
    void setAction(const QByteArray &action) { m_action = action; }
    [[nodiscard]] QObject *target() const { return m_target; }
    void setTarget(QObject *target) { m_target = target; }

    [[nodiscard]] const QTimer &updateTimer() const { return m_updateTimer; }
    /// The view's frame in the coordinates of the virtual desktop.
    [[nodiscard]] QRect globalRect() const;

    /// Sets the images of the item's button and of the view to the application's icon for bars.
    void updateIcon();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    StatusItem &m_statusItem;
    TemplateImage m_image;
    TemplateImage m_alternateImage;
    QByteArray m_action;
    QPointer<QObject> m_target;
    QTimer m_updateTimer;
    qint64 m_updates = 0;
    bool m_highlighted = false;
};

} // namespace brevok
