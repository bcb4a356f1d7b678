// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Whether what is drawn can be seen: measured on the pixels of every window, in light and dark.

#include "EveryWindow.h"
#include "ui/desktop/linux/DesktopColors.h"
#include "ui/desktop/OutlineStyle.h"
#include "ui/widgets/PanelStyle.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QStyleOptionButton>
#include <QStyleOptionViewItem>
#include <QTabBar>
#include <QTableView>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr double leastOfControls = 3;
constexpr double leastOfTexts = 4.5;
constexpr int leastPixels = 3; // of a colour that is to be seen

using Histogram = QHash<QRgb, int>;

Histogram histogram(const QImage &image, const QRegion &region)
{
    Histogram counts;
    for (const QRect &rect : region &image.rect()) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            for (int x = rect.left(); x <= rect.right(); ++x) {
                ++counts[image.pixel(x, y)];
            }
        }
    }
    return counts;
}

QRgb commonest(const Histogram &counts)
{
    const auto most = std::max_element(counts.cbegin(), counts.cend());
    return most != counts.cend() ? most.key() : QRgb();
}

/// The best contrast with @p ground of all colours that @p least pixels or more have.
double bestContrast(const Histogram &counts, QRgb ground, int least)
{
    double best = 1;
    for (auto colour = counts.cbegin(); colour != counts.cend(); ++colour) {
        if (colour.value() >= least) {
            best = std::max(best, PanelStyle::contrast(QColor(colour.key()), QColor(ground)));
        }
    }
    return best;
}

QRegion ring(const QRect &outer, int width)
{
    return QRegion(outer) - outer.adjusted(width, width, -width, -width);
}

/// A window's picture, and what is wrong with it.
class Look {
public:
    explicit Look(const QWidget &window)
        : m_window(window)
        , m_image(const_cast<QWidget &>(window).grab().toImage().convertToFormat(QImage::Format_RGB32))
    {
    }

    [[nodiscard]] QRect placeOf(const QWidget &widget, const QRect &part) const
    {
        return part.translated(widget.mapTo(&m_window, QPoint()));
    }

    /// A frame or a picture against what surrounds it; of a frame a part of its sides is enough.
    void checkControl(const QString &name, const QRect &place, bool isFrame)
    {
        const QRgb around = commonest(histogram(m_image, ring(place.adjusted(-3, -3, 3, 3), 3)));
        const QRegion looked = isFrame ? ring(place, 3) : QRegion(place);
        const int least = isFrame ? (place.width() + place.height()) / 2 : leastPixels;
        complain(name, bestContrast(histogram(m_image, looked), around, least), leastOfControls);
    }

    void checkText(const QString &name, const QRect &place)
    {
        const Histogram counts = histogram(m_image, place);
        complain(name, bestContrast(counts, commonest(counts), leastPixels), leastOfTexts);
    }

    QStringList faults;

private:
    void complain(const QString &name, double found, double least)
    {
        if (found < least) {
            faults.append(u"%1:1 %2"_s.arg(found, 0, 'f', 2).arg(name));
        }
    }

    const QWidget &m_window;
    QImage m_image;
};

QRect indicatorOf(const QAbstractButton &box)
{
    QStyleOptionButton option;
    option.initFrom(&box);
    return box.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box);
}

void checkTable(Look &look, const QTableView &table)
{
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        for (int column = 0; column < table.model()->columnCount(); ++column) {
            const QModelIndex index = table.model()->index(row, column);
            const QRect cell = look.placeOf(*table.viewport(), table.visualRect(index));
            const QString name = u"cell %1/%2 of the table"_s.arg(row).arg(column);
            if (index.data(Qt::CheckStateRole).isValid()) {
                QStyleOptionViewItem option;
                option.initFrom(&table);
                option.rect = cell;
                option.features = QStyleOptionViewItem::HasCheckIndicator;
                look.checkControl(name,
                    table.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &table),
                    true);
            } else if (!index.data().toString().isEmpty()) {
                look.checkText(name, cell.adjusted(4, 4, -4, -4) & look.placeOf(table, table.rect()));
            }
        }
    }
}

// What cannot be pressed may be faint, but for titles that tell a state.
bool isToBeRead(const QWidget &widget)
{
    return widget.isEnabled() || qobject_cast<const PanelButton *>(&widget) != nullptr;
}

void checkWidget(Look &look, const QWidget &widget)
{
    const QRect place = look.placeOf(widget, widget.rect());
    const auto *box = qobject_cast<const QCheckBox *>(&widget);
    const auto *label = qobject_cast<const QLabel *>(&widget);
    const bool isField = isClickable(&widget) && qobject_cast<const QAbstractButton *>(&widget) == nullptr;
    const bool isText = label != nullptr
        ? !label->text().isEmpty()
        : qobject_cast<const ElidedLabel *>(&widget) != nullptr && !widget.accessibleName().isEmpty();
    const QString text = widget.property("text").toString();
    if (isText) {
        look.checkText(described(widget), place);
    } else if (box != nullptr && widget.isEnabled()) {
        look.checkControl(described(widget), look.placeOf(widget, indicatorOf(*box)), true);
    } else if (isClickable(&widget) && widget.isEnabled()) {
        look.checkControl(described(widget), place, isField);
    }
    if (qobject_cast<const QAbstractButton *>(&widget) != nullptr && !text.isEmpty() && isToBeRead(widget)) {
        look.checkText(described(widget), place.adjusted(4, 4, -4, -4));
    }
    if (const auto *table = qobject_cast<const QTableView *>(&widget)) {
        checkTable(look, *table);
    } else if (const auto *tabs = qobject_cast<const QTabBar *>(&widget)) {
        for (int i = 0; i < tabs->count(); ++i) {
            look.checkText(tabs->tabText(i), look.placeOf(widget, tabs->tabRect(i)).adjusted(4, 4, -4, -4));
        }
    }
}

} // namespace

class ContrastTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { useOutlineStyle(); }
    void cleanup() { QApplication::setPalette(QPalette()); }

    void everythingCanBeSeen_data()
    {
        QTest::addColumn<qsizetype>("index");
        QTest::addColumn<bool>("dark");
        for (qsizetype i = 0; i < everyWindow().size(); ++i) {
            for (const bool dark : {false, true}) {
                QTest::addRow("%s, %s", everyWindow().at(i).name, dark ? "dark" : "light") << i << dark;
            }
        }
    }

    void everythingCanBeSeen()
    {
        QFETCH(bool, dark);
        if (dark) {
            QApplication::setPalette(darkened(QApplication::palette()));
        }
        const Scene scene = shownRow();
        Look look(*scene.window);
        const QList<QWidget *> widgets = widgetsInSight(*scene.window);
        for (const QWidget *widget : widgets) {
            checkWidget(look, *widget);
        }
        QVERIFY2(look.faults.isEmpty(), qPrintable(look.faults.join(u'\n')));
    }

    // Which is in no window above.
    void menusHaveAnOutline()
    {
        for (const QPalette &palette : {QApplication::palette(), darkened(QApplication::palette())}) {
            QApplication::setPalette(palette);
            QMenu menu;
            menu.addAction(u"x"_s);
            const QImage shown = menu.grab().toImage();
            const QRgb ground = menu.palette().color(QPalette::Window).rgb();
            const Histogram edge = histogram(shown, ring(shown.rect(), 1));
            QVERIFY(bestContrast(edge, ground, shown.height()) >= leastOfControls);
        }
    }

    // Behind another text of its label the pixels of these are not told apart.
    void coloursOfTexts()
    {
        const QPalette usual = QApplication::palette();
        for (const QPalette &palette : {usual, darkened(usual)}) {
            for (const QColor &ground :
                {palette.color(QPalette::Window), PanelStyle::priorityFill(palette)}) {
                for (const QColor &text :
                    {PanelStyle::secondaryText(palette), PanelStyle::failureText(palette)}) {
                    QVERIFY2(PanelStyle::contrast(text, ground) >= leastOfTexts,
                        qPrintable(text.name() + u" on "_s + ground.name()));
                }
            }
        }
    }

    void anotherStyleIsLeftAlone()
    {
        QApplication::setStyle(u"windows"_s);
        const QStyle *style = QApplication::style();
        useOutlineStyle();
        QCOMPARE(QApplication::style(), style);
    }
};

QTEST_MAIN(ContrastTest)
#include "test_contrast.moc"
