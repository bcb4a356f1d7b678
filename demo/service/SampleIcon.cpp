// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "SampleIcon.h"

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QtEndian>

#include <algorithm>
#include <cmath>

#include <zlib.h>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

constexpr int side = 64;
constexpr double cornerRadius = 14;
constexpr double glyphHeight = 28;
constexpr double strokeRadius = 2.6;

QPointF pointFrom(const QString &text)
{
    return {text.section(u',', 0, 0).toDouble(), text.section(u',', 1, 1).toDouble()};
}

/// The strokes of @p glyph as lines, scaled to the icon and centred in it.
QList<QLineF> linesOf(const QString &glyph)
{
    QList<QLineF> lines;
    QRectF bounds;
    for (const QString &stroke : glyph.split(u';', Qt::SkipEmptyParts)) {
        const QStringList points = stroke.split(u' ', Qt::SkipEmptyParts);
        for (qsizetype i = 1; i < points.size(); ++i) {
            const QLineF line(pointFrom(points[i - 1]), pointFrom(points[i]));
            // A rectangle without width unites to nothing, as does one of a vertical line.
            bounds |= QRectF(line.p1(), line.p2()).normalized().adjusted(-0.01, -0.01, 0.01, 0.01);
            lines.append(line);
        }
    }
    const double scale = bounds.isEmpty() ? 1 : glyphHeight / bounds.height();
    const auto placed = [&](QPointF point) {
        return (point - bounds.center()) * scale + QPointF(side / 2.0, side / 2.0);
    };
    for (QLineF &line : lines) {
        line = QLineF(placed(line.p1()), placed(line.p2()));
    }
    return lines;
}

double distance(QPointF point, const QLineF &line)
{
    const QPointF along = line.p2() - line.p1();
    const double length = QPointF::dotProduct(along, along);
    const double place =
        length > 0 ? std::clamp(QPointF::dotProduct(point - line.p1(), along) / length, 0.0, 1.0) : 0;
    return QLineF(point, line.p1() + along * place).length();
}

/// How far @p point lies outside the rounded square; negative inside.
double outside(QPointF point)
{
    const double half = side / 2.0 - cornerRadius;
    const double x = std::max(std::abs(point.x() - side / 2.0) - half, 0.0);
    const double y = std::max(std::abs(point.y() - side / 2.0) - half, 0.0);
    return std::hypot(x, y) - cornerRadius;
}

/// How much of a pixel lies within an edge that is @p beyond away: soft over one pixel.
double coverage(double beyond)
{
    return std::clamp(0.5 - beyond, 0.0, 1.0);
}

char byteOf(double value)
{
    return static_cast<char>(std::lround(std::clamp(value, 0.0, 255.0)));
}

/// Rows of RGBA pixels, each led by the filter type "none".
QByteArray pixels(const QByteArray &colour, const QString &glyph)
{
    const QByteArray base = QByteArray::fromHex(colour).leftJustified(3, '\x7f', true);
    const QList<QLineF> lines = linesOf(glyph);
    QByteArray rows;
    for (int y = 0; y < side; ++y) {
        rows.append('\0');
        for (int x = 0; x < side; ++x) {
            const QPointF point(x + 0.5, y + 0.5);
            double nearest = side;
            for (const QLineF &line : lines) {
                nearest = std::min(nearest, distance(point, line));
            }
            const double white = coverage(nearest - strokeRadius);
            const double light = 1.08 - 0.16 * y / side; // a little lighter at the top
            for (const char channel : base) {
                const double plain = static_cast<unsigned char>(channel) * light;
                rows.append(byteOf(plain + (255 - plain) * white));
            }
            rows.append(byteOf(255 * coverage(outside(point))));
        }
    }
    return rows;
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray &type, const QByteArray &data)
{
    const QByteArray body = type + data;
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef *>(body.constData()), static_cast<uInt>(body.size()));
    return bigEndian(static_cast<quint32>(data.size())) + body + bigEndian(static_cast<quint32>(sum));
}

} // namespace

QByteArray sampleIcon(const QByteArray &colour, const QString &glyph)
{
    const QByteArray eightBitRgba("\x08\x06\x00\x00\x00", 5);
    // qCompress() leads its zlib stream with four bytes of length.
    const QByteArray compressed = qCompress(pixels(colour, glyph), 9).sliced(4);
    return QByteArray("\x89PNG\r\n\x1a\n", 8)
        + chunk("IHDR"_ba, bigEndian(side) + bigEndian(side) + eightBitRgba) + chunk("IDAT"_ba, compressed)
        + chunk("IEND"_ba, {});
}

} // namespace brevok::demo
