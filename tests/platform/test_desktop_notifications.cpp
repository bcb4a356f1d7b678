// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/DesktopNotifications.h"
#include "support/FolderTest.h"

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

public Q_SLOTS:
    [[nodiscard]] QStringList GetCapabilities() const { return capabilities; }
    uint Notify(const QString &program, uint replaces, const QString &icon, const QString &title,
        const QString &text, const QStringList &actions, const QVariantMap &hints, int milliseconds)
    {
        lastHints = hints;
        shown.append(QStringList{program, QString::number(replaces), icon, title, text, actions.join(u','),
            QString::number(milliseconds)}
                         .join(u'|'));
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
    void noticesReachTheServerAndClicksComeBack()
    {
        NoticeServer server;
        server.capabilities = {u"body"_s};
        m_center.setDelegate(&m_decider);
        m_decider.answer = false;
        m_center.deliver({u"Refused"_s, {}});
        m_decider.answer = true;
        const UserNotification notice{
            u"Title"_s, u"A <b> & C"_s, {{u"open"_s, u"Open"_s}, {u"update"_s, u"Update"_s}}};
        m_center.deliver(notice);
        const QString form = u"Tolvane Brevok|0|com.tolvane.brevok|Title|%1|%2|-1"_s;
        QStringList shown{form.arg(u"A <b> & C"_s, QString())};
        QTRY_COMPARE(server.shown, shown);
        QCOMPARE(server.lastHints.value(u"desktop-entry"_s).toString(), u"com.tolvane.brevok"_s);

        server.capabilities = {u"body"_s, u"body-markup"_s, u"actions"_s};
        m_center.deliver(notice);
        shown.append(form.arg(u"A &lt;b&gt; &amp; C"_s, u"open,Open,update,Update"_s));
        QTRY_COMPARE(server.shown, shown);
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
