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
        auto *install = rig.control<PanelButton>(0, "actionButton");
        QCOMPARE(install->accessibleName(), u"Install Package p00000"_s);
        QVERIFY(!rig.control<PanelButton>(1, "actionButton")->isEnabled());
        QCOMPARE(install->x(), rig.control<PanelButton>(1, "actionButton")->x());
        QCOMPARE(install->width(), rig.control<PanelButton>(1, "actionButton")->width());

        install->setFocus();
        press(Qt::Key_Return);
        QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
        QTRY_VERIFY(rig.control<Spinner>(0, "progressIndicator")->isAnimating());
        QVERIFY(install->isHidden() && rig.control<QWidget>(0, "removeButton")->isHidden());
        QVERIFY(rig.row(0)->accessibleName().contains(u"Working…"_s));
        rig.rig.service.downloads.first().progress(1'000'000, 4'000'000);
        QCOMPARE(rig.control<ElidedLabel>(0, "note")->text(), u"Downloading 1.0 of 4.0 MB"_s);
        QCOMPARE(rig.control<ThinProgressBar>(0, "progressBar")->permille(), 250);
        QVERIFY(rig.control<ThinProgressBar>(0, "progressBar")->isVisible());

        rig.rig.answerDownload(InstallRig::archiveOf(u"p00000"_s, 140));
        QTRY_COMPARE(install->text(), u"Up To Date"_s);
        QVERIFY(install->isVisible() && !install->isEnabled());
        auto *remove = rig.control<SymbolButton>(0, "removeButton");
        QCOMPARE(remove->accessibleName(), u"Remove Package p00000"_s);
        QTRY_COMPARE(QApplication::focusWidget(), rig.row(0)); // the keyboard stayed at its row
        QTest::mouseClick(remove, Qt::LeftButton); // which means it
        QTRY_COMPARE(install->text(), u"Install"_s);
        QVERIFY(rig.rig.presenter.shown.isEmpty());
        QTRY_VERIFY(install->isVisible() && install->isEnabled());

        rig.control<SymbolButton>(2, "infoButton")->click();
        QCOMPARE(rig.urls.opened, QList<QUrl>{QUrl(u"https://x/p00002"_s)});
    }

    void asksBeforeTheKeyboardRemoves()
    {
        OpenPanel rig(3);
        rig.rig.presenter.waits = true;
        rig.row(1)->setFocus();
        press(Qt::Key_Right);
        press(Qt::Key_Right);
        QCOMPARE(QApplication::focusWidget(), rig.control<QWidget>(1, "removeButton"));
        const auto &shown = rig.rig.presenter.shown;
        press(Qt::Key_Return);
        QTRY_COMPARE(shown.size(), 1);
        QCOMPARE(shown.first().messageText, u"Remove Package p00001?"_s);
        QCOMPARE(shown.first().buttons.at(0).title, u"Remove"_s);
        QCOMPARE(shown.first().buttons.at(1).key, AlertKey::ReturnAndEscape);
        rig.rig.presenter.press(alertSecondButton);
        QVERIFY(!rig.rig.flow.isBusy());
        // The same question is not asked again at once.
        QTRY_VERIFY((press(Qt::Key_Space), shown.size() == 2));
        rig.rig.presenter.press(alertFirstButton);
        QVERIFY(rig.rig.flow.isBusy());
        QTRY_COMPARE(rig.control<PanelButton>(1, "actionButton")->text(), u"Install"_s);
        QTRY_COMPARE(QApplication::focusWidget(), rig.control<QWidget>(1, "actionButton"));
    }

    void arrowsMoveBetweenMainControls()
    {
        OpenPanel rig(4);
        const auto focused = [] {
            const QWidget *widget = QApplication::focusWidget();
            return widget->accessibleName();
        };
        QTest::keyClick(rig.panel->window(), Qt::Key_Down);
        QCOMPARE(focused(), u"Install Package p00000"_s);
        const QList<std::pair<Qt::Key, QString>> walk{
            {Qt::Key_Down, u"Package p00001 2.0, up to date"_s},
            {Qt::Key_Left, u"Package p00001 2.0, up to date"_s},
            {Qt::Key_Right, u"About Package p00001"_s},
            {Qt::Key_Right, u"Remove Package p00001"_s},
            {Qt::Key_Right, u"Remove Package p00001"_s},
            {Qt::Key_Down, u"Install Package p00002"_s},
            {Qt::Key_Right, u"About Package p00002"_s},
            {Qt::Key_Down, u"Package p00003 2.0, up to date"_s},
            {Qt::Key_Down, u"Package p00003 2.0, up to date"_s},
            {Qt::Key_Tab, u"About Package p00003"_s},
            {Qt::Key_Home, u"Install Package p00000"_s},
            {Qt::Key_Up, u"Install Package p00000"_s},
        };
        for (const auto &[key, name] : walk) {
            press(key);
            QCOMPARE(focused(), name);
        }
        rig.panel->window()->setLayoutDirection(Qt::RightToLeft);
        press(Qt::Key_Left);
        QCOMPARE(focused(), u"About Package p00000"_s);
    }

    // What a screen reader is told: the rows in their order, whatever happened to them, in words alone.
    void tellsTheRowsInOrder()
    {
        OpenPanel rig(40, u"1.0"_s);
        auto *bar = rig.child<QScrollArea>("brevokView")->verticalScrollBar();
        const auto told = [&rig] {
            QStringList names;
            const QAccessibleInterface *list =
                QAccessible::queryAccessibleInterface(rig.child<QWidget>("packagesView"));
            for (int i = 0; i < list->childCount(); ++i) {
                const QAccessibleInterface *row = list->child(i);
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
        rig.rig.packages.updateWithArray(
            {PanelRig::package(u"<b>A</b>"_s + QString(60, u'x'), u"new"_s, QString(100, u'9'))});
        QTRY_VERIFY(told().first().startsWith(u"<b>A</b>xxx"_s));
        QVERIFY(told().first().endsWith(u", Not available for your applications"_s));
        const QList<QWidget *> views = rig.row(0)->findChildren<QWidget *>();
        for (QWidget *view : views) {
            const QString description =
                QAccessible::queryAccessibleInterface(view)->text(QAccessible::Description);
            QVERIFY2(
                !description.contains(u'<') && !description.contains(QChar(0x200B)), qPrintable(description));
        }
    }

    void saysWhyAnInstallFailed()
    {
        OpenPanel rig(3);
        const auto *note = rig.control<ElidedLabel>(0, "note");
        const auto fail = [&](const QByteArray &body) {
            rig.control<PanelButton>(0, "actionButton")->click();
            QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
            QTRY_VERIFY(rig.control<Spinner>(0, "progressIndicator")->isAnimating());
            QVERIFY(!note->text().contains(u"archive"_s)); // of the attempt before
            rig.rig.answerDownload(body);
            QTRY_VERIFY(rig.control<PanelButton>(0, "actionButton")->isVisible());
        };
        fail(InstallRig::damagedArchiveOf(u"p00000"_s, 140));
        QTRY_VERIFY(note->isVisible());
        QCOMPARE(note->text(), u"InDesign CC 2019: the archive is damaged"_s);
        QVERIFY(note->toolTip().contains(u"p00000, InDesign CC 2019: the archive is damaged"_s));
        QCOMPARE(note->accessibleDescription(), u"p00000, InDesign CC 2019: the archive is damaged"_s);
        QCOMPARE(rig.control<PanelButton>(0, "actionButton")->text(), u"Install"_s);
        QCOMPARE(rig.row(0)->accessibleName(),
            u"Package p00000 2.0, not installed, InDesign CC 2019: the archive is damaged"_s);
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
        QTRY_COMPARE(button->text(), u"Update All"_s);
        QTRY_VERIFY(button->isVisible());
        button->click();
        QCOMPARE(button->text(), u"Stop"_s);
        QCOMPARE(subtitle->text(), u"Updating 1 of 3…"_s);
        auto &downloads = rig.rig.service.downloads;
        QTRY_COMPARE(downloads.size(), 1); // one after the other
        QTRY_VERIFY(rig.control<Spinner>(1, "progressIndicator")->isAnimating());
        rig.rig.answerDownload(InstallRig::archiveOf(u"p00001"_s, 140));
        QTRY_COMPARE(subtitle->text(), u"Updating 2 of 3…"_s);
        QTRY_COMPARE(downloads.size(), 1);
        button->click();
        QVERIFY(!button->isEnabled());
        QCOMPARE(subtitle->text(), u"Stopping after the current Plug-In…"_s);
        rig.rig.answerDownload("too short");
        QTRY_COMPARE(rig.control<ElidedLabel>(3, "note")->text(), u"wrong length"_s);
        QTRY_COMPARE(button->text(), u"Update All"_s);
        QVERIFY(button->isEnabled());
        QTRY_COMPARE(rig.control<PanelButton>(1, "actionButton")->text(), u"Up To Date"_s);
        QVERIFY(downloads.isEmpty() && !rig.rig.flow.isBusy()); // the third was left out
        QTRY_COMPARE(subtitle->text(), u"2 updates · ada@example.com"_s);

        rig.updates.start(); // from elsewhere: the one that failed, and the one left out
        QCOMPARE(button->text(), u"Stop"_s);
        QCOMPARE(subtitle->text(), u"Updating 1 of 2…"_s);
        for (const QString &prefix : {u"p00003"_s, u"p00005"_s}) {
            QTRY_COMPARE(downloads.size(), 1);
            rig.rig.answerDownload(InstallRig::archiveOf(prefix, 140));
        }
        QTRY_VERIFY(button->isHidden());
        QVERIFY(rig.control<QWidget>(3, "note")->isHidden());
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
        press(Qt::Key_Home);
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
        press(Qt::Key_Escape);
        QVERIFY(field->text().isEmpty() && list.rows().size() == 21 && rig.panel->hasActivePanel());
        press(Qt::Key_Escape);
        QVERIFY(!rig.panel->hasActivePanel());
    }

    void columnsStayInPlace()
    {
        OpenPanel rig(3);
        const auto columns = [&rig](std::initializer_list<const char *> names) {
            QList<int> at;
            for (const char *name : names) {
                const auto *view = rig.control<QWidget>(1, name);
                at.append(view->mapTo(rig.panel->window(), QPoint()).x());
            }
            return at;
        };
        const QList<int> before = columns({"icon", "name", "actionButton", "infoButton", "removeButton"});
        const auto headerX = [&rig](const char *name) {
            return rig.child<QWidget>(name)->mapTo(rig.panel->window(), QPoint()).x();
        };
        QCOMPARE(before.first(2), (QList{headerX("icon"), headerX("titleLabel")}));
        QCOMPARE(before.last(), headerX("popUpButton"));
        QJsonArray more;
        for (int i = 0; i < 30; ++i) {
            more.append(PanelRig::package(u"Z%1"_s.arg(i), u"z%1"_s.arg(i)));
        }
        rig.rig.packages.updateWithArray(more);
        QTRY_COMPARE(rig.panel->packagesTab()->list().rows().size(), 33);
        QCOMPARE(columns({"icon", "name", "actionButton", "infoButton", "removeButton"}), before);
    }

    void namesGoBeforeVersions()
    {
        PanelRig rig(true);
        fillCatalogue(rig, 1);
        const QString longName = u"Package with a name of some length"_s;
        rig.rig.packages.updateWithArray({PanelRig::package(u"A short one"_s, u"a"_s, QString(80, u'8')),
            PanelRig::package(longName, u"b"_s, u"12.0"_s)});
        rig.open();
        auto *label = rig.control<ElidedLabel>(0, "name");
        const int oneLine = label->fontMetrics().height();
        QVERIFY(label->toolTip().contains(u"A short one 888"_s)); // the version is cut
        ElidedLabel alone;
        QFont small = label->font();
        small.setPixelSize(12);
        alone.setFonts(label->font(), small);
        alone.resize(alone.fontMetrics().horizontalAdvance(longName) + 2, 60);
        alone.setText(longName, u"12.0"_s);
        QVERIFY(alone.toolTip().contains(u"12.0"_s)); // has its sign, and the tool tip the rest
        QCOMPARE(alone.sizeHint().height(), oneLine);
        alone.setMostLines(2);
        QVERIFY(alone.toolTip().isEmpty()); // all of it is seen
        QVERIFY(alone.sizeHint().height() > oneLine);
        QVERIFY(alone.sizeHint().height() < 2 * oneLine); // the version is small
        alone.resize(alone.width() * 2 / 3, 60);
        alone.setText(longName, u"12.00"_s);
        QVERIFY(alone.toolTip().isEmpty()); // as is a name of two lines
        QCOMPARE(alone.sizeHint().height(), 2 * oneLine);
    }

    void thousandsOfRowsAreNotBuilt()
    {
        OpenPanel rig(2000);
        PackageList &list = rig.panel->packagesTab()->list();
        QCOMPARE(list.rows().size(), 2000);
        const auto *area = rig.child<QScrollArea>("brevokView");
        QCOMPARE(area->widget()->height(), 2000 * 52);
        QVERIFY(list.controllerCount() < 30);

        rig.control<PanelButton>(0, "actionButton")->setFocus();
        press(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), rig.row(1)); // it has no action
        for (const Qt::Key key : {Qt::Key_End, Qt::Key_Up}) {
            press(key);
        }
        QVERIFY(rig.control<QWidget>(1998, "actionButton") != nullptr);
        QVERIFY(list.controllerAt(1998)->view()->isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(list.controllerAt(1998)->row().prefix(), u"p01998"_s);
        QVERIFY(list.controllerCount() < 50);
        press(Qt::Key_Home);
        for (int i = 0; i < 60; ++i) { // the Tab key builds the rows that it comes to
            press(Qt::Key_Tab);
            QVERIFY(rig.child<QWidget>("packagesView")->isAncestorOf(QApplication::focusWidget()));
        }
        QVERIFY(area->verticalScrollBar()->value() > 0);

        rig.rig.packages.updateWithArray({PanelRig::package(u"AAA"_s, u"new"_s)});
        QTRY_COMPARE(list.rows().size(), 2001);
        QCOMPARE(area->verticalScrollBar()->value(), 0); // another height: back to the top
    }
};

QTEST_MAIN(TestPanelRows)
#include "test_panel_rows.moc"
