// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTimer>
#include <QWidget>

namespace brevok {

/// A spinning indicator for work whose end is unknown. It costs nothing while it is not seen.
class Spinner final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Spinner)
    Q_PROPERTY(bool animating READ isAnimating)

public:
    explicit Spinner(QWidget *parent = nullptr);
    ~Spinner() override;

    void startAnimation();
    void stopAnimation();
    [[nodiscard]] bool isAnimating() const { return m_animating; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QTimer m_timer;
    int m_step = 0;
    bool m_animating = false;
};

} // namespace brevok
