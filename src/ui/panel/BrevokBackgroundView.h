// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QWidget>

namespace brevok {

/// The panel's background: a rounded body with an arrow that points at the status item. Fills its window.
class BrevokBackgroundView final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokBackgroundView)

public:
    explicit BrevokBackgroundView(QWidget *parent = nullptr);
    ~BrevokBackgroundView() override;

    /// An invalid colour, as at first, stands for the system's window background.
    void setFillColor(const QColor &colour);
    [[nodiscard]] QColor fillColor() const;
    /// Where the arrow points, from the left edge.
    void setArrowX(int x);
    [[nodiscard]] int arrowX() const { return m_arrowX; }
    /// The arrow is at the bottom, for a panel above its item.
    void setUpward(bool upward);

    /// Whether what lies around the shape shows what is behind the window. At first it does.
    void setTranslucent(bool translucent);

    /// The pixels that the shape touches, for a window that cannot be translucent.
    [[nodiscard]] QRegion shape() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_fillColor;
    int m_arrowX = 0;
    bool m_upward = false;
    bool m_translucent = true;
};

} // namespace brevok
