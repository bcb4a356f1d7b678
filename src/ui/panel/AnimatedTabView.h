// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStackedWidget>
#include <QVariantAnimation>

namespace brevok {

/// A stack of pages in which a newly chosen one slides in.
class AnimatedTabView final : public QStackedWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AnimatedTabView)

public:
    explicit AnimatedTabView(QWidget *parent = nullptr);
    ~AnimatedTabView() override;

    void setAnimated(bool animated);
    /// Chooses @p page; at once while not animated, not seen, or where the user's system wants no animations.
    void showPage(QWidget *page);

private:
    QVariantAnimation m_slide;
    bool m_animated = false;
};

} // namespace brevok
