// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFont>

class QPalette;

/// Fonts and colours of the panel, most of them the system's own.
namespace brevok::PanelStyle {

/// "Menlo-Regular", or the system's title-bar font where that is missing, in @p points; larger where the
/// user's system font is larger than usual, up to what the fixed rows hold.
[[nodiscard]] QFont font(int points);
[[nodiscard]] QFont rowFont();
[[nodiscard]] QFont secondaryFont();
[[nodiscard]] QFont menuFont();
/// A title in the system's own font.
[[nodiscard]] QFont headingFont(int points);

[[nodiscard]] bool isDark(const QPalette &palette);
/// @p share of @p b in @p a, from 0 to 1.
[[nodiscard]] QColor mixed(const QColor &a, const QColor &b, double share);
[[nodiscard]] QColor secondaryText(const QPalette &palette);
/// Of what went wrong.
[[nodiscard]] QColor failureText(const QPalette &palette);
[[nodiscard]] QColor separator(const QPalette &palette);
/// The contrast of two colours as WCAG defines it, from 1 to 21.
[[nodiscard]] double contrast(const QColor &a, const QColor &b);
/// @p wanted, nearer to the colour of texts where it does not stand out from the window and from a field's
/// ground.
[[nodiscard]] QColor standingOut(const QColor &wanted, const QPalette &palette);
/// Of what can be used, so that it stands out from the window and from a field's ground: more than 3:1.
[[nodiscard]] QColor outline(const QPalette &palette);
/// The palette's accent, so dark that the text upon it can be read.
[[nodiscard]] QColor accent(const QPalette &palette);
/// Laid over what is below the pointer.
[[nodiscard]] QColor hoverFill(const QPalette &palette);
/// "BrevokPriorityBackgroundColor".
[[nodiscard]] QColor priorityFill(const QPalette &palette);

} // namespace brevok::PanelStyle
