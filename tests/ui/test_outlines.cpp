// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/InRow.h"
#include "ui/desktop/linux/DesktopColors.h"
#include "ui/desktop/OutlineStyle.h"
#include "ui/widgets/PanelStyle.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::InRow;

namespace {

template <class Widget> QWidget *made()
{
    auto *widget = new Widget;
    if constexpr (std::is_same_v<Widget, QMenu>) {
        widget->addAction(u"x"_s);
    }
    return widget;
}

// The best contrast among the pixels on the way in from the left edge, in the middle of the height.
double bestContrast(const QImage &image, int depth, const QColor &ground)
{
    double best = 1;
    for (int x = 0; x < depth; ++x) {
        best = std::max(best, PanelStyle::contrast(image.pixelColor(x, image.height() / 2), ground));
    }
    return best;
}

} // namespace

/// What can be used is seen: its outline, as it is drawn, against what it stands on.
class OutlinesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { useOutlineStyle(); }
    void cleanup() { QApplication::setPalette(QPalette()); }

    void outlinesAreSeen_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void outlinesAreSeen()
    {
        QFETCH(bool, dark);
        if (dark) {
            QApplication::setPalette(darkened(QApplication::palette()));
        }
        const QList<std::pair<const char *, QWidget *(*)()>> controls{{"check box", made<QCheckBox>},
            {"radio button", made<QRadioButton>}, {"field", made<QLineEdit>}, {"pop-up", made<QComboBox>},
            {"button", made<QPushButton>}, {"table", made<QTableView>}, {"menu", made<QMenu>}};
        for (const auto &[name, make] : controls) {
            const InRow in(name);
            const std::unique_ptr<QWidget> widget(make());
            widget->resize(widget->sizeHint().expandedTo({14, 14}));
            QImage image(widget->size(), QImage::Format_RGB32);
            const QColor window = QApplication::palette().color(QPalette::Window);
            image.fill(window);
            widget->render(&image);
            constexpr int depth = 5; // what is farther in is no outline
            QVERIFY(bestContrast(image, depth, window) >= 3);
            // With the focus too.
            widget->show();
            widget->activateWindow();
            widget->setFocus();
            QTRY_VERIFY(widget->hasFocus());
            widget->render(&image);
            QVERIFY(bestContrast(image, depth, window) >= 3);
        }
    }

    void anotherStyleIsLeftAlone()
    {
        QApplication::setStyle(u"windows"_s);
        QStyle *style = QApplication::style();
        useOutlineStyle();
        QCOMPARE(QApplication::style(), style);
    }
};

QTEST_MAIN(OutlinesTest)
#include "test_outlines.moc"
