// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/PanelStyle.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace brevok::PanelStyle {

using namespace Qt::StringLiterals;

namespace {

// System fonts up to this size are usual; what goes beyond is the user's wish for larger text.
constexpr double usualPixels = 16;
constexpr double largestScale = 1.3;

double textScale()
{
    return std::clamp(QFontInfo(QApplication::font()).pixelSize() / usualPixels, 1.0, largestScale);
}

int scaled(int points)
{
    return qRound(points * textScale());
}

// Where the desktop names no font for titles, every question for it goes through all fonts that are there.
QFont titleFont()
{
    // Kept as texts: a font that outlives the application object frees what is gone.
    static QString knownFor;
    static QString title;
    if (const QString present = QApplication::font().toString(); knownFor != present) {
        knownFor = present;
        title = QFontDatabase::systemFont(QFontDatabase::TitleFont).toString();
    }
    QFont result;
    result.fromString(title);
    return result;
}

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

} // namespace

QFont font(int points)
{
    static const bool hasMenlo = QFontDatabase::hasFamily(u"Menlo"_s);
    QFont result = hasMenlo ? QFont(u"Menlo"_s) : titleFont();
    result.setPixelSize(scaled(points));
    return result;
}

QFont rowFont()
{
    return font(17);
}

QFont secondaryFont()
{
    return font(12);
}

QFont menuFont()
{
    return font(18);
}

QFont headingFont(int points)
{
    QFont result = QApplication::font();
    result.setPixelSize(scaled(points));
    result.setWeight(QFont::DemiBold);
    return result;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

QColor mixed(const QColor &a, const QColor &b, double share)
{
    const auto part = [share](float x, float y) {
        return static_cast<float>(x * (1 - share) + y * share);
    };
    return QColor::fromRgbF(
        part(a.redF(), b.redF()), part(a.greenF(), b.greenF()), part(a.blueF(), b.blueF()));
}

QColor secondaryText(const QPalette &palette)
{
    // Also where it stands in a disabled control, whose own colours are too faint for a state to be read.
    return mixed(palette.color(QPalette::Active, QPalette::WindowText),
        palette.color(QPalette::Active, QPalette::Window), 0.36);
}

QColor failureText(const QPalette &palette)
{
    return isDark(palette) ? QColor(255, 138, 128) : QColor(179, 38, 30);
}

QColor separator(const QPalette &palette)
{
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.12);
}

double contrast(const QColor &a, const QColor &b)
{
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

QColor standingOut(const QColor &wanted, const QPalette &palette)
{
    const QColor window = palette.color(QPalette::Window);
    const QColor base = palette.color(QPalette::Base);
    constexpr double enough = 3.8; // styles draw it lighter here and there
    constexpr double steps = 20;
    QColor colour = wanted;
    for (int step = 0; step <= steps; ++step) {
        colour = mixed(wanted, palette.color(QPalette::WindowText), step / steps);
        if (contrast(colour, window) >= enough && contrast(colour, base) >= enough) {
            break;
        }
    }
    return colour;
}

QColor outline(const QPalette &palette)
{
    return standingOut(palette.color(QPalette::Window), palette);
}

QColor accent(const QPalette &palette)
{
    constexpr double readable = 5.2; // glyphs are drawn a little fainter than their colour
    constexpr double steps = 25;
    const QColor wanted = palette.color(QPalette::Highlight);
    QColor colour = wanted;
    for (int step = 1; step < steps && contrast(colour, palette.color(QPalette::HighlightedText)) < readable;
         ++step) {
        colour = mixed(wanted, Qt::black, step / steps);
    }
    return colour;
}

QColor hoverFill(const QPalette &palette)
{
    QColor fill = palette.color(QPalette::WindowText);
    fill.setAlphaF(0.05F);
    return fill;
}

QColor priorityFill(const QPalette &palette)
{
    if (isDark(palette)) {
        return mixed(palette.color(QPalette::Window), QColor::fromRgbF(0.8F, 0.25F, 0.25F), 0.16);
    }
    return QColor::fromRgbF(1.0F, 0.9F, 0.9F);
}

} // namespace brevok::PanelStyle
