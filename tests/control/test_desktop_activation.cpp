// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/DesktopActivation.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

// What a desktop sends when the user clicks the entry of the menu.
QDBusMessage call(const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(),
        u"/com/tolvane/brevok"_s, u"org.freedesktop.Application"_s, method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message);
}

} // namespace

class DesktopActivationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void menuOpensThePanel()
    {
        const QVariantMap platformData{{u"activation-token"_s, u"token"_s}};
        QStringList asked;
        DesktopActivation activation;
        activation.publish(QDBusConnection::sessionBus());
        QCOMPARE(call(u"Activate"_s, {platformData}).type(), QDBusMessage::ReplyMessage);
        QVERIFY(asked.isEmpty());
        activation.setHandler([&asked](const QString &action) { asked.append(action); });
        QCOMPARE(asked, QStringList{QString()}); // for the call that started the program
        QCOMPARE(call(u"Activate"_s, {platformData}).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(asked.size(), 2);
        QCOMPARE(call(u"Open"_s, {QStringList(), platformData}).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(asked.size(), 3);
        QCOMPARE(call(u"ActivateAction"_s, {u"update"_s, QVariantList(), platformData}).type(),
            QDBusMessage::ReplyMessage);
        QCOMPARE(asked, (QStringList{QString(), QString(), QString(), u"update"_s}));
    }
};

QTEST_GUILESS_MAIN(DesktopActivationTest)
#include "test_desktop_activation.moc"
