// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QScrollBar>

namespace brevok {

/// A scroll bar so slim that the columns beside it hardly move when it comes.
class SlimScrollBar final : public QScrollBar {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SlimScrollBar)

public:
    explicit SlimScrollBar(QWidget *parent = nullptr);
    ~SlimScrollBar() override;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] QRectF handle() const;
    void moveTo(double y);

    double m_grip = 0; ///< where the handle was taken hold of, from its top
};

} // namespace brevok
