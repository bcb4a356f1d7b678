// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "surfaces/StatusItemPlace.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QSizeF>
#include <QWidget>

#include <memory>

namespace brevok {

/// What an item shows. Bars differ in the room that they give, so it holds the number beside the picture.
struct StatusItemFace {
    QImage image; ///< icon and number side by side, as long as the item
    bool isTemplate = false; ///< only the image's alpha counts, the bar gives the colour
    qint64 updates = 0; ///< the number, for bars with room for a square only
    QString toolTip;

    friend bool operator==(const StatusItemFace &, const StatusItemFace &) = default;
};

/// One item in the system's bar; destroying it removes it from there. The bar's program may come late, crash
/// and come back: the item is then there again by itself. Main thread.
class StatusItem : public QObject, public StatusItemPlace {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StatusItem)

public:
    explicit StatusItem(QObject *parent = nullptr);
    ~StatusItem() override;

    /// In points.
    [[nodiscard]] virtual double length() const = 0;
    virtual void setLength(double length) = 0;
    /// The button's bounds in points; zeros while there is no button.
    [[nodiscard]] virtual QSizeF buttonSize() const = 0;
    /// Pixels for each point that faces are drawn with.
    [[nodiscard]] virtual qreal devicePixelRatio() const = 0;
    /// Shows @p face at once.
    virtual void setFace(const StatusItemFace &face) = 0;

    /// A view that draws the item in place of its button; not owned. Only a bar inside a window of our own
    /// can show one.
    [[nodiscard]] QWidget *view() const { return m_view; }
    virtual void setView(QWidget *view) { m_view = view; }

Q_SIGNALS:
    /// With the primary button, or what stands for it; @p where in the coordinates of the virtual desktop.
    void clicked(QPoint where);
    /// The room for the face changed: it should be drawn anew.
    void buttonChanged();

private:
    QPointer<QWidget> m_view;
};

/// The system's bar.
class StatusBar {
public:
    StatusBar() = default;
    virtual ~StatusBar() = default;
    Q_DISABLE_COPY_MOVE(StatusBar)

    /// In points.
    [[nodiscard]] virtual double thickness() const = 0;
    /// A new item of @p length points; it must go before the bar does.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeItem(double length) = 0;
};

} // namespace brevok
