// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <QString>

namespace brevok {

/// A drawn image of the application, ":/images/NAME.svg". As a template only its alpha counts and whoever
/// shows it gives the colour, so that one drawing serves light and dark surroundings. A value; main thread.
class TemplateImage final {
public:
    TemplateImage() = default;
    explicit TemplateImage(QString name);

    [[nodiscard]] const QString &name() const { return m_name; }
    /// No such image, or none that can be drawn.
    [[nodiscard]] bool isNull() const { return m_size.isEmpty(); }
    /// Its natural size in points.
    [[nodiscard]] QSizeF size() const { return m_size; }

    [[nodiscard]] bool isTemplate() const { return m_template; }
    void setTemplate(bool isTemplate) { m_template = isTemplate; }

    /// Draws the image @p pixels large (premultiplied), keeping its proportions. A template takes the colour
    /// @p tint; other images keep their own.
    [[nodiscard]] QImage rendered(const QSize &pixels, const QColor &tint = Qt::black) const;

    friend bool operator==(const TemplateImage &, const TemplateImage &) = default;

private:
    QString m_name;
    QSizeF m_size;
    bool m_template = false;
};

/// The template image @p name in @p colour, @p size points square for a screen of @p ratio pixels a point.
[[nodiscard]] QPixmap symbolPixmap(const QString &name, const QColor &colour, int size, qreal ratio);

/// An icon that paints the template image @p name with the colour that the application's palette has for
/// @p role at the time of painting: a change of palette needs no new icon. Disabled icons take the palette's
/// disabled colour, selected ones that of selected text.
[[nodiscard]] QIcon templateIcon(const QString &name, QPalette::ColorRole role = QPalette::ButtonText);

/// An icon that paints the image @p name in its own colours, sharp at every size.
[[nodiscard]] QIcon drawnIcon(const QString &name);

/// Gives every window of the application its icon. Whoever makes a window with a frame calls it before;
/// nothing is drawn for an application that shows none.
void useApplicationIcon();

} // namespace brevok
