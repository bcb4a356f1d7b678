// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PanelRig.h"
#include "WindowTest.h"

#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelLabels.h"
#include "ui/widgets/Spinner.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class TestPanelRows final : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void installsAndRemovesFromARow()
    {
        OpenPanel rig(3);
        auto *action = rig.control<PanelButton>(0, "actionButton");
        action->setFocus();
        press(Qt::Key_Return);
        QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
        QTRY_VERIFY(rig.control<Spinner>(0, "progressIndicator")->isAnimating());
        rig.rig.service.downloads.first().progress(1'000'000, 4'000'000);
        QCOMPARE(rig.control<ElidedLabel>(0, "note")->text(), u"Downloading 1.0 of 4.0 MB"_s);
        QCOMPARE(rig.control<ThinProgressBar>(0, "progressBar")->permille(), 250);
        QVERIFY(rig.control<ThinProgressBar>(0, "progressBar")->isVisible());
        rig.rig.answerDownload(InstallRig::archiveOf(u"p00000"_s, 140));
        QTRY_COMPARE(action->text(), u"Up To Date"_s);
        QTRY_COMPARE(QApplication::focusWidget(), rig.row(0)); // the keyboard stayed at its row
        auto *remove = rig.control<SymbolButton>(0, "removeButton");
        QTest::mouseClick(remove, Qt::LeftButton); // which means it
        QTRY_COMPARE(action->text(), u"Install"_s);
        QTRY_COMPARE(QApplication::focusWidget(), action); // and at its action when there is one again

        // Whoever comes by keyboard is asked.
        rig.rig.presenter.waits = true;
        const auto &shown = rig.rig.presenter.shown;
        QVERIFY(shown.isEmpty());
        rig.control<QWidget>(1, "removeButton")->setFocus();
        press(Qt::Key_Return);
        QTRY_COMPARE(shown.size(), 1);
        QCOMPARE(shown.first().messageText, u"Remove Package p00001?"_s);
        QCOMPARE(shown.first().buttons.at(0).title, u"Remove"_s);
        QCOMPARE(shown.first().buttons.at(1).key, AlertKey::ReturnAndEscape);
        rig.rig.presenter.press(alertSecondButton);
        QVERIFY(!rig.rig.flow.isBusy());

        rig.control<SymbolButton>(2, "infoButton")->click();
        QCOMPARE(rig.urls.opened, QList<QUrl>{QUrl(u"https://x/p00002"_s)});
    }

    void arrowsMoveBetweenMainControls()
    {
        OpenPanel rig(4);
        QTest::keyClick(rig.panel->window(), Qt::Key_Down);
        const QList<std::pair<Qt::Key, QString>> walk{
            {Qt::Key_Home, u"Install Package p00000"_s}, // where it is already
            {Qt::Key_Down, u"Package p00001 2.0, up to date"_s},
            {Qt::Key_Left, u"Package p00001 2.0, up to date"_s},
            {Qt::Key_Right, u"About Package p00001"_s},
            {Qt::Key_Right, u"Remove Package p00001"_s},
            {Qt::Key_Right, u"Remove Package p00001"_s},
            {Qt::Key_Down, u"Install Package p00002"_s},
            {Qt::Key_End, u"Package p00003 2.0, up to date"_s},
            {Qt::Key_Down, u"Package p00003 2.0, up to date"_s},
            {Qt::Key_Tab, u"About Package p00003"_s},
        };
        for (const auto &[key, name] : walk) {
            press(key);
            QCOMPARE(QApplication::focusWidget()->accessibleName(), name);
        }
        rig.panel->window()->setLayoutDirection(Qt::RightToLeft);
        press(Qt::Key_Left);
        QCOMPARE(QApplication::focusWidget()->accessibleName(), u"Remove Package p00003"_s);
    }

    void saysWhyAnInstallFailed()
    {
        OpenPanel rig(3);
        const auto *note = rig.control<ElidedLabel>(0, "note");
        const auto fail = [&](const QByteArray &body) {
            rig.control<PanelButton>(0, "actionButton")->click();
            QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
            QTRY_VERIFY(!note->text().contains(u"archive"_s)); // of the attempt before
            rig.rig.answerDownload(body);
        };
        fail(InstallRig::damagedArchiveOf(u"p00000"_s, 140));
        QTRY_COMPARE(note->text(), u"InDesign CC 2019: the archive is damaged"_s);
        QCOMPARE(note->accessibleDescription(), u"p00000, InDesign CC 2019: the archive is damaged"_s);
        QVERIFY(note->toolTip().contains(note->accessibleDescription()));
        QVERIFY(note->geometry().bottom() < note->parentWidget()->height());
        fail("too short");
        QTRY_COMPARE(note->text(), u"wrong length"_s);
        QTRY_VERIFY(!rig.rig.packages.updating());
        QVERIFY(note->isVisible()); // statuses that are known again are no reason to forget
        Q_EMIT rig.rig.packages.checkFinished(true);
        QTRY_VERIFY(note->isHidden());
    }

    void signedOutNothingInstalls()
    {
        PanelRig rig(false);
        fillCatalogue(rig, 6, u"1.0"_s);
        rig.rig.packages.notifyPackageStatuses();
        rig.panel->showPackagesTab();
        rig.open();
        QCOMPARE(rig.panel->packagesTab()->notice(), NoticeKind::SignedOut);
        for (const qsizetype row : {0, 1}) {
            QVERIFY(rig.control<QWidget>(row, "actionButton")->isVisible());
            QVERIFY(!rig.control<QWidget>(row, "actionButton")->isEnabled());
        }
        QVERIFY(rig.control<QWidget>(1, "removeButton")->isEnabled());
        QVERIFY(rig.child<QWidget>("updateAllButton")->isHidden());
    }

    void updatesAllThatWait()
    {
        OpenPanel rig(6, u"1.0"_s);
        auto *button = rig.child<PanelButton>("updateAllButton");
        const auto *subtitle = rig.child<ElidedLabel>("subtitleLabel");
        QTRY_VERIFY(button->isVisible() && button->text() == u"Update All"_s);
        button->click();
        QCOMPARE(button->text(), u"Stop"_s);
        QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
        rig.rig.answerDownload(InstallRig::archiveOf(u"p00001"_s, 140));
        QTRY_COMPARE(subtitle->text(), u"Updating 2 of 3…"_s);
        QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
        button->click();
        QVERIFY(!button->isEnabled());
        QCOMPARE(subtitle->text(), u"Stopping after the current Plug-In…"_s);
        rig.rig.answerDownload("too short");
        QTRY_COMPARE(rig.control<ElidedLabel>(3, "note")->text(), u"wrong length"_s);
        QTRY_VERIFY(button->isEnabled() && button->text() == u"Update All"_s);
        QTRY_COMPARE(subtitle->text(), u"2 updates · ada@example.com"_s);
        rig.updates.start(); // from elsewhere
        QCOMPARE(button->text(), u"Stop"_s);
    }

    void findsByTyping()
    {
        PanelRig rig(true);
        fillCatalogue(rig, 19);
        rig.rig.packages.updateWithArray({PanelRig::package(u"Éclair für Über-Größen"_s, u"e"_s)});
        rig.open();
        QVERIFY(rig.child<QWidget>("searchBox")->isHidden()); // twenty are few
        QTest::keyClicks(rig.panel->window(), u"ec"_s);
        QCOMPARE(QApplication::focusWidget(), rig.row(19)); // sorted by code
        QTest::keyClicks(QApplication::focusWidget(), u"q"_s); // nothing is called so
        QCOMPARE(QApplication::focusWidget(), rig.row(19));

        rig.rig.packages.updateWithArray({PanelRig::package(u"Zebra"_s, u"z"_s)});
        auto *field = rig.child<QLineEdit>("searchField");
        const PackageList &list = rig.panel->packagesTab()->list();
        QTRY_VERIFY(field->isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(QApplication::focusWidget(), field);
        rig.panel->window()->setFocus();
        QTest::keyClicks(rig.panel->window(), u"groSS"_s);
        QCOMPARE(QApplication::focusWidget(), field);
        QTest::keyClicks(field, u" ECL"_s);
        QCOMPARE(list.rows().size(), 1);
        QCOMPARE(list.rows().first().prefix(), u"e"_s);
        press(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), rig.row(0));
        press(Qt::Key_Up);
        QCOMPARE(QApplication::focusWidget(), field);
        QTest::keyClicks(field, u"x"_s);
        QVERIFY(rig.child<QWidget>("nothingFound")->isVisible());
        QCOMPARE(rig.panel->packagesTab()->notice(), NoticeKind::None);
    }

    void columnsStayInPlace()
    {
        OpenPanel rig(3);
        const auto columns = [&rig] {
            QList<int> at;
            for (const char *name : {"icon", "name", "actionButton", "infoButton", "removeButton"}) {
                at.append(rig.control<QWidget>(1, name)->mapTo(rig.panel->window(), QPoint()).x());
            }
            return at;
        };
        const QList<int> before = columns();
        const auto *menu = rig.child<QWidget>("popUpButton");
        QCOMPARE(before.last(), menu->mapTo(rig.panel->window(), QPoint()).x());
        QCOMPARE(rig.control<QWidget>(0, "actionButton")->geometry(),
            rig.control<QWidget>(1, "actionButton")->geometry());
        QJsonArray more;
        for (int i = 0; i < 30; ++i) {
            more.append(PanelRig::package(u"Z%1"_s.arg(i), u"z%1"_s.arg(i)));
        }
        rig.rig.packages.updateWithArray(more);
        QTRY_COMPARE(rig.panel->packagesTab()->list().rows().size(), 33); // there is a scroll bar
        QCOMPARE(columns(), before);
    }

    void namesGoBeforeVersions()
    {
        const QString longName = u"Package with a name of some length"_s;
        ElidedLabel label;
        QFont small = label.font();
        small.setPixelSize(label.fontMetrics().height() / 2);
        label.setFonts(label.font(), small);
        const int oneLine = label.fontMetrics().height();
        label.resize(label.fontMetrics().horizontalAdvance(longName) + 2, 60);
        label.setText(longName, u"12.0"_s);
        QVERIFY(label.toolTip().contains(u"12.0"_s)); // the version is cut, and the tool tip has the rest
        QCOMPARE(label.sizeHint().height(), oneLine);
        label.setMostLines(2);
        QVERIFY(label.toolTip().isEmpty()); // all of it is seen
        QVERIFY(label.sizeHint().height() > oneLine);
        QVERIFY(label.sizeHint().height() < 2 * oneLine); // the version is small
        label.resize(label.width() * 2 / 3, 60);
        label.setText(longName, u"12.00"_s);
        QVERIFY(label.toolTip().isEmpty()); // as is a name of two lines
        QCOMPARE(label.sizeHint().height(), 2 * oneLine);
    }

    // Views are made for what is near and used again for other rows, which nobody is to notice.
    void rowsAreMadeWhenTheyAreNear()
    {
        OpenPanel rig(2000, u"1.0"_s);
        const PackageList &list = rig.panel->packagesTab()->list();
        auto *bar = rig.child<QScrollArea>("brevokView")->verticalScrollBar();
        // What a screen reader is told of the rows.
        const auto told = [&rig] {
            QStringList names;
            const QAccessibleInterface *view =
                QAccessible::queryAccessibleInterface(rig.child<QWidget>("packagesView"));
            for (int i = 0; i < view->childCount(); ++i) {
                const QAccessibleInterface *row = view->child(i);
                if (!row->state().invisible) {
                    names.append(row->text(QAccessible::Name));
                }
            }
            return names;
        };
        QCOMPARE(told().first(2),
            (QStringList{u"Package p00000 2.0, not installed"_s, u"Package p00001 2.0, update available"_s}));
        rig.control<QWidget>(3, "actionButton")->setFocus();
        for (const int value : {bar->maximum(), 0, bar->maximum() / 2, 700, 0}) {
            bar->setValue(value);
            QStringList sorted = told();
            std::sort(sorted.begin(), sorted.end());
            QCOMPARE(told(), sorted);
        }
        press(Qt::Key_End);
        press(Qt::Key_Up);
        QVERIFY(rig.row(1998)->isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(list.controllerAt(1998)->row().prefix(), u"p01998"_s);
        QVERIFY(rig.child<QWidget>("packagesView")->findChildren<PackageCellView *>().size() < 50);
        press(Qt::Key_Home);
        for (int i = 0; i < 60; ++i) {
            press(Qt::Key_Tab); // makes the rows that it comes to
            QVERIFY(rig.child<QWidget>("packagesView")->isAncestorOf(QApplication::focusWidget()));
        }
        QVERIFY(bar->value() > 0);

        rig.rig.packages.updateWithArray({PanelRig::package(u"AAA"_s, u"new"_s)});
        QTRY_COMPARE(list.rows().size(), 2001);
        QCOMPARE(bar->value(), 0); // another height: back to the top
    }
};

QTEST_MAIN(TestPanelRows)
#include "test_panel_rows.moc"
