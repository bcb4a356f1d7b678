// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/RowIcons.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Tasks.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPointer>
#include <QSvgRenderer>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int iconPixels = 96; // 32 points at three pixels a point
constexpr qsizetype keptIcons = 256;
constexpr int largestSide = 8192;
constexpr qint64 largestArea = 16'000'000;
constexpr int decoderMegabytes = 128;
constexpr qsizetype quickSize = qsizetype{32} * 1024;
constexpr qsizetype largestDrawing = qsizetype{128} * 1024;
constexpr int mostShapes = 2000;

constexpr std::array plainElements{"svg"_L1, "g"_L1, "path"_L1, "rect"_L1, "circle"_L1, "ellipse"_L1,
    "line"_L1, "polyline"_L1, "polygon"_L1, "title"_L1, "desc"_L1, "defs"_L1, "metadata"_L1,
    "linearGradient"_L1, "radialGradient"_L1, "stop"_L1};

bool looksLikeDrawing(const QByteArray &data)
{
    const QByteArray start = data.left(4096).trimmed();
    return start.startsWith("\x1f\x8b") || start.startsWith('<') || start.startsWith("\xef\xbb\xbf");
}

bool isPlain(QXmlStreamReader &reader)
{
    const QStringView name = reader.name();
    if (std::find(plainElements.begin(), plainElements.end(), name) == plainElements.end()) {
        return false;
    }
    const QXmlStreamAttributes attributes = reader.attributes();
    return std::none_of(attributes.cbegin(), attributes.cend(), [](const QXmlStreamAttribute &attribute) {
        // Dashes of no length, which are painted one by one without end.
        return attribute.qualifiedName().contains("dash"_L1) || attribute.value().contains("dash"_L1);
    });
}

// Whether a drawing holds nothing but plain shapes: no references, patterns, fonts, pictures or entities, of
// which a few can ask for billions of shapes.
bool isHarmless(const QByteArray &data)
{
    if (data.size() > largestDrawing) {
        return false;
    }
    QXmlStreamReader reader(data);
    int shapes = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        const bool refused = token == QXmlStreamReader::DTD || token == QXmlStreamReader::EntityReference
            || (token == QXmlStreamReader::StartElement && (!isPlain(reader) || ++shapes > mostShapes));
        if (refused) {
            return false;
        }
    }
    return !reader.hasError() && shapes > 0;
}

QImage fitted(const QSizeF &size, int pixels, const std::function<void(QPainter &, const QRectF &)> &draw)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QSizeF within = size.scaled(pixels, pixels, Qt::KeepAspectRatio);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    draw(painter,
        {(pixels - within.width()) / 2, (pixels - within.height()) / 2, within.width(), within.height()});
    return image;
}

QImage decodedDrawing(const QByteArray &data, int pixels)
{
    if (!isHarmless(data)) {
        return {};
    }
    QSvgRenderer renderer(data);
    if (!renderer.isValid() || renderer.viewBoxF().isEmpty()) {
        return {};
    }
    return fitted(renderer.viewBoxF().size(), pixels,
        [&renderer](QPainter &painter, const QRectF &bounds) { renderer.render(&painter, bounds); });
}

// Whether the picture can be had at once: few bytes that unfold to little.
bool isQuick(const QByteArray &data)
{
    if (data.size() > quickSize) {
        return false;
    }
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    const QSize size = QImageReader(&buffer).size();
    return size.width() <= 512 && size.height() <= 512;
}

} // namespace

QImage decodedIcon(const QByteArray &data, int pixels)
{
    if (looksLikeDrawing(data)) {
        return decodedDrawing(data, pixels);
    }
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    const bool sensible = size.isValid() && size.width() <= largestSide && size.height() <= largestSide
        && qint64(size.width()) * size.height() <= largestArea;
    if (!sensible || reader.format().startsWith("svg") || reader.format() == "pdf") {
        return {};
    }
    QImageReader::setAllocationLimit(decoderMegabytes);
    QImage image = reader.read();
    if (image.isNull()) {
        return {};
    }
    if (image.width() > pixels || image.height() > pixels) {
        image = image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return fitted(image.size(), pixels,
        [&image](QPainter &painter, const QRectF &bounds) { painter.drawImage(bounds, image); });
}

RowIcons::RowIcons(const BrevokPackages &packages, QObject *parent)
    : QObject(parent)
    , m_packages(packages)
    , m_decoded(keptIcons)
{
}

RowIcons::~RowIcons() = default;

QPixmap RowIcons::icon(const QString &name)
{
    const QByteArray data = m_packages.packagesIcons().value(name).data;
    if (data.isEmpty()) {
        return {};
    }
    const Decoded *known = m_decoded.object(name);
    if (known != nullptr && known->data.constData() == data.constData()) {
        return known->pixmap;
    }
    if (isQuick(data)) {
        QPixmap pixmap = QPixmap::fromImage(decodedIcon(data, iconPixels));
        m_decoded.insert(name, new Decoded{data, pixmap});
        return pixmap;
    }
    decodeLater(name, data);
    return known != nullptr ? known->pixmap : QPixmap();
}

void RowIcons::decodeLater(const QString &name, const QByteArray &data)
{
    if (m_underWay.contains(name)) {
        return;
    }
    m_underWay.insert(name);
    inBackground([self = QPointer<RowIcons>(this), name, data] {
        const QImage image = decodedIcon(data, iconPixels);
        onMain(QCoreApplication::instance(), [self, name, data, image] {
            if (self) {
                self->m_underWay.remove(name);
                self->m_decoded.insert(name, new Decoded{data, QPixmap::fromImage(image)});
                Q_EMIT self->iconReady(name);
            }
        });
    });
}

void RowIcons::forget()
{
    m_decoded.clear();
}

} // namespace brevok
