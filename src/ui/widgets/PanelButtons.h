// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPushButton>

namespace brevok {

/// A titled button in the panel's style: filled with the system's accent when it does what matters most,
/// else outlined; plain text when it only tells a state.
class PanelButton final : public QPushButton {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelButton)
    Q_PROPERTY(bool prominent READ isProminent WRITE setProminent)

public:
    explicit PanelButton(QWidget *parent = nullptr);
    ~PanelButton() override;

    [[nodiscard]] bool isProminent() const { return m_prominent; }
    void setProminent(bool prominent);
    /// Without fill or outline, for a title that cannot be pressed.
    void setPlain(bool plain);
    /// The width that @p title needs in @p font.
    [[nodiscard]] static int widthFor(const QString &title, const QFont &font);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QColor fill() const;

    bool m_prominent = false;
    bool m_plain = false;
};

/// A button that shows one of the program's drawn images.
class SymbolButton final : public QPushButton {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SymbolButton)
    Q_PROPERTY(QString symbol MEMBER m_symbol)

public:
    explicit SymbolButton(QWidget *parent = nullptr);
    ~SymbolButton() override;

    /// While clicked() is told: whether the mouse did it, and not the keyboard or assistive technology.
    [[nodiscard]] bool isClickedByMouse() const { return m_clickedByMouse; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QString m_symbol;
    bool m_clickedByMouse = false;
};

/// Draws the ring around what has the keyboard's focus.
void drawFocusRing(QPainter &painter, const QRectF &bounds, double radius, const QPalette &palette);

} // namespace brevok
