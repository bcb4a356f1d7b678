// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/FakeStatusBar.h"
#include "support/InRow.h"
#include "ui/statusitem/BrevokMenubarController.h"
#include "ui/statusitem/BrevokStatusItemView.h"
#include "ui/statusitem/StatusItemImage.h"
#include "ui/statusitem/StatusItemLayout.h"
#include "ui/widgets/PanelStyle.h"
#include "WindowTest.h"

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace brevok;
using namespace brevok::testing;

namespace {

/// What the view's action is sent to.
class ClickTarget final : public QObject {
    Q_OBJECT

public:
    QList<QWidget *> calls;

public Q_SLOTS:
    void togglePanel() { calls.append(nullptr); }
    void toggleFrom(QWidget *view) { calls.append(view); }
};

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

class StatusItemTest final : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void layouts()
    {
        const QSizeF icon(16, 16);
        const QList<std::tuple<const char *, QSizeF, QSizeF, double, double, QPointF, QPointF>> rows{
            {"icon alone, centred", {24, 22}, icon, 0.0, 24.0, {4, 3}, {24, 3}},
            {"icon and number", {38.5, 22}, icon, 14.5, 38.5, {2, 3}, {22, 3}},
            {"halves go away from zero", {25, 23}, icon, 0.0, 24.0, {5, 4}, {25, 3}},
            {"negative halves, too: there is no button", {0, 0}, {17, 17}, 0.0, 25.0, {-9, -9}, {12, 3}},
            // 0.49999999 is a half in single precision.
            {"single precision", {16.99999998, 16.99999998}, icon, 0.0, 24.0, {1, 1}, {21, 3}},
        };
        for (const auto &[name, button, image, textWidth, length, imageAt, textAt] : rows) {
            const InRow in(name);
            const statusitem::Layout places = statusitem::layout(button, image, textWidth);
            QCOMPARE(places.image, imageAt);
            QCOMPARE(places.text, textAt);
            QCOMPARE(statusitem::itemLength(image.width(), textWidth), length);
        }
        QCOMPARE(statusitem::countText(0), QString());
        QCOMPARE(statusitem::countText(-1234567), u"-1234567"_s); // without grouping
        QCOMPARE(statusitem::bitmapSize(38.9, 22.5, 1), QSize(38, 22)); // whole points
        QCOMPARE(statusitem::bitmapSize(38.9, 22.5, 2), QSize(76, 44));
    }

    void wideOrSquare()
    {
        const QList<std::tuple<const char *, QSize, double, bool, bool, bool>> rows{
            {"square", {24, 24}, 38.5, true, false, false},
            {"room for all", {39, 24}, 38.5, true, false, true},
            {"a little too narrow", {37, 24}, 38.5, true, false, false},
            {"large square", {48, 48}, 38.5, true, true, false},
            {"no number stays wide", {39, 24}, 24.0, false, true, true},
            {"no number stays square", {39, 24}, 24.0, false, false, false},
            {"no number, as long as asked for", {24, 20}, 24.0, false, false, true},
            {"no number, large square", {46, 46}, 24.0, false, true, false},
            {"no number, small square", {22, 22}, 24.0, false, false, false},
        };
        for (const auto &[name, granted, length, hasNumber, wasWide, wide] : rows) {
            const InRow in(name);
            QCOMPARE(statusitem::isWide(granted, length, hasNumber, wasWide), wide);
        }
    }

    void badges()
    {
        const auto colours = statusitem::coloursFor({});
        for (const int side : {16, 22, 24, 32, 48, 64}) {
            const QByteArray row = QByteArray::number(side);
            const InRow in(row.constData());
            QCOMPARE(statusitem::badgeText(0, side), QString());
            QVERIFY(statusitem::badge(side, 0).pill.isNull());
            QImage before = statusitem::squareImage(side, 0, colours);
            QCOMPARE(before.size(), QSize(side, side));
            const QList<std::pair<qint64, QString>> texts{
                {7, u"7"_s}, {8, u"8"_s}, {47, u"47"_s}, {2000, side < 24 ? u"9+"_s : u"99+"_s}};
            for (const auto &[updates, text] : texts) {
                QCOMPARE(statusitem::badgeText(updates, side), text);
                const statusitem::Badge badge = statusitem::badge(side, text.size());
                const QRect square(0, 0, side, side);
                QVERIFY(square.contains(badge.pill));
                QCOMPARE(badge.pill.bottomRight(), square.bottomRight());
                QVERIFY(badge.digitHeight >= 7 && badge.digitHeight < badge.pill.height());
                QVERIFY2(badge.pill.height() <= side * 2 / 3, "the icon stays recognisable");
                const QImage shown = statusitem::squareImage(side, updates, colours);
                QVERIFY(shown != before); // the number is seen
                before = shown;
            }
        }
    }

    void picturesStandOutFromEveryBar()
    {
        for (const char *name : {"#ffffff", "#f0f0f0", "#dedede", "#2b2b2b", "#1d1d1d", "#000000"}) {
            const InRow in(name);
            const QColor bar{QLatin1StringView(name)};
            for (const bool known : {true, false}) {
                const statusitem::Colours colours = statusitem::coloursFor(
                    known ? std::optional(statusitem::textColourOn(bar)) : std::nullopt);
                const double least = known ? 7.0 : 2.9;
                QVERIFY(PanelStyle::contrast(colours.icon, bar) >= least);
                QVERIFY(PanelStyle::contrast(colours.badge, bar) >= least - 0.2);
                const QColor digits = colours.digits.isValid() ? colours.digits : bar;
                QVERIFY(PanelStyle::contrast(digits, colours.badge) >= 4.5);
            }
        }
    }

    void controllerDrawsAtEverySet()
    {
        for (const qreal ratio : {1.0, 2.0}) {
            FakeStatusBar bar;
            bar.ratio = ratio;
            auto controller = std::make_unique<BrevokMenubarController>(bar);
            QCOMPARE(bar.lengths, (QList{24.0, 24.0})); // as asked for; 16 for the icon, 8 around it
            const QImage alone = bar.faces.last().image;
            QCOMPARE(alone.size(), QSize(24, 24) * ratio);
            QVERIFY(QRect(QPoint(4, 4) * ratio, QSize(16, 16) * ratio).contains(inked(alone)));
            controller->setUpdates(12);
            controller->setUpdates(12);
            QCOMPARE(bar.faces.size(), 3);
            QVERIFY(bar.faces.last().isTemplate);
            QCOMPARE(bar.faces.last().updates, qint64{12});
            QCOMPARE(bar.lengths.last(), 24.0 + statusitem::textWidth(u"12"_s));
            const QImage both = bar.faces.last().image;
            QCOMPARE(both.size(), statusitem::bitmapSize(bar.lengths.last(), 24, ratio));
            const QRect number = inked(both.copy(QRect(QPoint(21, 0) * ratio, both.size())));
            QVERIFY(!number.isEmpty());
            // The digits stand on the line three points above the lower edge.
            QVERIFY(qAbs(both.height() - 1 - number.bottom() - 3 * ratio) <= 1);
            Q_EMIT bar.item->buttonChanged();
            QCOMPARE(bar.faces.size(), 4);

            QSignalSpy asked(controller.get(), &BrevokMenubarController::togglePanelRequested);
            for (int click = 0; click < 3; ++click) {
                Q_EMIT bar.item->clicked({1400, 12});
            }
            QCOMPARE(asked.size(), 2); // the second was that of a double click
            controller.reset();
            QVERIFY(bar.item == nullptr);
        }
    }

    void viewDrawsWhenSomethingChanges()
    {
        FakeStatusBar bar;
        const auto item = bar.makeItem(24);
        BrevokStatusItemView view(*item, 24);
        QCOMPARE(item->view(), &view);
        QCOMPARE(view.geometry(), QRect(0, 0, 24, 24));
        QCOMPARE(view.updateTimer().intervalAsDuration(), std::chrono::seconds(30));
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const auto draws = [&](const std::function<void()> &change) {
            QCoreApplication::processEvents();
            const qsizetype before = bar.lengths.size(); // it sets the item's length at each
            change();
            QCoreApplication::processEvents();
            return bar.lengths.size() - before;
        };
        QCOMPARE(draws([&] { view.setUpdates(3); }), 1);
        QCOMPARE(draws([&] { view.setUpdates(3), view.setHighlighted(false); }), 0);
        // The alternate image only counts while highlighted.
        QCOMPARE(draws([&] { view.setAlternateImage(TemplateImage(u"Info"_s)); }), 0);
        QCOMPARE(draws([&] { view.setHighlighted(true); }), 1);
        QCOMPARE(draws([&] { view.setAlternateImage(TemplateImage(u"Remove"_s)); }), 1);

        ClickTarget target;
        view.setTarget(&target);
        QTest::mouseClick(&view, Qt::RightButton);
        QTest::mouseClick(&view, Qt::LeftButton);
        view.setAction("toggleFrom");
        QTest::mouseClick(&view, Qt::LeftButton);
        QCOMPARE(target.calls, (QList<QWidget *>{nullptr, &view}));
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
