// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/BrevokStatusItemView.h"

#include "foundation/Texts.h"
#include "ui/statusitem/StatusBar.h"
#include "ui/statusitem/StatusItemImage.h"
#include "ui/statusitem/StatusItemLayout.h"

#include <QMetaMethod>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace brevok {

BrevokStatusItemView::BrevokStatusItemView(StatusItem &statusItem, double thickness)
    : m_statusItem(statusItem)
    , m_action("togglePanel")
{
    setGeometry(0, 0, qRound(statusItem.length()), qRound(thickness));
    setAccessibleName(Texts::tr("Tolvane Brevok"));
    updateIcon();
    statusItem.setView(this);
    m_updateTimer.setInterval(std::chrono::seconds(30));
    connect(&m_updateTimer, &QTimer::timeout, this, &BrevokStatusItemView::updateIcon);
    m_updateTimer.start();
}

BrevokStatusItemView::~BrevokStatusItemView() = default;

void BrevokStatusItemView::setImage(const TemplateImage &image)
{
    if (m_image != image) {
        m_image = image;
        update();
    }
}

void BrevokStatusItemView::setAlternateImage(const TemplateImage &image)
{
    if (m_alternateImage != image) {
        m_alternateImage = image;
        if (m_highlighted) {
            update();
        }
    }
}

void BrevokStatusItemView::setHighlighted(bool highlighted)
{
    if (m_highlighted != highlighted) {
        m_highlighted = highlighted;
        update();
    }
}

void BrevokStatusItemView::setUpdates(qint64 updates)
{
    if (m_updates != updates) {
        m_updates = updates;
        update();
    }
}

QRect BrevokStatusItemView::globalRect() const
{
    return {mapToGlobal(QPoint(0, 0)), size()};
}

void BrevokStatusItemView::updateIcon()
{
    TemplateImage icon(u"StatusHighlighted"_s);
    icon.setTemplate(true);
    const qreal ratio = m_statusItem.devicePixelRatio();
    QImage picture = icon.rendered((icon.size() * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    m_statusItem.setFace({picture, true, m_updates, QString()});
    setImage(icon);
    setAlternateImage(icon);
}

void BrevokStatusItemView::paintEvent(QPaintEvent * /*event*/)
{
    const TemplateImage &image = m_highlighted ? m_alternateImage : m_image;
    const QString text = statusitem::countText(m_updates);
    m_statusItem.setLength(statusitem::itemLength(image.size().width(), statusitem::textWidth(text)));
    QPainter painter(this);
    const QColor labels = palette().color(QPalette::WindowText);
    painter.setPen(labels);
    statusitem::drawItem(painter, image.rendered((image.size() * devicePixelRatioF()).toSize(), labels),
        image.size(), text, size(), height());
}

void BrevokStatusItemView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_target == nullptr) {
        return;
    }
    const QMetaObject *const object = m_target->metaObject();
    if (const int withSender = object->indexOfMethod(m_action + "(QWidget*)"); withSender >= 0) {
        object->method(withSender).invoke(m_target, Qt::DirectConnection, Q_ARG(QWidget *, this));
    } else if (const int plain = object->indexOfMethod(m_action + "()"); plain >= 0) {
        object->method(plain).invoke(m_target, Qt::DirectConnection);
    }
}

} // namespace brevok
