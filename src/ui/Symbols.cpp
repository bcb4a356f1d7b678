// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/Symbols.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

// The macro declares a function, which must not lie in a namespace.
static void initImages()
{
    Q_INIT_RESOURCE(ui);
}

namespace brevok {

using namespace Qt::StringLiterals;

QPixmap symbolPixmap(const QString &name, const QColor &colour, int size, qreal ratio)
{
    const QString key = u"symbol %1 %2 %3 %4"_s.arg(name, colour.name(QColor::HexArgb)).arg(size).arg(ratio);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) {
        return pixmap;
    }
    initImages();
    QFile file(u":/images/%1.svg"_s.arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QSvgRenderer renderer(file.readAll().replace("currentColor", colour.name().toLatin1()));
    pixmap = QPixmap(QSize(size, size) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(colour.alphaF());
    renderer.render(&painter, QRectF(0, 0, size, size));
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace brevok
