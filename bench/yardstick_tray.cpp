// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The least that a tray program of this toolkit does, linked as every one is that also talks to a service and
// to the bus.

#include <QApplication>
#include <QDBusConnection>
#include <QNetworkAccessManager>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QDBusConnection::sessionBus().registerService(QStringLiteral("com.tolvane.brevok.Yardstick"));
    const QNetworkAccessManager network;
    QPixmap picture(22, 22);
    picture.fill(Qt::black);
    QSystemTrayIcon icon((QIcon(picture)));
    icon.show();
    return QApplication::exec();
}
