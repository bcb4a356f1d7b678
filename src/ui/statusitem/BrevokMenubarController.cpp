// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/BrevokMenubarController.h"

#include "foundation/Texts.h"
#include "ui/statusitem/StatusBar.h"
#include "ui/statusitem/StatusItemImage.h"
#include "ui/statusitem/StatusItemLayout.h"
#include "ui/widgets/TemplateImage.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QStyleHints>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

QString toolTipFor(qint64 updates)
{
    if (updates == 0) {
        return {};
    }
    return updates == 1 ? Texts::tr("1 update available") : Texts::tr("%1 updates available").arg(updates);
}

} // namespace

BrevokMenubarController::BrevokMenubarController(StatusBar &bar)
    : m_bar(bar)
    , m_statusItem(bar.makeItem(statusitem::initialLength))
{
    connect(m_statusItem.get(), &StatusItem::clicked, this, &BrevokMenubarController::clicked);
    connect(m_statusItem.get(), &StatusItem::buttonChanged, this, &BrevokMenubarController::updateIcon);
    updateIcon();
    connect(this, &BrevokMenubarController::updatesChanged, this, &BrevokMenubarController::updateIcon);
}

BrevokMenubarController::~BrevokMenubarController() = default;

// Whoever clicks twice out of habit wants the panel, not its opening and closing.
void BrevokMenubarController::clicked(QPoint where)
{
    const int together = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    if (m_sinceClick.isValid() && m_sinceClick.elapsed() < together) {
        m_sinceClick.invalidate();
        return;
    }
    m_sinceClick.start();
    Q_EMIT togglePanelRequested(where);
}

void BrevokMenubarController::setUpdates(int updates)
{
    m_updates = updates;
    Q_EMIT updatesChanged();
}

void BrevokMenubarController::updateIcon()
{
    TemplateImage icon(u"StatusHighlighted"_s);
    icon.setTemplate(true);
    const QString text = statusitem::countText(m_updates);
    const double length = statusitem::itemLength(icon.size().width(), statusitem::textWidth(text));
    m_statusItem->setLength(length);

    const qreal ratio = m_statusItem->devicePixelRatio();
    const double thickness = m_bar.thickness();
    QImage bitmap(statusitem::bitmapSize(length, thickness, ratio), QImage::Format_ARGB32_Premultiplied);
    bitmap.setDevicePixelRatio(ratio);
    bitmap.fill(Qt::transparent);
    QPainter painter(&bitmap);
    const QColor labels = QGuiApplication::palette().color(QPalette::Active, QPalette::WindowText);
    painter.setPen(labels);
    statusitem::drawItem(painter, icon.rendered((icon.size() * ratio).toSize(), labels), icon.size(), text,
        m_statusItem->buttonSize(), thickness);
    painter.end();
    m_statusItem->setFace({bitmap, true, m_updates, toolTipFor(m_updates)});
}

} // namespace brevok
