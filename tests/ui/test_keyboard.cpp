// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Every window by keyboard alone: the focus is never lost, and everything can be reached and left.

#include "EveryWindow.h"

#include <QApplication>
#include <QSet>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr int mostSteps = 200;

/// Keys pressed in a window, and where they led.
class Steps {
public:
    explicit Steps(const QWidget &window)
        : m_window(window)
    {
    }

    void press(Qt::Key key)
    {
        const QWidget *before = QApplication::focusWidget();
        testing::press(key);
        const QWidget *now = QApplication::focusWidget();
        visited.insert(now);
        if (now == nullptr || now->window() != &m_window || !now->isVisible() || !now->isEnabled()) {
            faults.append(u"%1 at %2 loses the focus"_s.arg(
                QKeySequence(key).toString(), before != nullptr ? described(*before) : u"nothing"_s));
        }
    }

    /// Presses @p key until the focus is where it began; the widgets on the way.
    QList<const QWidget *> round(Qt::Key key)
    {
        QList<const QWidget *> way;
        press(key);
        const QWidget *first = QApplication::focusWidget();
        do {
            way.append(QApplication::focusWidget());
            press(key);
        } while (QApplication::focusWidget() != first && way.size() < mostSteps && faults.isEmpty());
        return way;
    }

    QSet<const QWidget *> visited;
    QStringList faults;

private:
    const QWidget &m_window;
};

} // namespace

class KeyboardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everythingIsReached_data() { addEveryWindow(); }

    void everythingIsReached()
    {
        const Scene scene = shownRow();
        QList<QWidget *> clickable = widgetsInSight(*scene.window);
        clickable.removeIf(
            [](const QWidget *widget) { return !isClickable(widget) || !widget->isEnabled(); });
        if (QLatin1StringView(QTest::currentDataTag()) == "about"_L1) {
            QVERIFY(clickable.isEmpty()); // there is nothing but text
            return;
        }
        QVERIFY(!clickable.isEmpty());
        Steps steps(*scene.window);
        const QList<const QWidget *> forwards = steps.round(Qt::Key_Tab);
        QVERIFY2(steps.faults.isEmpty(), qPrintable(steps.faults.join(u'\n')));
        QList<const QWidget *> backwards = steps.round(Qt::Key_Backtab);
        QVERIFY2(steps.faults.isEmpty(), qPrintable(steps.faults.join(u'\n')));
        QCOMPARE(QSet(backwards.cbegin(), backwards.cend()), QSet(forwards.cbegin(), forwards.cend()));
        // The way back leads past the same in the other order.
        std::reverse(backwards.begin(), backwards.end());
        const qsizetype start = backwards.indexOf(forwards.first());
        std::rotate(backwards.begin(), backwards.begin() + start, backwards.end());
        QCOMPARE(backwards, forwards);
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up,
                 Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp}) {
            steps.press(key);
        }
        QVERIFY2(steps.faults.isEmpty(), qPrintable(steps.faults.join(u'\n')));
        for (const QWidget *widget : std::as_const(clickable)) {
            QVERIFY2(steps.visited.contains(widget), qPrintable(described(*widget)));
        }
    }

    void escapeCloses_data() { addEveryWindow(); }

    // An alert without a button to cancel with would have to stay; those here have one.
    void escapeCloses()
    {
        const Scene scene = shownRow();
        const QPointer<QWidget> window = scene.window;
        if (const auto *search = window->findChild<QLineEdit *>(u"searchField"_s);
            search != nullptr && !search->text().isEmpty()) {
            testing::press(Qt::Key_Escape); // ends the search
            QVERIFY(window->isVisible() && search->text().isEmpty());
        }
        testing::press(Qt::Key_Escape);
        QTRY_VERIFY(window.isNull() || !window->isVisible());
    }
};

QTEST_MAIN(KeyboardTest)
#include "test_keyboard.moc"
