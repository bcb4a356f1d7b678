// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/FakeStatusBar.h"
#include "ui/statusitem/BrevokMenubarController.h"
#include "ui/statusitem/BrevokStatusItemView.h"
#include "ui/statusitem/StatusItemImage.h"
#include "ui/statusitem/StatusItemLayout.h"

#include <QPainter>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace brevok;
using brevok::testing::FakeStatusBar;

namespace {

/// What the view's action is sent to.
class ClickTarget final : public QObject {
    Q_OBJECT

public:
    int plain = 0;
    QWidget *sender = nullptr;

public Q_SLOTS:
    void togglePanel() { ++plain; }
    void toggleFrom(QWidget *view) { sender = view; }
};

/// Counts how often a view is drawn.
class DrawCounter final : public QObject {
    Q_OBJECT

public:
    int draws = 0;
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        draws += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

double contrast(const QColor &one, const QColor &other)
{
    const auto luminance = [](const QColor &colour) {
        const auto part = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
    };
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return qMax(a, b) / qMin(a, b);
}

/// The columns and rows of @p image that are not clear.
QRect inked(const QImage &image)
{
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 127) {
                all |= QRect(x, y, 1, 1);
            }
        }
    }
    return all;
}

} // namespace

class StatusItemTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void countTexts_data()
    {
        QTest::addColumn<qint64>("updates");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << qint64{0} << QString();
        QTest::newRow("one") << qint64{1} << u"1"_s;
        QTest::newRow("no grouping") << qint64{1234567} << u"1234567"_s;
        QTest::newRow("negative") << qint64{-12} << u"-12"_s;
        QTest::newRow("largest") << std::numeric_limits<qint64>::max() << u"9223372036854775807"_s;
    }
    void countTexts()
    {
        QFETCH(qint64, updates);
        QTEST(statusitem::countText(updates), "text");
    }

    void layouts_data()
    {
        QTest::addColumn<QSizeF>("button");
        QTest::addColumn<QSizeF>("image");
        QTest::addColumn<double>("textWidth");
        QTest::addColumn<double>("length");
        QTest::addColumn<QPointF>("imageAt");
        QTest::addColumn<QPointF>("textAt");
        const QSizeF icon(16, 16);
        QTest::newRow("icon alone, centred")
            << QSizeF(24, 22) << icon << 0.0 << 24.0 << QPointF(4, 3) << QPointF(24, 3);
        QTest::newRow("icon and number")
            << QSizeF(38.5, 22) << icon << 14.5 << 38.5 << QPointF(2, 3) << QPointF(22, 3);
        QTest::newRow("halves go away from zero")
            << QSizeF(25, 23) << icon << 0.0 << 24.0 << QPointF(5, 4) << QPointF(25, 3);
        QTest::newRow("negative halves, too: there is no button")
            << QSizeF(0, 0) << QSizeF(17, 17) << 0.0 << 25.0 << QPointF(-9, -9) << QPointF(12, 3);
        // 0.49999999 is a half in single precision.
        QTest::newRow("single precision")
            << QSizeF(16.99999998, 16.99999998) << icon << 0.0 << 24.0 << QPointF(1, 1) << QPointF(21, 3);
    }
    void layouts()
    {
        QFETCH(QSizeF, button);
        QFETCH(QSizeF, image);
        QFETCH(double, textWidth);
        const statusitem::Layout places = statusitem::layout(button, image, textWidth);
        QTEST(places.image, "imageAt");
        QTEST(places.text, "textAt");
        QTEST(statusitem::itemLength(image.width(), textWidth), "length");
    }

    void bitmapsAreWholePoints()
    {
        QCOMPARE(statusitem::bitmapSize(38.9, 22.5, 1), QSize(38, 22));
        QCOMPARE(statusitem::bitmapSize(38.9, 22.5, 2), QSize(76, 44));
    }

    void wideOrSquare_data()
    {
        QTest::addColumn<QSize>("granted");
        QTest::addColumn<double>("length");
        QTest::addColumn<bool>("hasNumber");
        QTest::addColumn<bool>("wasWide");
        QTest::addColumn<bool>("wide");
        QTest::newRow("square") << QSize(24, 24) << 38.5 << true << false << false;
        QTest::newRow("room for all") << QSize(39, 24) << 38.5 << true << false << true;
        QTest::newRow("a little too narrow") << QSize(37, 24) << 38.5 << true << false << false;
        QTest::newRow("large square") << QSize(48, 48) << 38.5 << true << true << false;
        QTest::newRow("no number stays wide") << QSize(39, 24) << 24.0 << false << true << true;
        QTest::newRow("no number stays square") << QSize(39, 24) << 24.0 << false << false << false;
        QTest::newRow("no number, as long as asked for") << QSize(24, 20) << 24.0 << false << false << true;
        QTest::newRow("no number, large square") << QSize(46, 46) << 24.0 << false << true << false;
        QTest::newRow("no number, small square") << QSize(22, 22) << 24.0 << false << false << false;
    }
    void wideOrSquare()
    {
        QFETCH(QSize, granted);
        QFETCH(double, length);
        QFETCH(bool, hasNumber);
        QFETCH(bool, wasWide);
        QTEST(statusitem::isWide(granted, length, hasNumber, wasWide), "wide");
    }

    void badges_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<qint64>("updates");
        QTest::addColumn<QString>("text");
        for (const int side : {16, 22, 24, 32, 48, 64}) {
            const QByteArray name = QByteArray::number(side);
            QTest::newRow((name + " none").constData()) << side << qint64{0} << QString();
            QTest::newRow((name + " one digit").constData()) << side << qint64{7} << u"7"_s;
            QTest::newRow((name + " two digits").constData()) << side << qint64{47} << u"47"_s;
            QTest::newRow((name + " too many").constData())
                << side << qint64{2000} << (side < 24 ? u"9+"_s : u"99+"_s);
        }
    }
    void badges()
    {
        QFETCH(int, side);
        QFETCH(qint64, updates);
        QFETCH(QString, text);
        QCOMPARE(statusitem::badgeText(updates, side), text);
        const statusitem::Badge badge = statusitem::badge(side, text.size());
        QCOMPARE(badge.pill.isNull(), text.isEmpty());
        if (!text.isEmpty()) {
            const QRect square(0, 0, side, side);
            QVERIFY(square.contains(badge.pill));
            QCOMPARE(badge.pill.bottomRight(), square.bottomRight());
            QVERIFY(badge.digitHeight >= 7 && badge.digitHeight < badge.pill.height());
            QVERIFY2(badge.pill.height() <= side * 2 / 3, "the icon stays recognisable");
        }
    }

    void picturesStandOutFromEveryBar_data()
    {
        QTest::addColumn<QColor>("bar");
        QTest::addColumn<bool>("known");
        for (const QByteArray &bar :
            {"#ffffff"_ba, "#f0f0f0"_ba, "#dedede"_ba, "#2b2b2b"_ba, "#1d1d1d"_ba, "#000000"_ba}) {
            QTest::newRow((bar + ", not told").constData()) << QColor(QLatin1StringView(bar)) << false;
            QTest::newRow((bar + ", told").constData()) << QColor(QLatin1StringView(bar)) << true;
        }
    }
    void picturesStandOutFromEveryBar()
    {
        QFETCH(QColor, bar);
        QFETCH(bool, known);
        const statusitem::Colours colours =
            statusitem::coloursFor(known ? std::optional(statusitem::textColourOn(bar)) : std::nullopt);
        const double least = known ? 7.0 : 2.9;
        QVERIFY2(
            contrast(colours.icon, bar) >= least, qPrintable(QString::number(contrast(colours.icon, bar))));
        QVERIFY2(contrast(colours.badge, bar) >= least - 0.2,
            qPrintable(QString::number(contrast(colours.badge, bar))));
        const QColor digits = colours.digits.isValid() ? colours.digits : bar;
        QVERIFY(contrast(digits, colours.badge) >= 4.5);
    }

    void squarePicturesShowTheNumber()
    {
        const auto colours = statusitem::coloursFor({});
        for (const int side : {16, 22, 24, 32, 48}) {
            const QImage none = statusitem::squareImage(side, 0, colours);
            QCOMPARE(none.size(), QSize(side, side));
            QVERIFY(statusitem::squareImage(side, 1, colours) != none);
            QVERIFY(statusitem::squareImage(side, 2, colours) != statusitem::squareImage(side, 1, colours));
            QVERIFY(statusitem::squareImage(side, 12, colours) != statusitem::squareImage(side, 1, colours));
        }
    }

    void controllerMakesAndRemovesTheItem()
    {
        FakeStatusBar bar;
        {
            const BrevokMenubarController controller(bar);
            QVERIFY(bar.item != nullptr);
            QCOMPARE(bar.lengths.first(), 24.0);
            QCOMPARE(bar.lengths.last(), 24.0); // 16 for the icon, 8 around it
            QCOMPARE(bar.faces.size(), 1);
            QVERIFY(bar.faces.last().isTemplate);
            QVERIFY(!controller.hasActiveIcon());
            QCOMPARE(controller.updates(), qint64{0});
        }
        QVERIFY(bar.item == nullptr);
    }

    void everySetDraws()
    {
        FakeStatusBar bar;
        BrevokMenubarController controller(bar);
        QSignalSpy changed(&controller, &BrevokMenubarController::updatesChanged);
        controller.setUpdates(12);
        controller.setUpdates(12);
        QCOMPARE(changed.size(), 2);
        QCOMPARE(bar.faces.size(), 3);
        QCOMPARE(bar.faces.last().updates, qint64{12});
        QCOMPARE(bar.lengths.last(), 24.0 + statusitem::textWidth(u"12"_s));
        controller.setHasActiveIcon(true);
        QCOMPARE(bar.faces.size(), 3); // does not change the drawing
    }

    void bitmapHoldsIconAndNumberAtTheirPlaces()
    {
        for (const qreal ratio : {1.0, 2.0}) {
            FakeStatusBar bar;
            bar.ratio = ratio;
            BrevokMenubarController controller(bar);
            const QImage alone = bar.faces.last().image;
            QCOMPARE(alone.size(), QSize(24, 24) * ratio);
            QVERIFY(QRect(QPoint(4, 4) * ratio, QSize(16, 16) * ratio).contains(inked(alone)));
            controller.setUpdates(12);
            const QImage both = bar.faces.last().image;
            QCOMPARE(both.size(), statusitem::bitmapSize(bar.lengths.last(), 24, ratio));
            const QRect number = inked(both.copy(QRect(QPoint(21, 0) * ratio, both.size())));
            QVERIFY(!number.isEmpty());
            // The digits stand on the line three points above the lower edge.
            QVERIFY(qAbs(both.height() - 1 - number.bottom() - 3 * ratio) <= 1);
        }
    }

    void clickAsksForThePanel()
    {
        FakeStatusBar bar;
        const BrevokMenubarController controller(bar);
        QSignalSpy asked(&controller, &BrevokMenubarController::togglePanelRequested);
        Q_EMIT bar.item->clicked({1400, 12});
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked.first().first().toPoint(), QPoint(1400, 12));
        Q_EMIT bar.item->clicked({1400, 12}); // the second one of a double click
        QCOMPARE(asked.size(), 1);
        Q_EMIT bar.item->clicked({1400, 12});
        QCOMPARE(asked.size(), 2);
        Q_EMIT bar.item->buttonChanged();
        QCOMPARE(bar.faces.size(), 2);
    }

    void viewStartsAsDocumented()
    {
        FakeStatusBar bar;
        const auto item = bar.makeItem(24);
        const BrevokStatusItemView view(*item, 24);
        QCOMPARE(item->view(), &view);
        QCOMPARE(view.geometry(), QRect(0, 0, 24, 24));
        QCOMPARE(view.updateTimer().intervalAsDuration(), std::chrono::milliseconds(30000));
        QVERIFY(view.updateTimer().isActive() && !view.updateTimer().isSingleShot());
        QVERIFY(view.image().isTemplate() && view.image() == view.alternateImage());
    }

    void viewDrawsOnlyWhenSomethingChanges()
    {
        FakeStatusBar bar;
        const auto item = bar.makeItem(24);
        BrevokStatusItemView view(*item, 24);
        DrawCounter counter;
        view.installEventFilter(&counter);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const auto draws = [&](const std::function<void()> &change) {
            QCoreApplication::processEvents();
            counter.draws = 0;
            change();
            QCoreApplication::processEvents();
            return counter.draws;
        };
        QCOMPARE(draws([&] { view.setUpdates(0); }), 0);
        QCOMPARE(draws([&] { view.setUpdates(3); }), 1);
        QCOMPARE(bar.lengths.last(), 24.0 + statusitem::textWidth(u"3"_s));
        QCOMPARE(draws([&] { view.setUpdates(3); }), 0);
        // The alternate image only counts while highlighted.
        const TemplateImage other(u"Info"_s);
        const TemplateImage third(u"Remove"_s);
        QCOMPARE(draws([&] { view.setHighlighted(false), view.setAlternateImage(other); }), 0);
        QCOMPARE(draws([&] { view.setHighlighted(true); }), 1);
        QCOMPARE(draws([&] { view.setAlternateImage(third); }), 1);
        QCOMPARE(draws([&] { view.setImage(other); }), 1);
        QCOMPARE(draws([&] { view.setImage(other); }), 0);
    }

    void viewSendsItsAction()
    {
        FakeStatusBar bar;
        const auto item = bar.makeItem(24);
        BrevokStatusItemView view(*item, 24);
        QTest::mouseClick(&view, Qt::LeftButton); // to nobody
        ClickTarget target;
        view.setTarget(&target);
        QTest::mouseClick(&view, Qt::RightButton);
        QCOMPARE(target.plain, 0);
        QTest::mouseClick(&view, Qt::LeftButton);
        QCOMPARE(target.plain, 1);
        view.setAction("toggleFrom");
        QTest::mouseClick(&view, Qt::LeftButton);
        QCOMPARE(target.sender, &view);
        view.move(300, 40);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QCOMPARE(view.globalRect(), view.geometry());
    }

    void templatesTakeColoursLive()
    {
        TemplateImage icon(u"StatusHighlighted"_s);
        icon.setTemplate(true);
        QCOMPARE(icon.size(), QSizeF(16, 16));
        const QImage red = icon.rendered({32, 32}, Qt::red);
        QCOMPARE(red.pixelColor(16, 16), QColor(Qt::red));
        QCOMPARE(red.pixelColor(0, 31).alpha(), 0);
        QVERIFY(TemplateImage(u"no such image"_s).isNull());

        const QIcon live = templateIcon(u"StatusHighlighted"_s);
        const QPalette before = QGuiApplication::palette();
        for (const QColor &colour : {QColor(Qt::white), QColor(Qt::darkGreen)}) {
            QPalette palette = before;
            palette.setColor(QPalette::ButtonText, colour);
            QGuiApplication::setPalette(palette);
            QCOMPARE(live.pixmap(32).toImage().pixelColor(16, 16), colour);
        }
        QGuiApplication::setPalette(before);
    }
};

QTEST_MAIN(StatusItemTest)
#include "test_status_item.moc"
