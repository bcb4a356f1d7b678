// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/DesktopNotifications.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;

/// A server of notices on the real bus, with the methods of org.freedesktop.Notifications.
class NoticeServer final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QStringList capabilities;
    QStringList shown;
    QVariantMap lastHints;
    QStringList lastActions;

public Q_SLOTS:
    [[nodiscard]] QStringList GetCapabilities() const { return capabilities; }
    uint Notify(const QString &program, uint replaces, const QString &icon, const QString &title,
        const QString &text, const QStringList &actions, const QVariantMap &hints, int milliseconds)
    {
        lastHints = hints;
        lastActions = actions;
        shown.append(u"%1|%2|%3|%4|%5|%6|%7"_s.arg(program, QString::number(replaces), icon, title, text)
                         .arg(actions.size())
                         .arg(milliseconds));
        return 1;
    }

Q_SIGNALS:
    void ActionInvoked(uint /*id*/, const QString & /*action*/);
};

namespace {

class Decider final : public UserNotificationCenterDelegate {
public:
    bool answer = true;
    QStringList clicked;
    [[nodiscard]] bool shouldPresentNotification(const UserNotification &) override { return answer; }
    void didActivateNotification(const QString &action) override { clicked.append(action); }
};

} // namespace

class DesktopNotificationsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void noticesReachTheServer_data();
    void noticesReachTheServer();
    void clicksComeBack();
    void withoutAServerNoticesAreLost();

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();
};

void DesktopNotificationsTest::noticesReachTheServer_data()
{
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << QStringList{u"body"_s} << u"A <b> & C"_s;
    QTest::newRow("markup") << QStringList{u"body"_s, u"body-markup"_s} << u"A &lt;b&gt; &amp; C"_s;
}

void DesktopNotificationsTest::noticesReachTheServer()
{
    QFETCH(QStringList, capabilities);
    QFETCH(QString, text);
    NoticeServer server;
    server.capabilities = capabilities;
    QVERIFY(
        m_bus.registerObject(u"/org/freedesktop/Notifications"_s, &server, QDBusConnection::ExportAllSlots));
    QVERIFY(m_bus.registerService(u"org.freedesktop.Notifications"_s));
    Decider decider;
    DesktopNotifications center(m_bus, u"com.tolvane.brevok"_s, u"Tolvane Brevok"_s);
    center.setDelegate(&decider);
    decider.answer = false;
    center.deliver({u"Refused"_s, {}});
    decider.answer = true;
    center.deliver({u"Title"_s, u"A <b> & C"_s});
    QTRY_COMPARE(server.shown, QStringList{u"Tolvane Brevok|0|com.tolvane.brevok|Title|%1|0|-1"_s.arg(text)});
    QCOMPARE(server.lastHints.value(u"desktop-entry"_s).toString(), u"com.tolvane.brevok"_s);
    QVERIFY(m_bus.unregisterService(u"org.freedesktop.Notifications"_s));
    m_bus.unregisterObject(u"/org/freedesktop/Notifications"_s);
}

void DesktopNotificationsTest::clicksComeBack()
{
    NoticeServer server;
    QVERIFY(m_bus.registerObject(u"/org/freedesktop/Notifications"_s, &server,
        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
    QVERIFY(m_bus.registerService(u"org.freedesktop.Notifications"_s));
    Decider decider;
    DesktopNotifications center(m_bus, u"com.tolvane.brevok"_s, u"Tolvane Brevok"_s);
    center.setDelegate(&decider);
    const QList<UserNotificationAction> actions{{u"open"_s, u"Open"_s}, {u"update"_s, u"Update"_s}};
    center.deliver({u"A server without buttons"_s, {}, actions});
    QTRY_COMPARE(server.shown.size(), 1);
    QVERIFY(server.lastActions.isEmpty());
    server.capabilities = {u"actions"_s};
    center.deliver({u"Title"_s, {}, actions});
    QTRY_COMPARE(server.shown.size(), 2);
    QCOMPARE(server.lastActions, (QStringList{u"open"_s, u"Open"_s, u"update"_s, u"Update"_s}));
    QTRY_VERIFY(center.children().isEmpty()); // the notice's number came
    Q_EMIT server.ActionInvoked(2, u"open"_s); // of another program's notice
    Q_EMIT server.ActionInvoked(1, u"update"_s);
    QTRY_COMPARE(decider.clicked, QStringList{u"update"_s});
    QVERIFY(m_bus.unregisterService(u"org.freedesktop.Notifications"_s));
    m_bus.unregisterObject(u"/org/freedesktop/Notifications"_s);
}

void DesktopNotificationsTest::withoutAServerNoticesAreLost()
{
    DesktopNotifications center(m_bus, u"com.tolvane.brevok"_s, u"Tolvane Brevok"_s);
    QVERIFY(center.exists());
    center.deliver({u"Title"_s, {}});
    QTRY_VERIFY(center.children().isEmpty()); // its question was answered, without a line in the log
    DesktopNotifications nowhere(QDBusConnection(u"none"_s), u"com.tolvane.brevok"_s, u"Tolvane Brevok"_s);
    QVERIFY(!nowhere.exists());
    nowhere.deliver({u"Title"_s, {}});
    QVERIFY(nowhere.children().isEmpty());
}

QTEST_GUILESS_MAIN(DesktopNotificationsTest)
#include "test_desktop_notifications.moc"
