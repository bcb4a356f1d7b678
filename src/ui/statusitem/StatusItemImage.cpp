// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/StatusItemImage.h"

#include "ui/statusitem/StatusItemLayout.h"
#include "ui/widgets/PanelStyle.h"
#include "ui/widgets/TemplateImage.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace brevok::statusitem {

namespace {

/// Both have a relative luminance of about 0.2, which is at least 3:1 from any bar that is clearly light or
/// dark; the badge carries white digits at 4.8:1.
constexpr QRgb neutralIcon = 0xff2f7bf0;
constexpr QRgb neutralBadge = 0xffd92d20;

struct SmallDigit {
    char character;
    std::array<const char *, smallDigitHeight> rows;
};
constexpr std::array<SmallDigit, 11> smallDigits{{
    {'0', {" ## ", "#  #", "#  #", "#  #", "#  #", "#  #", " ## "}},
    {'1', {" #  ", "##  ", " #  ", " #  ", " #  ", " #  ", "### "}},
    {'2', {" ## ", "#  #", "   #", "  # ", " #  ", "#   ", "####"}},
    {'3', {"### ", "   #", "   #", " ## ", "   #", "   #", "### "}},
    {'4', {"#  #", "#  #", "#  #", "####", "   #", "   #", "   #"}},
    {'5', {"####", "#   ", "#   ", "### ", "   #", "   #", "### "}},
    {'6', {" ## ", "#   ", "#   ", "### ", "#  #", "#  #", " ## "}},
    {'7', {"####", "   #", "   #", "  # ", "  # ", " #  ", " #  "}},
    {'8', {" ## ", "#  #", "#  #", " ## ", "#  #", "#  #", " ## "}},
    {'9', {" ## ", "#  #", "#  #", " ###", "   #", "   #", " ## "}},
    {'+', {"    ", "    ", " #  ", "### ", " #  ", "    ", "    "}},
}};

QPainterPath smallDigitsIn(const QRect &pill, const QString &text)
{
    QPainterPath path;
    int x = pill.left() + (pill.width() - static_cast<int>(text.size()) * smallDigitAdvance + 1) / 2;
    const int y = pill.top() + (pill.height() - smallDigitHeight) / 2;
    for (const QChar character : text) {
        const auto *const digit = std::find_if(smallDigits.begin(), smallDigits.end(),
            [character](const SmallDigit &small) { return QLatin1Char(small.character) == character; });
        for (int row = 0; digit != smallDigits.end() && row < smallDigitHeight; ++row) {
            for (int column = 0; column < 4; ++column) {
                if (digit->rows.at(static_cast<size_t>(row))[column] == '#') {
                    path.addRect(x + column, y + row, 1, 1);
                }
            }
        }
        x += smallDigitAdvance;
    }
    return path;
}

/// The digits as an outline in the pill's middle, standing on whole pixels.
QPainterPath digitsIn(const QRect &pill, const QString &text, int digitHeight)
{
    QFont font(u"sans-serif"_s);
    font.setWeight(QFont::Bold);
    font.setStretch(QFont::SemiCondensed);
    font.setPixelSize(100);
    QPainterPath path;
    path.addText(0, 0, font, text);
    const QRectF drawn = path.boundingRect();
    if (drawn.isEmpty()) {
        return path;
    }
    const double scale = digitHeight / drawn.height();
    const double width = qMin(drawn.width() * scale, pill.width() - 2.0);
    QTransform place;
    place.translate(std::round(pill.left() + (pill.width() - width) / 2),
        pill.top() + (pill.height() - digitHeight) / 2.0);
    place.scale(width / drawn.width(), scale);
    place.translate(-drawn.left(), -drawn.top());
    return place.map(path);
}

QFont numberFont()
{
    QFont font(u"Helvetica"_s);
    font.setPixelSize(13);
    return font;
}

} // namespace

Colours coloursFor(const std::optional<QColor> &barText)
{
    if (barText) {
        return {*barText, *barText, QColor()};
    }
    return {QColor(neutralIcon), QColor(neutralBadge), Qt::white};
}

QColor textColourOn(const QColor &bar)
{
    const bool isLight = PanelStyle::contrast(bar, Qt::black) > PanelStyle::contrast(bar, Qt::white);
    return isLight ? QColor(0x23, 0x26, 0x29) : QColor(Qt::white);
}

double textWidth(const QString &text)
{
    return text.isEmpty() ? 0.0 : QFontMetricsF(numberFont()).horizontalAdvance(text);
}

void drawItem(QPainter &painter, const QImage &image, const QSizeF &imageSize, const QString &text,
    const QSizeF &button, double height)
{
    const Layout places = layout(button, imageSize, textWidth(text));
    // Bars measure upwards, painters downwards.
    painter.drawImage(QRectF({places.image.x(), height - places.image.y() - imageSize.height()}, imageSize),
        image, image.rect());
    if (!text.isEmpty()) {
        painter.setFont(numberFont());
        painter.drawText(QPointF(places.text.x(), height - places.text.y()), text);
    }
}

QImage squareImage(int side, qint64 updates, const Colours &colours)
{
    TemplateImage icon(u"StatusHighlighted"_s);
    icon.setTemplate(true);
    QImage image = icon.rendered({side, side}, colours.icon);
    const QString text = badgeText(updates, side);
    const Badge place = badge(side, text.size());
    if (place.pill.isNull()) {
        return image;
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRect around = place.pill.adjusted(-place.gap, -place.gap, place.gap, place.gap);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(around, around.height() / 2.0, around.height() / 2.0);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setBrush(colours.badge);
    painter.drawRoundedRect(place.pill, place.pill.height() / 2.0, place.pill.height() / 2.0);
    if (!colours.digits.isValid()) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    }
    painter.setBrush(colours.digits.isValid() ? colours.digits : QColor(Qt::black));
    painter.drawPath(side < smallestSideForOutlines ? smallDigitsIn(place.pill, text)
                                                    : digitsIn(place.pill, text, place.digitHeight));
    return image;
}

QImage tinted(const QImage &shape, const QColor &colour)
{
    QImage image = shape.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF({}, image.deviceIndependentSize()), colour);
    return image;
}

} // namespace brevok::statusitem
