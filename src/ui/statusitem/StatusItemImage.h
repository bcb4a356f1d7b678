// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QImage>

#include <optional>

/// The pictures of the status item: the application's icon for bars and the number beside it, or upon it
/// where a bar has room for a square only. Main thread.
namespace brevok::statusitem {

/// Colours of a square picture.
struct Colours {
    QColor icon;
    QColor badge;
    QColor digits; ///< not valid: cut out of the badge
};

/// One colour for all when the bar tells the one of its texts, as a template has it; else colours that stand
/// out from light and dark bars alike.
[[nodiscard]] Colours coloursFor(const std::optional<QColor> &barText);

/// The colour of texts on a bar of the colour @p bar.
[[nodiscard]] QColor textColourOn(const QColor &bar);

/// The measured width of @p text as a number beside the icon; 0 for no text, for which no font is looked up.
[[nodiscard]] double textWidth(const QString &text);

/// Draws @p image, and @p text unless it is empty, on a surface of @p height points whose
/// coordinates begin in the lower left corner.
void drawItem(QPainter &painter, const QImage &image, const QSizeF &imageSize, const QString &text,
    const QSizeF &button, double height);

/// Icon and number badge in a square of @p side pixels.
[[nodiscard]] QImage squareImage(int side, qint64 updates, const Colours &colours);

/// @p shape with its own alpha in one colour.
[[nodiscard]] QImage tinted(const QImage &shape, const QColor &colour);

} // namespace brevok::statusitem
