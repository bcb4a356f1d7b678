// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QPalette>
#include <QProxyStyle>
#include <QSet>

namespace brevok {

/// The library's own style, which draws the outlines of boxes, fields, buttons and menus a little darker than
/// the window: on a dark window that cannot be seen. Here they stand out from light and dark windows alike.
class OutlineStyle final : public QProxyStyle {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(OutlineStyle)

public:
    OutlineStyle();
    ~OutlineStyle() override;

    /// Makes the accent one that the text upon it can be read on.
    void polish(QPalette &palette) override;
    using QProxyStyle::polish;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;

private:
    [[nodiscard]] const QPalette &outlined(const QPalette &palette) const;

    mutable QHash<qint64, QPalette> m_outlined; ///< by the palettes that they were made of
    mutable QSet<qint64> m_own; ///< made here
};

/// Makes it the application's style, unless the desktop brings a style of its own.
void useOutlineStyle();

} // namespace brevok
