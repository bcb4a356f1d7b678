// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

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

/// What can be used is seen: its outline, as it is drawn, against what it stands on.
class OutlinesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { useOutlineStyle(); }
    void cleanup() { QApplication::setPalette(QPalette()); }

    void outlinesAreSeen_data();
    void outlinesAreSeen();
    void anotherStyleIsLeftAlone();
};

namespace {

struct Named {
    const char *name;
    std::function<QWidget *()> make;
};

const QList<Named> &controls()
{
    static const QList<Named> all{
        {"check box",
            [] {
                return new QCheckBox;
            }},
        {"radio button",
            [] {
                return new QRadioButton;
            }},
        {"field",
            [] {
                return new QLineEdit;
            }},
        {"pop-up",
            [] {
                return new QComboBox;
            }},
        {"button",
            [] {
                return new QPushButton;
            }},
        {"table",
            [] {
                return new QTableView;
            }},
        {"menu",
            [] {
                auto *menu = new QMenu;
                menu->addAction(u"x"_s);
                return menu;
            }},
    };
    return all;
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

void OutlinesTest::outlinesAreSeen_data()
{
    QTest::addColumn<int>("control");
    QTest::addColumn<bool>("dark");
    for (int number = 0; number < controls().size(); ++number) {
        for (const bool dark : {false, true}) {
            QTest::addRow("%s, %s", controls().at(number).name, dark ? "dark" : "light") << number << dark;
        }
    }
}

void OutlinesTest::outlinesAreSeen()
{
    QFETCH(int, control);
    QFETCH(bool, dark);
    if (dark) {
        QApplication::setPalette(darkened(QApplication::palette()));
    }
    const std::unique_ptr<QWidget> widget(controls().at(control).make());
    widget->resize(widget->sizeHint().expandedTo({14, 14}));
    QImage image(widget->size(), QImage::Format_RGB32);
    const QColor window = QApplication::palette().color(QPalette::Window);
    image.fill(window);
    widget->render(&image);
    constexpr int depth = 5; // what is farther in is no outline
    const double seen = bestContrast(image, depth, window);
    QVERIFY2(seen >= 3, qPrintable(QString::number(seen)));
    // With the focus too.
    widget->show();
    widget->activateWindow();
    widget->setFocus();
    QTRY_VERIFY(widget->hasFocus());
    widget->render(&image);
    const double seenFocused = bestContrast(image, depth, window);
    QVERIFY2(seenFocused >= 3, qPrintable(QString::number(seenFocused)));
}

void OutlinesTest::anotherStyleIsLeftAlone()
{
    QApplication::setStyle(u"windows"_s);
    QStyle *style = QApplication::style();
    useOutlineStyle();
    QCOMPARE(QApplication::style(), style);
}

QTEST_MAIN(OutlinesTest)
#include "test_outlines.moc"
