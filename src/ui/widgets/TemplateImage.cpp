// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/TemplateImage.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

/// The linker drops the images of a static library that nothing refers to, so this does. The macro works
/// outside namespaces only.
static void provideImages()
{
    Q_INIT_RESOURCE(widgets);
}

namespace brevok {

namespace {

QString resourceOf(const QString &name)
{
    provideImages();
    return u":/images/%1.svg"_s.arg(name);
}

/// Draws at the moment of painting, in the size and the colours that hold then.
class DrawnIconEngine final : public QIconEngine {
public:
    DrawnIconEngine(TemplateImage image, QPalette::ColorRole role)
        : m_image(std::move(image))
        , m_role(role)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1.0;
        QPixmap drawn = scaledPixmap(rect.size() * ratio, mode, state, ratio);
        drawn.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect.topLeft(), drawn);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    QPixmap scaledPixmap(
        const QSize &size, QIcon::Mode mode, QIcon::State /*state*/, qreal /*scale*/) override
    {
        const QColor tint = tintFor(mode);
        const QString key = u"brevok/%1/%2x%3/%4/%5"_s.arg(m_image.name())
                                .arg(size.width())
                                .arg(size.height())
                                .arg(m_image.isTemplate() ? tint.rgba() : 0U)
                                .arg(mode == QIcon::Disabled ? 1 : 0);
        QPixmap drawn;
        if (QPixmapCache::find(key, &drawn)) {
            return drawn;
        }
        QImage image = m_image.rendered(size, tint);
        if (mode == QIcon::Disabled && !m_image.isTemplate()) {
            QPainter painter(&image);
            painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
            painter.fillRect(image.rect(), QColor(0, 0, 0, 110));
        }
        drawn = QPixmap::fromImage(image);
        QPixmapCache::insert(key, drawn);
        return drawn;
    }

    bool isNull() override { return m_image.isNull(); }
    [[nodiscard]] QIconEngine *clone() const override { return new DrawnIconEngine(m_image, m_role); }

private:
    [[nodiscard]] QColor tintFor(QIcon::Mode mode) const
    {
        const QPalette palette = QGuiApplication::palette();
        switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, m_role);
        case QIcon::Selected:
            return palette.color(QPalette::Active, QPalette::HighlightedText);
        default:
            return palette.color(QPalette::Active, m_role);
        }
    }

    TemplateImage m_image;
    QPalette::ColorRole m_role;
};

} // namespace

TemplateImage::TemplateImage(QString name)
    : m_name(std::move(name))
{
    if (const QString resource = resourceOf(m_name); QFile::exists(resource)) {
        m_size = QSvgRenderer(resource).defaultSize();
    }
}

QImage TemplateImage::rendered(const QSize &pixels, const QColor &tint) const
{
    QImage image(pixels.expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (isNull()) {
        return image;
    }
    QSvgRenderer renderer(resourceOf(m_name));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&image);
    renderer.render(&painter);
    if (m_template) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), tint);
    }
    return image;
}

QPixmap symbolPixmap(const QString &name, const QColor &colour, int size, qreal ratio)
{
    const QString key = u"symbol %1 %2 %3 %4"_s.arg(name, colour.name(QColor::HexArgb)).arg(size).arg(ratio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        TemplateImage image(name);
        image.setTemplate(true);
        pixmap = QPixmap::fromImage(image.rendered(QSize(size, size) * ratio, colour));
        pixmap.setDevicePixelRatio(ratio);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

QIcon templateIcon(const QString &name, QPalette::ColorRole role)
{
    TemplateImage image(name);
    image.setTemplate(true);
    return QIcon(new DrawnIconEngine(std::move(image), role));
}

QIcon drawnIcon(const QString &name)
{
    return QIcon(new DrawnIconEngine(TemplateImage(name), QPalette::ButtonText));
}

void useApplicationIcon()
{
    if (QGuiApplication::windowIcon().isNull()) {
        QGuiApplication::setWindowIcon(drawnIcon(u"tolvane-brevok"_s));
    }
}

} // namespace brevok
