// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "NotifierHost.h"
#include "support/InRow.h"
#include "support/XembedTray.h"
#include "ui/statusitem/BrevokMenubarController.h"
#include "ui/statusitem/linux/LinuxStatusBar.h"
#include "ui/statusitem/StatusBar.h"
#include "ui/statusitem/StatusItemImage.h"
#include "ui/statusitem/StatusItemLayout.h"

#include <QApplication>
#include <QDBusConnection>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;

namespace {

/// The number of pixels in @p image that are like @p colour.
int pixelsLike(const QImage &image, const QColor &colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += qAbs(pixel.red() - colour.red()) + qAbs(pixel.green() - colour.green())
                    + qAbs(pixel.blue() - colour.blue())
                < 24;
        }
    }
    return count;
}

} // namespace

/// Real trays on a display of the test's own.
class TrayWindowTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        m_bar = std::make_unique<LinuxStatusBar>(QDBusConnection::sessionBus());
    }

    void hostThatGivesRoomShowsTheWideLayout()
    {
        const QList<std::tuple<const char *, QColor, QColor, QColor>> rows{
            {"light bar", {u"#f0f0f0"_s}, {}, {u"#232629"_s}},
            {"dark bar", {u"#202020"_s}, {}, {u"#ffffff"_s}},
            {"bar with its own colour", {u"#202020"_s}, {u"#ffd200"_s}, {u"#ffd200"_s}},
        };
        for (const auto &[name, bar, told, shown] : rows) {
            const InRow in(name);
            BrevokMenubarController controller(*m_bar);
            XembedTray tray(bar, 24);
            if (told.isValid()) {
                tray.setTextColour(told);
            }
            QTRY_VERIFY(tray.items() > 0);
            QTRY_COMPARE(tray.itemSize(), QSize(24, 24));
            QTRY_VERIFY(pixelsLike(tray.itemPicture(), shown) > 60);
            controller.setUpdates(128);
            const int width = qCeil(controller.statusItem().length());
            QVERIFY(width > 40);
            QTRY_COMPARE(tray.itemSize(), QSize(width, 24));
            // The number stands right of the icon.
            QTRY_VERIFY(
                pixelsLike(tray.itemPicture().copy(23, 0, width - 23, 24), bar) < (width - 23) * 24 - 40);
            QTRY_COMPARE(controller.statusItem().frameOnScreen(), std::optional(QRect(200, 0, width, 24)));
            QCOMPARE(pixelsLike(tray.itemPicture(), QColor(u"#d92d20"_s)), 0);
            controller.setUpdates(0);
            QTRY_COMPARE(tray.itemSize(), QSize(24, 24));
            QTRY_VERIFY(pixelsLike(tray.itemPicture().copy(4, 4, 16, 16), shown) > 60);
        }
    }

    // Without a bus at all; and it comes and goes with its tray.
    void highBarShowsASquareWithABadge()
    {
        LinuxStatusBar bar{QDBusConnection(u"no such connection"_s)};
        auto controller = std::make_unique<BrevokMenubarController>(bar);
        controller->setUpdates(47);
        {
            const XembedTray tray(Qt::white, 24);
            QTRY_VERIFY(controller->statusItem().frameOnScreen().has_value());
        }
        QTRY_VERIFY(!controller->statusItem().frameOnScreen());
        XembedTray tray(Qt::white, 48);
        QTRY_COMPARE(tray.itemSize(), QSize(48, 48));
        QTRY_COMPARE(controller->statusItem().frameOnScreen(), std::optional(QRect(200, 0, 48, 48)));
        QImage expected(48, 48, QImage::Format_RGB32);
        expected.fill(Qt::white);
        QPainter(&expected).drawImage(0, 0,
            statusitem::squareImage(48, 47, statusitem::coloursFor(statusitem::textColourOn(Qt::white))));
        QTRY_COMPARE(tray.itemPicture(), expected);
        controller.reset();
        QTRY_VERIFY(tray.itemPicture().isNull());
    }

    void watcherWithoutHostLeavesItInTheTray()
    {
        const BrevokMenubarController controller(*m_bar);
        const XembedTray tray(Qt::white, 24);
        QTRY_VERIFY(controller.statusItem().frameOnScreen().has_value());
        NotifierHost host(false);
        QTRY_COMPARE(host.items.size(), 1);
        QVERIFY(controller.statusItem().frameOnScreen());
        host.shows = true;
        Q_EMIT host.StatusNotifierHostRegistered();
        QTRY_VERIFY(!controller.statusItem().frameOnScreen());
    }

private:
    std::unique_ptr<LinuxStatusBar> m_bar;
};

int main(int argc, char **argv)
{
    QProcess display;
    display.start(
        u"sh"_s, {u"-c"_s, u"exec Xvfb -displayfd 1 -screen 0 1440x900x24 -nolisten tcp 2>/dev/null"_s});
    if (!display.waitForReadyRead()) {
        qCritical("no virtual display");
        return 1;
    }
    qputenv("DISPLAY", ":" + display.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    int result = 1;
    {
        const QApplication application(argc, argv);
        TrayWindowTest test;
        result = QTest::qExec(&test, argc, argv);
    }
    display.terminate();
    display.waitForFinished();
    return result;
}

#include "test_tray_window.moc"
