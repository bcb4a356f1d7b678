// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include <QCoreApplication>
#include <QDBusConnection>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QDBusConnection::sessionBus().registerService(QStringLiteral("com.tolvane.brevok.Yardstick"));
    return QCoreApplication::exec();
}
