// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PanelState.h"

#include <QWidget>

class QLabel;

namespace brevok {

class PanelButton;
class SecondaryLabel;

/// Says why there is nothing to do here, and what to do about it: a strip above the list, or the whole page
/// while there is no list.
class NoticeView final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NoticeView)

public:
    explicit NoticeView(QWidget *parent = nullptr);
    ~NoticeView() override;

    /// Hidden while the notice has no title. Of a very long text the beginning, and the rest in a tool tip.
    void setNotice(const NoticeText &notice, bool wholePage = false);

Q_SIGNALS:
    void buttonClicked();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void layOut();
    void refresh();

    NoticeText m_notice;
    bool m_wholePage = false;
    QLabel *m_image;
    QLabel *m_title;
    SecondaryLabel *m_text;
    PanelButton *m_button;
};

} // namespace brevok
