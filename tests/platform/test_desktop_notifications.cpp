// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/DesktopNotifications.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;

/// A server of notices on the real bus, with the methods of org.freedesktop.Notifications.
class NoticeServer final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    NoticeServer()
    {
        m_bus.registerObject(
            m_path, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        m_bus.registerService(m_name);
    }
    ~NoticeServer() override
    {
        m_bus.unregisterService(m_name);
        m_bus.unregisterObject(m_path);
    }
    Q_DISABLE_COPY_MOVE(NoticeServer)

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

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QString m_path = u"/org/freedesktop/Notifications"_s;
    QString m_name = u"org.freedesktop.Notifications"_s;
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

class DesktopNotificationsTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void noticesReachTheServer_data()
    {
        const testing::Table<QStringList, QString> row;
        row("plain", {u"body"_s}, u"A <b> & C"_s);
        row("markup", {u"body"_s, u"body-markup"_s}, u"A &lt;b&gt; &amp; C"_s);
    }

    void noticesReachTheServer()
    {
        const auto [capabilities, text] = testing::columns<QStringList, QString>();
        NoticeServer server;
        server.capabilities = capabilities;
        m_center.setDelegate(&m_decider);
        m_decider.answer = false;
        m_center.deliver({u"Refused"_s, {}});
        m_decider.answer = true;
        m_center.deliver({u"Title"_s, u"A <b> & C"_s});
        QTRY_COMPARE(
            server.shown, QStringList{u"Tolvane Brevok|0|com.tolvane.brevok|Title|%1|0|-1"_s.arg(text)});
        QCOMPARE(server.lastHints.value(u"desktop-entry"_s).toString(), u"com.tolvane.brevok"_s);
    }

    void clicksComeBack()
    {
        NoticeServer server;
        m_center.setDelegate(&m_decider);
        const QList<UserNotificationAction> actions{{u"open"_s, u"Open"_s}, {u"update"_s, u"Update"_s}};
        m_center.deliver({u"A server without buttons"_s, {}, actions});
        QTRY_COMPARE(server.shown.size(), 1);
        QVERIFY(server.lastActions.isEmpty());
        server.capabilities = {u"actions"_s};
        m_center.deliver({u"Title"_s, {}, actions});
        QTRY_COMPARE(server.shown.size(), 2);
        QCOMPARE(server.lastActions, (QStringList{u"open"_s, u"Open"_s, u"update"_s, u"Update"_s}));
        QTRY_VERIFY(m_center.children().isEmpty()); // the notice's number came
        Q_EMIT server.ActionInvoked(2, u"open"_s); // of another program's notice
        Q_EMIT server.ActionInvoked(1, u"update"_s);
        QTRY_COMPARE(m_decider.clicked, QStringList{u"update"_s});
    }

    void withoutAServerNoticesAreLost()
    {
        QVERIFY(m_center.exists());
        m_center.deliver({u"Title"_s, {}});
        QTRY_VERIFY(m_center.children().isEmpty()); // its question was answered, without a line in the log
        DesktopNotifications nowhere(
            QDBusConnection(u"none"_s), u"com.tolvane.brevok"_s, u"Tolvane Brevok"_s);
        QVERIFY(!nowhere.exists());
        nowhere.deliver({u"Title"_s, {}});
        QVERIFY(nowhere.children().isEmpty());
    }

private:
    Decider m_decider;
    DesktopNotifications m_center{
        QDBusConnection::sessionBus(), u"com.tolvane.brevok"_s, u"Tolvane Brevok"_s};
};

QTEST_GUILESS_MAIN(DesktopNotificationsTest)
#include "test_desktop_notifications.moc"
