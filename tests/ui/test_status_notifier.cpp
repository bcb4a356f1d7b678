// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "NotifierHost.h"
#include "ui/statusitem/BrevokMenubarController.h"
#include "ui/statusitem/linux/LinuxStatusBar.h"
#include "ui/statusitem/linux/NotifierTypes.h"
#include "ui/statusitem/StatusBar.h"
#include "WindowTest.h"

#include <QApplication>
#include <QCursor>
#include <QSignalSpy>

using namespace brevok;
using namespace brevok::testing;

class StatusNotifierTest final : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void hostsShowTheItem()
    {
        LinuxStatusBar bar(QDBusConnection::sessionBus());
        BrevokMenubarController controller(bar);
        for (int life = 0; life < 2; ++life) { // it comes late, and again after a crash
            NotifierHost host;
            QTRY_COMPARE(host.items.size(), 1);
        }
        NotifierHost host;
        QTRY_COMPARE(host.items.size(), 1);
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

        QSignalSpy asked(&controller, &BrevokMenubarController::togglePanelRequested);
        host.call(u"ContextMenu"_s, {5, 5});
        host.call(u"SecondaryActivate"_s, {5, 5});
        host.call(u"Scroll"_s, {120, u"vertical"_s});
        host.call(u"Activate"_s, {300, 12});
        QTRY_COMPARE(asked.size(), 1);
        QCOMPARE(asked.first().first().toPoint(), QPoint(300, 12));
        QCOMPARE(controller.statusItem().frameOnScreen(), std::optional(QRect(288, 0, 24, 24)));
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
};

QTEST_MAIN(StatusNotifierTest)
#include "test_status_notifier.moc"
