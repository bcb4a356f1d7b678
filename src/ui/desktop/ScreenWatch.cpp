// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/desktop/ScreenWatch.h"

#include <QGuiApplication>
#include <QScreen>

namespace brevok {

ScreenWatch::ScreenWatch(QObject *parent)
    : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &ScreenWatch::follow);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &ScreenWatch::tellLater);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &ScreenWatch::tellLater);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &ScreenWatch::tellLater);
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *screen : screens) {
        follow(screen);
    }
}

ScreenWatch::~ScreenWatch() = default;

void ScreenWatch::follow(QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &ScreenWatch::tellLater);
    connect(screen, &QScreen::availableGeometryChanged, this, &ScreenWatch::tellLater);
}

void ScreenWatch::tellLater()
{
    QMetaObject::invokeMethod(this, &ScreenWatch::changed, Qt::QueuedConnection);
}

} // namespace brevok
