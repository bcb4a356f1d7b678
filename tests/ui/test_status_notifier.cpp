// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/BrevokMenubarController.h"
#include "ui/statusitem/linux/LinuxStatusBar.h"
#include "ui/statusitem/linux/NotifierTypes.h"
#include "ui/statusitem/StatusBar.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace brevok;

namespace {

const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;

/// The bus' list of items and a host that shows them, on a connection of its own.
class NotifierHost final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    NotifierHost()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"notifier-host"_s))
    {
        m_bus.registerObject(u"/StatusNotifierWatcher"_s, this, QDBusConnection::ExportAllContents);
        m_bus.registerService(watcherName);
    }
    /// As a crash would: the connection is gone.
    ~NotifierHost() override { QDBusConnection::disconnectFromBus(u"notifier-host"_s); }
    Q_DISABLE_COPY_MOVE(NotifierHost)

    [[nodiscard]] bool hasHost() const { return host; }

    void call(const QString &method, const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            items.last(), u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, method);
        message.setArguments(arguments);
        m_bus.send(message);
    }

    [[nodiscard]] QVariant property(const QString &name)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            items.last(), u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        message << u"org.kde.StatusNotifierItem"_s << name;
        QDBusPendingReply<QDBusVariant> reply = m_bus.asyncCall(message);
        if (!QTest::qWaitFor([&reply] { return reply.isFinished(); }) || reply.isError()) {
            return {};
        }
        return reply.value().variant();
    }

    QStringList items;
    bool host = true;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &item) { items.append(item); }

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    QDBusConnection m_bus;
};

} // namespace

class StatusNotifierTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        m_bar = std::make_unique<LinuxStatusBar>(QDBusConnection::sessionBus());
    }

    void registersWhenAHostComesLateAndAgainAfterACrash()
    {
        const BrevokMenubarController controller(*m_bar);
        for (int life = 0; life < 3; ++life) {
            NotifierHost host;
            QTRY_COMPARE(host.items.size(), 1);
            QCOMPARE(host.property(u"Status"_s).toString(), u"Active"_s);
        }
    }

    void registersWithAHostThatRuns()
    {
        NotifierHost host;
        QString name;
        {
            const BrevokMenubarController controller(*m_bar);
            QTRY_COMPARE(host.items.size(), 1);
            name = host.items.first();
            QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(name));
        }
        // The name goes with the item, by which hosts learn of it.
        QTRY_VERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(name));
    }

    void hostsSeeTheNumber()
    {
        NotifierHost host;
        BrevokMenubarController controller(*m_bar);
        QTRY_COMPARE(host.items.size(), 1);
        QDBusConnection bus = QDBusConnection::sessionBus();
        const auto pictures = [&host] {
            return qdbus_cast<NotifierPixmaps>(host.property(u"IconPixmap"_s));
        };
        const NotifierPixmaps before = pictures();
        QVERIFY(before.size() >= 5);
        for (const NotifierPixmap &pixmap : before) {
            QCOMPARE(pixmap.width, pixmap.height);
            QCOMPARE(pixmap.argb.size(), pixmap.width * pixmap.height * 4);
            // Alpha comes first: clear at the corner, solid in the icon's middle.
            QCOMPARE(pixmap.argb.at(0), '\0');
            const qsizetype middle = qsizetype{4} * (pixmap.height / 2 * pixmap.width + pixmap.width / 2);
            QCOMPARE(static_cast<uchar>(pixmap.argb.at(middle)), uchar{255});
        }
        controller.setUpdates(3);
        const NotifierPixmaps after = pictures();
        for (qsizetype i = 0; i < after.size(); ++i) {
            QVERIFY(after.at(i).argb != before.at(i).argb);
        }
        const auto toolTip = qdbus_cast<NotifierToolTip>(host.property(u"ToolTip"_s));
        QCOMPARE(toolTip.title, u"Tolvane Brevok"_s);
        QCOMPARE(toolTip.text, u"3 updates available"_s);
    }

    void clicksCarryTheirPlace()
    {
        NotifierHost host;
        const BrevokMenubarController controller(*m_bar);
        QSignalSpy asked(&controller, &BrevokMenubarController::togglePanelRequested);
        QTRY_COMPARE(host.items.size(), 1);
        QVERIFY(!controller.statusItem().frameOnScreen());
        host.call(u"ContextMenu"_s, {5, 5});
        host.call(u"SecondaryActivate"_s, {5, 5});
        host.call(u"Scroll"_s, {120, u"vertical"_s});
        host.call(u"Activate"_s, {300, 12});
        QTRY_COMPARE(asked.size(), 1);
        QCOMPARE(asked.first().first().toPoint(), QPoint(300, 12));
        QCOMPARE(controller.statusItem().frameOnScreen(), std::optional(QRect(288, 0, 24, 24)));
        QVERIFY(controller.statusItem().screen() != nullptr);
        // A host that does not know where: the pointer's own place.
        QApplication::setDoubleClickInterval(0);
        host.call(u"Activate"_s, {0, 0});
        QTRY_COMPARE(asked.size(), 2);
        QCOMPARE(asked.last().first().toPoint(), QCursor::pos());
    }

    void pixelsBecomePoints()
    {
        const QList<ScreenArea> screens{{QRect(0, 0, 1920, 1080), 1}, {QRect(1920, 0, 3840, 2160), 2}};
        QCOMPARE(toPoints({100, 10}, screens), QPoint(100, 10));
        QCOMPARE(toPoints({1920 + 3000, 20}, screens), QPoint(1920 + 1500, 10));
        QCOMPARE(toPoints({-5, 10}, screens), QPoint(-5, 10));
        // A frame that ends where its screen does, or reaches beyond.
        QCOMPARE(frameInPoints({1920 + 3792, 2100, 48, 60}, screens), QRect(1920 + 1896, 1050, 24, 30));
        QCOMPARE(frameInPoints({1896, 0, 26, 24}, screens), QRect(1896, 0, 26, 24));
    }

private:
    std::unique_ptr<LinuxStatusBar> m_bar;
};

QTEST_MAIN(StatusNotifierTest)
#include "test_status_notifier.moc"
