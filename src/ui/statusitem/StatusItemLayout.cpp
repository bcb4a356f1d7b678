// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/StatusItemLayout.h"

#include <QtMath>

#include <cmath>

using namespace Qt::StringLiterals;

namespace brevok::statusitem {

namespace {

/// The nearest whole point. In single precision, so that a value that is a half but for the noise of double
/// arithmetic rounds as a half does.
double wholePoint(double value)
{
    return static_cast<double>(std::round(static_cast<float>(value)));
}

} // namespace

QString countText(qint64 updates)
{
    return updates == 0 ? QString() : QString::number(updates);
}

double itemLength(double imageWidth, double textWidth)
{
    return imageWidth + padding + textWidth;
}

Layout layout(const QSizeF &button, const QSizeF &image, double textWidth)
{
    const double number = textWidth != 0.0 ? textWidth + numberGap : 0.0;
    const double x = wholePoint((button.width() - (image.width() + number)) / 2);
    const double y = wholePoint((button.height() - image.height()) / 2);
    return {{x, y}, {x + numberGap + image.width(), numberBaseline}};
}

QSize bitmapSize(double length, double thickness, double devicePixelRatio)
{
    return {qRound(std::trunc(length) * devicePixelRatio), qRound(std::trunc(thickness) * devicePixelRatio)};
}

bool isWide(const QSize &granted, double length, bool hasNumber, bool wasWide)
{
    if (granted.width() < std::floor(length)) {
        return false;
    }
    const bool oblong = granted.width() > granted.height();
    return hasNumber ? oblong : granted.width() == qCeil(length) || (wasWide && oblong);
}

QString badgeText(qint64 updates, int side)
{
    if (updates <= 0) {
        return {};
    }
    if (updates <= 99) {
        return QString::number(updates);
    }
    return side < 24 ? u"9+"_s : u"99+"_s;
}

Badge badge(int side, qsizetype characters)
{
    if (characters == 0) {
        return {};
    }
    // Digits of seven pixels are the smallest that read well; larger places use the usual share of the icon.
    const int digitHeight = side < smallestSideForOutlines ? smallDigitHeight : qRound(side * 0.38);
    const int margin = qMax(1, qCeil(side / 16.0));
    const int height = digitHeight + 2 * margin;
    const int digitWidth = qMax(smallDigitAdvance, qRound(digitHeight * 0.68));
    const int width = qMax(height, static_cast<int>(characters) * digitWidth + 2 * margin + height / 5);
    return {QRect(side - qMin(width, side), side - height, qMin(width, side), height),
        qMax(1, qRound(side / 20.0)), digitHeight};
}

} // namespace brevok::statusitem
