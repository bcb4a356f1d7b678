// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/linux/LinuxStatusItem.h"

#include "foundation/Texts.h"
#include "ui/desktop/linux/Display.h"
#include "ui/statusitem/linux/LinuxStatusBar.h"
#include "ui/statusitem/linux/TrayWindow.h"
#include "ui/statusitem/StatusItemLayout.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QtMath>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

QList<ScreenArea> screenAreas()
{
    QList<ScreenArea> areas;
    for (const QScreen *const screen : QGuiApplication::screens()) {
        const qreal factor = screen->devicePixelRatio();
        const QRect points = screen->geometry();
        areas.append({QRect(points.topLeft(), (QSizeF(points.size()) * factor).toSize()), factor});
    }
    return areas;
}

} // namespace

LinuxStatusItem::LinuxStatusItem(LinuxStatusBar &bar, double length)
    : m_bar(bar)
    , m_notifier(bar.m_watch)
    , m_length(length)
{
    connect(&m_bar.m_watch, &NotifierWatch::hostChanged, this, &LinuxStatusItem::hostChanged);
    connect(&m_notifier, &StatusNotifier::activated, this, [this](QPoint where) {
        // Some hosts do not know where they were clicked. Without X11 there are no pixels but the host's
        // points.
        const QPoint place = m_tray ? toPoints(where, screenAreas()) : where;
        clickedAt(where.isNull() || QGuiApplication::screenAt(place) == nullptr ? QCursor::pos() : place);
    });
    m_toolTipTimer.setSingleShot(true);
    m_toolTipTimer.setInterval(std::chrono::milliseconds(700));
    connect(&m_toolTipTimer, &QTimer::timeout, this, &LinuxStatusItem::showToolTip);
    makeTray();
}

LinuxStatusItem::~LinuxStatusItem() = default;

void LinuxStatusItem::makeTray()
{
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        return;
    }
    m_tray = std::make_unique<TrayWindow>(x11->connection(), x11Screen());
    connect(m_tray.get(), &TrayWindow::changed, this, &LinuxStatusItem::trayChanged);
    connect(m_tray.get(), &TrayWindow::clicked, this,
        [this](QPoint where) { clickedAt(toPoints(where, screenAreas())); });
    connect(m_tray.get(), &TrayWindow::hovered, this, [this](QPoint where) {
        m_hovered = toPoints(where, screenAreas());
        m_toolTipTimer.start();
    });
    connect(m_tray.get(), &TrayWindow::left, &m_toolTipTimer, &QTimer::stop);
}

void LinuxStatusItem::hostChanged()
{
    m_clicked.reset();
    if (m_tray) {
        m_tray->setWanted(m_bar.m_watch.hasHost() == false);
    }
}

void LinuxStatusItem::trayChanged()
{
    m_clicked.reset();
    const QSize granted = m_tray->granted();
    // Higher bars have the item in their middle.
    m_bar.m_thickness = granted.isEmpty()
        ? statusitem::initialLength
        : qMin(statusitem::initialLength, granted.height() / devicePixelRatio());
    Q_EMIT buttonChanged();
}

void LinuxStatusItem::clickedAt(QPoint where)
{
    m_toolTipTimer.stop();
    m_clicked = where;
    Q_EMIT clicked(where);
}

void LinuxStatusItem::showToolTip() const
{
    const QString title = Texts::tr("Tolvane Brevok");
    QToolTip::showText(m_hovered, m_face.toolTip.isEmpty() ? title : u"%1\n%2"_s.arg(title, m_face.toolTip));
}

void LinuxStatusItem::setLength(double length)
{
    m_length = length;
    if (m_tray) {
        const qreal ratio = devicePixelRatio();
        const int height = m_tray->granted().height();
        const bool square = height > statusitem::highestWideBar * ratio;
        m_tray->setWish({square ? height : qCeil(length * ratio), qCeil(statusitem::initialLength * ratio)});
        // Now that the size is known, a tray that is there need not wait for the event loop.
        m_bar.m_watch.catchUp();
        m_tray->setWanted(m_bar.m_watch.hasHost() == false);
    }
}

QSizeF LinuxStatusItem::buttonSize() const
{
    return {m_length, m_bar.thickness()};
}

qreal LinuxStatusItem::devicePixelRatio() const
{
    const QScreen *const place = screen();
    const QScreen *const used = place != nullptr ? place : QGuiApplication::primaryScreen();
    return used != nullptr ? used->devicePixelRatio() : 1.0;
}

void LinuxStatusItem::setFace(const StatusItemFace &face)
{
    m_face = face;
    m_notifier.setFace(face.updates, face.toolTip);
    if (m_tray) {
        m_tray->setFace(face, m_length * devicePixelRatio());
    }
}

std::optional<QRect> LinuxStatusItem::frameOnScreen() const
{
    if (const auto pixels = m_tray ? m_tray->frame() : std::nullopt) {
        return frameInPoints(*pixels, screenAreas());
    }
    if (m_clicked) {
        const int side = qRound(m_bar.thickness());
        return QRect(*m_clicked - QPoint(side / 2, side / 2), QSize(side, side));
    }
    return {};
}

QScreen *LinuxStatusItem::screen() const
{
    if (const auto pixels = m_tray ? m_tray->frame() : std::nullopt) {
        return QGuiApplication::screenAt(toPoints(pixels->center(), screenAreas()));
    }
    return m_clicked ? QGuiApplication::screenAt(*m_clicked) : nullptr;
}

} // namespace brevok
