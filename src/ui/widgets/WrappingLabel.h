// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

namespace brevok {

/// Plain text on as many lines as it needs, also where a word is longer than a line. The places to break that
/// it puts into such words are for the eye alone: screen readers and the clipboard get the text as it was.
class WrappingLabel final : public QLabel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WrappingLabel)

public:
    explicit WrappingLabel(QWidget *parent = nullptr);
    ~WrappingLabel() override;

    void setText(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    [[nodiscard]] QString selection() const;
    void copy() const;
};

} // namespace brevok
